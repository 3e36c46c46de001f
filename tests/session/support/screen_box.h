#pragma once

#include <ostream>

namespace tolvenary::session
{

struct ScreenPoint {
    int x = 0;
    int y = 0;

    bool operator==(const ScreenPoint &) const = default;
};

/// A rectangle on a screen, in its pixels.
struct ScreenBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    ScreenPoint centre() const { return {x + width / 2, y + height / 2}; }
    int right() const { return x + width; }
    int bottom() const { return y + height; }

    bool operator==(const ScreenBox &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const ScreenPoint &point)
{
    return out << point.x << "," << point.y;
}

inline std::ostream &operator<<(std::ostream &out, const ScreenBox &box)
{
    return out << box.width << "x" << box.height << " at " << box.x << "," << box.y;
}

} // namespace tolvenary::session
