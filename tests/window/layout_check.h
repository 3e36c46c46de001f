#pragma once

#include <QRectF>
#include <QString>
#include <QStringList>

#include <map>

class QQuickWindow;

namespace tolvenary::test
{

/// Walks over all that a window shows and tells, a line each, what a person would find wrong with its layout: a text
/// that is cut or looks out of its place, two things one over the other, a thing that leaves its card or the window.
QStringList layoutFaults(const QQuickWindow &window);

/// Where all those things are in the window, by their names.
std::map<QString, QRectF> layoutOf(const QQuickWindow &window);

} // namespace tolvenary::test
