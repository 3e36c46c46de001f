#pragma once

#include <QColor>
#include <QImage>

namespace tolvenary
{

/// Blurs an Alpha8 image with a true Gaussian of that standard deviation, in pixels. Nothing lies outside the image.
QImage gaussianBlur(const QImage &mask, qreal deviation);

/// The mask as an image of one colour, whose opacity scales the mask's.
QImage colored(const QImage &mask, const QColor &color);

} // namespace tolvenary
