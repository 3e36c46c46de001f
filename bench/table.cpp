// Makes the table of what the benchmarks reported: bench_table LINES RESULTS reads the rows, one line of JSON each,
// prints them, and writes them with their medians as one JSON array. Ratios are taken round by round, then their
// median.

#include "bench/median.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace
{

using tolvenary::bench::Spread;
using tolvenary::bench::spread;

std::vector<double> numbers(const QJsonValue &array)
{
    std::vector<double> values;
    const QJsonArray elements = array.toArray();
    for (const auto &value : elements)
        values.push_back(value.toDouble());
    return values;
}

/// Ours / theirs of each round; none where theirs cost nothing in any of them. A share may come out as nothing or less,
/// as the difference of two measurements.
std::optional<Spread> ratioOf(const std::vector<double> &ours, const std::vector<double> &theirs)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < theirs.size(); ++i) {
        if (theirs[i] <= 0)
            return std::nullopt;
        ratios.push_back(ours[i] / theirs[i]);
    }
    return ratios.empty() ? std::nullopt : std::optional(spread(ratios));
}

struct Verdict {
    QString aim;
    bool isAimed = false;
    bool isMet = true;
};

Verdict judge(const QJsonObject &row, double ours, const std::optional<Spread> &ratio)
{
    Verdict verdict;
    const auto aim = [&](const char *name, const char *text, bool (*isMet)(double, double), double value) {
        if (!row.contains(QLatin1String(name)))
            return;
        const double limit = row.value(QLatin1String(name)).toDouble();
        verdict.aim = QString::fromLatin1(text).arg(limit);
        verdict.isAimed = true;
        verdict.isMet = verdict.isMet && isMet(value, limit);
    };
    const auto atMost = [](double value, double limit) { return value <= limit; };
    const auto atLeast = [](double value, double limit) { return value >= limit; };
    aim("mostRatio", "ratio <= %1", atMost, ratio ? ratio->median : HUGE_VAL);
    aim("mostOfOurs", "<= %1", atMost, ours);
    aim("leastOfOurs", ">= %1", atLeast, ours);
    return verdict;
}

double medianOf(const std::vector<double> &values)
{
    return values.empty() ? std::nan("") : spread(values).median;
}

QByteArray cell(double value)
{
    return std::isnan(value) ? QByteArray("-") : QByteArray::number(value, 'g', 4);
}

/// What the lines hold becomes text as it goes by, and results.
class Table
{
  public:
    void add(QJsonObject row)
    {
        const std::vector<double> ours = numbers(row.value(QStringLiteral("ours")));
        const std::vector<double> theirs = numbers(row.value(QStringLiteral("theirs")));
        if (ours.empty())
            throw std::runtime_error("a row without rounds");
        startPart(row);
        const double ourMedian = medianOf(ours);
        const double theirMedian = medianOf(theirs);
        const bool isLogarithm = row.value(QStringLiteral("unit")).toString() == QLatin1String("dB");
        const auto ratio = isLogarithm ? std::nullopt : ratioOf(ours, theirs);
        const Verdict verdict = judge(row, ourMedian, ratio);
        m_aimed += verdict.isAimed ? 1 : 0;
        m_met += verdict.isAimed && verdict.isMet ? 1 : 0;
        print(row, ourMedian, theirMedian, ratio, verdict);

        row.insert(QStringLiteral("oursMedian"), ourMedian);
        if (!theirs.empty())
            row.insert(QStringLiteral("theirsMedian"), theirMedian);
        if (ratio)
            row.insert(QStringLiteral("ratio"), QJsonObject{{QStringLiteral("median"), ratio->median},
                                                            {QStringLiteral("least"), ratio->least},
                                                            {QStringLiteral("most"), ratio->most}});
        if (verdict.isAimed)
            row.insert(QStringLiteral("met"), verdict.isMet);
        m_results.append(row);
    }

    const QJsonArray &results() const { return m_results; }

    void end() const
    {
        std::printf(
            "\n%d of %d aims met. Ratio: median of the rounds' ratios (least to most); docs/performance.md says "
            "what limits each.\n",
            m_met, m_aimed);
    }

  private:
    void startPart(const QJsonObject &row)
    {
        const QString part = row.value(QStringLiteral("part")).toString();
        if (part == m_part)
            return;
        m_part = part;
        std::printf("\n%s, measured on %s at load %.1f\n  %-44s %-26s %-7s %9s %9s  %-24s %s\n", qPrintable(part),
                    qPrintable(row.value(QStringLiteral("date")).toString()),
                    row.value(QStringLiteral("load")).toDouble(), "", "beside", "unit", "ours", "theirs", "ratio",
                    "aim");
    }

    static void print(const QJsonObject &row, double ours, double theirs, const std::optional<Spread> &ratio,
                      const Verdict &verdict)
    {
        QByteArray ratioText = "-";
        if (ratio)
            ratioText = QByteArray::number(ratio->median, 'f', 2) + " (" + QByteArray::number(ratio->least, 'f', 2) +
                        " to " + QByteArray::number(ratio->most, 'f', 2) + ")";
        const char *const met = verdict.isAimed ? (verdict.isMet ? "met" : "MISSED") : "";
        std::printf("  %-44s %-26s %-7s %9s %9s  %-24s %s %s\n",
                    qPrintable(row.value(QStringLiteral("work")).toString()),
                    qPrintable(row.value(QStringLiteral("beside")).toString()),
                    qPrintable(row.value(QStringLiteral("unit")).toString()), cell(ours).constData(),
                    cell(theirs).constData(), ratioText.constData(), qPrintable(verdict.aim), met);
    }

    QString m_part;
    QJsonArray m_results;
    int m_aimed = 0;
    int m_met = 0;
};

int makeTable(const char *linesPath, const char *resultsPath)
{
    QFile lines(QString::fromLocal8Bit(linesPath));
    QFile results(QString::fromLocal8Bit(resultsPath));
    if (!lines.open(QIODevice::ReadOnly) || !results.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot open the files");
    Table table;
    while (!lines.atEnd()) {
        const QByteArray line = lines.readLine();
        const QJsonDocument row = QJsonDocument::fromJson(line);
        if (!row.isObject())
            throw std::runtime_error("not a row: " + line.toStdString());
        table.add(row.object());
    }
    table.end();
    results.write(QJsonDocument(table.results()).toJson());
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_table LINES RESULTS\n");
        return EXIT_FAILURE;
    }
    try {
        return makeTable(argv[1], argv[2]);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
