#include "ui/star_nodes.h"

#include <QSGGeometryNode>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace tolvenary::test
{

namespace
{

/// What one star of the geometry looks like.
struct DrawnStar {
    QRectF box; ///< of all its corners
    QPointF middle;
    int level = 0; ///< of the middle: its opacity in parts of 255, white that is faded by it
    int rim = 0;   ///< the same of the outermost corners
};

class StarGeometry : public testing::Test
{
  protected:
    /// Draws the stars, with the node of the last time.
    std::vector<DrawnStar> draw(const QSizeF &size, const std::vector<double> &opacities, qreal scale = 1)
    {
        m_node.reset(updateStarGeometry(m_node.release(), {m_stars, opacities, size, scale}));
        const QSGGeometry &geometry = *static_cast<QSGGeometryNode *>(m_node.get())->geometry();
        const std::size_t corners = static_cast<std::size_t>(geometry.vertexCount()) / m_stars.size();
        std::vector<DrawnStar> drawn;
        for (std::size_t i = 0; i < m_stars.size(); ++i)
            drawn.push_back(starOf({geometry.vertexDataAsColoredPoint2D() + i * corners, corners}));
        return drawn;
    }

    std::vector<Star> m_stars{{{}, 1, 1, 1.5, 0.8}, {{}, 0, 0, 0.6, 0.5}, {{}, 0.25, 0.5, 1, 0.3}};

  private:
    static DrawnStar starOf(std::span<const QSGGeometry::ColoredPoint2D> corners)
    {
        const auto byX = [](const auto &one, const auto &other) { return one.x < other.x; };
        const auto byY = [](const auto &one, const auto &other) { return one.y < other.y; };
        const auto [left, right] = std::minmax_element(corners.begin(), corners.end(), byX);
        const auto [top, bottom] = std::minmax_element(corners.begin(), corners.end(), byY);
        const auto &middle = corners.front();
        for (const auto &corner : corners) {
            const bool isWhite = corner.r == corner.a && corner.g == corner.a && corner.b == corner.a;
            EXPECT_TRUE(isWhite);
        }
        return {
            QRectF(QPointF(left->x, top->y), QPointF(right->x, bottom->y)), {middle.x, middle.y}, middle.a, left->a};
    }

    std::unique_ptr<QSGNode> m_node;
};

} // namespace

TEST_F(StarGeometry, aStarStandsAtItsShareOfTheFieldAndAtOneOnItsEdge)
{
    const auto drawn = draw({300, 200}, {0.8, 0.5, 0.3});
    ASSERT_EQ(drawn.size(), 3U);
    EXPECT_EQ(drawn[0].middle, QPointF(300, 200));
    EXPECT_EQ(drawn[1].middle, QPointF(0, 0));
    EXPECT_EQ(drawn[2].middle, QPointF(75, 100));
}

TEST_F(StarGeometry, isAsWideAsItsRadiusSaysWithARimThatFadesOutOverAPixel)
{
    for (const qreal scale : {1.0, 2.0}) {
        const auto drawn = draw({300, 200}, {0.8, 0.5, 0.3}, scale);
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            EXPECT_NEAR(drawn[i].box.width(), 2 * m_stars[i].r + 1 / scale, 1e-4);
            EXPECT_NEAR(drawn[i].box.height(), 2 * m_stars[i].r + 1 / scale, 0.12);
            EXPECT_NEAR(drawn[i].box.center().x(), drawn[i].middle.x(), 1e-4);
            EXPECT_NEAR(drawn[i].box.center().y(), drawn[i].middle.y(), 1e-4);
            EXPECT_EQ(drawn[i].rim, 0);
        }
    }
}

TEST_F(StarGeometry, isDrawnInTheOpacityOfTheMoment)
{
    EXPECT_EQ(draw({300, 200}, {1, 0.4, 0.2})[1].level, 102);
    const auto drawn = draw({300, 200}, {0.8, 0, 0.6});
    EXPECT_EQ(drawn[0].level, 204);
    EXPECT_EQ(drawn[1].level, 0);
    EXPECT_EQ(drawn[2].level, 153);
}

TEST_F(StarGeometry, twiceTheWidthDoublesTheDistanceFromTheLeftAndNothingElse)
{
    const auto before = draw({300, 200}, {0.8, 0.5, 0.3});
    const auto after = draw({600, 200}, {0.8, 0.5, 0.3});
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(after[i].middle, QPointF(2 * before[i].middle.x(), before[i].middle.y()));
        EXPECT_NEAR(after[i].box.width(), before[i].box.width(), 1e-4);
    }
}

TEST_F(StarGeometry, anotherNumberOfStarsIsDrawnToo)
{
    ASSERT_EQ(draw({300, 200}, {0.8, 0.5, 0.3}).size(), 3U);
    m_stars.pop_back();
    const auto drawn = draw({300, 200}, {0.8, 0.5});
    ASSERT_EQ(drawn.size(), 2U);
    EXPECT_EQ(drawn[0].middle, QPointF(300, 200));
    EXPECT_EQ(drawn[1].middle, QPointF(0, 0));
}

} // namespace tolvenary::test
