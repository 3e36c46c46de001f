#pragma once

#include <QRgb>
#include <cstdlib>

namespace tolvenary::session
{

/// The window's own colour, which its gradient has in the corner where it begins.
constexpr QRgb windowColour = qRgb(10, 8, 26);

inline bool isAbout(QRgb seen, QRgb expected)
{
    constexpr int tolerance = 6;
    return std::abs(qRed(seen) - qRed(expected)) <= tolerance &&
           std::abs(qGreen(seen) - qGreen(expected)) <= tolerance &&
           std::abs(qBlue(seen) - qBlue(expected)) <= tolerance;
}

} // namespace tolvenary::session
