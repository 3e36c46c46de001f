#include "ui/star_nodes.h"

#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>
#include <QtMath>

#include <array>
#include <memory>

namespace tolvenary
{

namespace
{

// A star is at most a few pixels across: a disc of that many corners, with a rim that fades out over one pixel.
constexpr int corners = 14;
constexpr int verticesPerStar = 1 + 2 * corners;
constexpr int indicesPerStar = 9 * corners;

std::unique_ptr<QSGGeometryNode> makeNode(int stars)
{
    auto geometry = std::make_unique<QSGGeometry>(QSGGeometry::defaultAttributes_ColoredPoint2D(),
                                                  stars * verticesPerStar, stars * indicesPerStar);
    geometry->setDrawingMode(QSGGeometry::DrawTriangles);
    quint16 *index = geometry->indexDataAsUShort();
    for (int star = 0; star < stars; ++star) {
        const int center = star * verticesPerStar;
        for (int corner = 0; corner < corners; ++corner) {
            const int inner = center + 1 + corner;
            const int nextInner = center + 1 + (corner + 1) % corners;
            for (const int vertex : {center, inner, nextInner, inner, inner + corners, nextInner, nextInner,
                                     inner + corners, nextInner + corners})
                *index++ = static_cast<quint16>(vertex);
        }
    }
    auto node = std::make_unique<QSGGeometryNode>();
    node->setGeometry(geometry.release());
    node->setMaterial(new QSGVertexColorMaterial);
    node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial);
    return node;
}

const std::array<QPointF, corners> &directions()
{
    static const std::array<QPointF, corners> points = [] {
        std::array<QPointF, corners> unit{};
        for (int i = 0; i < corners; ++i) {
            const qreal angle = 2 * M_PI * i / corners;
            unit[static_cast<std::size_t>(i)] = {qCos(angle), qSin(angle)};
        }
        return unit;
    }();
    return points;
}

void placeStar(QSGGeometry::ColoredPoint2D *vertex, const Star &star, double opacity, const StarPicture &picture)
{
    const QPointF center(star.x * picture.size.width(), star.y * picture.size.height());
    const qreal rim = 0.5 / picture.scale;
    const auto level = static_cast<uchar>(qRound(opacity * 255));
    const auto put = [&vertex](const QPointF &point, uchar premultiplied) {
        vertex++->set(static_cast<float>(point.x()), static_cast<float>(point.y()), premultiplied, premultiplied,
                      premultiplied, premultiplied);
    };
    put(center, level);
    for (const QPointF &direction : directions())
        put(center + direction * (star.r - rim), level);
    for (const QPointF &direction : directions())
        put(center + direction * (star.r + rim), 0);
}

} // namespace

QSGNode *updateStarGeometry(QSGNode *node, const StarPicture &picture)
{
    const int count = static_cast<int>(picture.stars.size());
    auto *stars = static_cast<QSGGeometryNode *>(node);
    if (stars && stars->geometry()->vertexCount() != count * verticesPerStar) {
        delete stars;
        stars = nullptr;
    }
    if (!stars)
        stars = makeNode(count).release();
    QSGGeometry::ColoredPoint2D *vertex = stars->geometry()->vertexDataAsColoredPoint2D();
    for (std::size_t i = 0; i < picture.stars.size(); ++i, vertex += verticesPerStar)
        placeStar(vertex, picture.stars[i], picture.opacities[i], picture);
    stars->markDirty(QSGNode::DirtyGeometry);
    return stars;
}

} // namespace tolvenary
