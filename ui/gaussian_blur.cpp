#include "ui/gaussian_blur.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tolvenary
{

namespace
{

std::vector<float> kernelOf(qreal deviation)
{
    const int reach = qCeil(3 * deviation);
    std::vector<float> kernel;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        kernel.push_back(static_cast<float>(qExp(-i * i / (2 * deviation * deviation))));
        sum += static_cast<double>(kernel.back());
    }
    for (float &weight : kernel)
        weight /= static_cast<float>(sum);
    return kernel;
}

std::size_t at(int row, int rowLength, int column)
{
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(rowLength) + static_cast<std::size_t>(column);
}

/// Blurs every line of `lines` (each `length` long) and hands the result over with rows and columns exchanged, so that
/// two calls blur both ways.
std::vector<float> blurLinesTransposed(const std::vector<float> &lines, int length, const std::vector<float> &kernel)
{
    const int count = static_cast<int>(lines.size()) / length;
    const int reach = static_cast<int>(kernel.size()) / 2;
    std::vector<float> result(lines.size());
    for (int line = 0; line < count; ++line) {
        for (int x = 0; x < length; ++x) {
            const int first = std::max(0, x - reach);
            const int last = std::min(length - 1, x + reach);
            float sum = 0;
            for (int i = first; i <= last; ++i)
                sum += lines[at(line, length, i)] * kernel[at(0, 0, i - x + reach)];
            result[at(x, count, line)] = sum;
        }
    }
    return result;
}

} // namespace

QImage gaussianBlur(const QImage &mask, qreal deviation)
{
    if (deviation <= 0 || mask.isNull())
        return mask;
    std::vector<float> values;
    values.reserve(static_cast<std::size_t>(mask.width()) * static_cast<std::size_t>(mask.height()));
    for (int y = 0; y < mask.height(); ++y)
        values.insert(values.end(), mask.constScanLine(y), mask.constScanLine(y) + mask.width());

    const std::vector<float> kernel = kernelOf(deviation);
    values = blurLinesTransposed(values, mask.width(), kernel);
    values = blurLinesTransposed(values, mask.height(), kernel);

    QImage result(mask.size(), QImage::Format_Alpha8);
    auto value = values.cbegin();
    for (int y = 0; y < result.height(); ++y) {
        uchar *line = result.scanLine(y);
        for (int x = 0; x < result.width(); ++x)
            line[x] = static_cast<uchar>(std::lround(*value++));
    }
    return result;
}

QImage colored(const QImage &mask, const QColor &color)
{
    QImage result(mask.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(color);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return result;
}

} // namespace tolvenary
