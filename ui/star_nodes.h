#pragma once

#include "ui/star.h"

#include <QSizeF>

class QQuickWindow;
class QSGNode;

namespace tolvenary
{

/// What the field looks like in one frame.
struct StarPicture {
    const std::vector<Star> &stars;
    std::vector<double> opacities;
    QSizeF size;
    qreal scale = 1; ///< pixels a point
};

/// All stars as one piece of geometry with smooth edges. Takes the node of the last frame, or none, and returns this
/// frame's. Thread: the scene graph's, while the main thread waits.
QSGNode *updateStarGeometry(QSGNode *node, const StarPicture &picture);

/// The same picture for the renderer that knows no geometry: a sprite a star, made anew only when the field changes.
QSGNode *updateStarSprites(QSGNode *node, const StarPicture &picture, QQuickWindow &window);

} // namespace tolvenary
