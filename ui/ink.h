#pragma once

#include <QImage>

namespace tolvenary
{

/// The box of all pixels of a 32-bit image that are not clear, with one clear pixel around, into which the edges of an
/// item fade while it is scaled. Never empty, as a texture cannot be.
QRect inkOf(const QImage &image);

} // namespace tolvenary
