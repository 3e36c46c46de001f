#include "ui/ink.h"

#include <algorithm>
#include <span>

namespace tolvenary
{

QRect inkOf(const QImage &image)
{
    const auto isInked = [](QRgb pixel) { return pixel != 0; };
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        const std::span row(reinterpret_cast<const QRgb *>(image.constScanLine(y)),
                            static_cast<std::size_t>(image.width()));
        const auto first = std::find_if(row.begin(), row.end(), isInked);
        if (first == row.end())
            continue;
        const auto behindLast = std::find_if(row.rbegin(), row.rend(), isInked).base();
        ink |= QRect(static_cast<int>(first - row.begin()), y, static_cast<int>(behindLast - first), 1);
    }
    return ink.isEmpty() ? QRect(0, 0, 1, 1) : ink.adjusted(-1, -1, 1, 1) & image.rect();
}

} // namespace tolvenary
