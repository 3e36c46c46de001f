#include "bench/report.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace tolvenary::bench
{

namespace
{

QJsonArray arrayOf(const std::vector<double> &values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

bool areNumbers(const std::vector<double> &values)
{
    return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

/// How many wanted a processor in the last minute, this benchmark's own processes among them.
double machineLoad()
{
    double load = 0;
    return getloadavg(&load, 1) == 1 ? load : 0;
}

void insert(QJsonObject &object, const char *name, const std::optional<double> &value)
{
    if (value)
        object.insert(QLatin1String(name), *value);
}

} // namespace

void report(const Row &row)
{
    if (row.ours.empty() || (!row.theirs.empty() && row.theirs.size() != row.ours.size()))
        throw std::invalid_argument("a row without rounds, or with rounds of one only: " + row.work);
    // JSON has no word for these; they would be read as 0, which is less than any aim.
    if (!areNumbers(row.ours) || !areNumbers(row.theirs))
        throw std::invalid_argument("a figure that is no number: " + row.work);
    QJsonObject object{{QStringLiteral("part"), QString::fromStdString(row.part)},
                       {QStringLiteral("work"), QString::fromStdString(row.work)},
                       {QStringLiteral("beside"), QString::fromStdString(row.beside)},
                       {QStringLiteral("unit"), QString::fromStdString(row.unit)},
                       {QStringLiteral("ours"), arrayOf(row.ours)},
                       {QStringLiteral("theirs"), arrayOf(row.theirs)},
                       {QStringLiteral("date"), QDate::currentDate().toString(Qt::ISODate)},
                       {QStringLiteral("load"), machineLoad()}};
    insert(object, "mostRatio", row.mostRatio);
    insert(object, "mostOfOurs", row.mostOfOurs);
    insert(object, "leastOfOurs", row.leastOfOurs);
    std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

void progress(const std::string &text)
{
    std::fprintf(stderr, "   %s\n", text.c_str());
}

} // namespace tolvenary::bench
