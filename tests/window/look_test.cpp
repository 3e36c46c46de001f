#include "tests/ui/support/stage_window.h"
#include "tests/window/expected_look.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace tolvenary::test
{

namespace
{

/// One state of the panel, in a window of its own.
class Look : public testing::TestWithParam<ReferenceState>
{
  protected:
    Look()
    {
        enter(GetParam(), m_stage);
        m_shown = std::make_unique<StageWindow>(m_stage, GetParam().size);
        if (GetParam().name == "picker-open")
            m_shown->openApplicationPicker();
    }

    QQuickItem *at(const QStringList &path) const
    {
        QQuickItem *item = nullptr;
        for (const QString &name : path)
            if (item = m_shown->item(name, item); !item)
                return nullptr;
        return item;
    }

    qreal scale() const { return m_shown->window().effectiveDevicePixelRatio(); }

    PanelStage m_stage;
    std::unique_ptr<StageWindow> m_shown;
};

QRectF boxOf(const QQuickItem &item)
{
    QRectF box = item.mapRectToScene(item.boundingRect());
    // A text's item may be wider than its words.
    if (const QVariant words = item.property("contentWidth"); words.isValid())
        box.setWidth(words.toReal());
    if (item.objectName() == "hint")
        box.setWidth(item.implicitWidth());
    return box;
}

/// The mean colour of one point of the window.
QColor colorAt(const QImage &picture, const QPoint &point, int scale)
{
    int red = 0;
    int green = 0;
    int blue = 0;
    for (int i = 0; i < scale * scale; ++i) {
        const QColor pixel = picture.pixelColor(point * scale + QPoint(i % scale, i / scale));
        red += pixel.red();
        green += pixel.green();
        blue += pixel.blue();
    }
    const int count = scale * scale;
    return {red / count, green / count, blue / count};
}

/// Bright where the two differ.
QImage difference(const QImage &one, const QImage &other)
{
    QImage result = one;
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.drawImage(0, 0, other);
    return result;
}

/// Ours, the reference and the difference of the two, side by side.
void saveForPeople(const QImage &picture, const QImage &reference, const QString &name)
{
    const QImage large = reference.scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage all(picture.width() * 3, picture.height(), QImage::Format_RGB32);
    QPainter painter(&all);
    painter.drawImage(0, 0, picture);
    painter.drawImage(picture.width(), 0, large);
    painter.drawImage(2 * picture.width(), 0, difference(picture, large));
    QDir().mkpath(TOLVENARY_PICTURES);
    all.save(QStringLiteral(TOLVENARY_PICTURES "/") + name + ".png");
}

/// The largest difference between the mean brightnesses of the two in any square of eight points: small where a letter
/// stands a part of a pixel further on, large where something is missing.
int worstSquare(const QImage &one, const QImage &other)
{
    const QSize squares = one.size() / 8;
    const QImage small = one.scaled(squares, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage otherSmall = other.scaled(squares, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int worst = 0;
    for (int y = 0; y < squares.height(); ++y)
        for (int x = 0; x < squares.width(); ++x)
            worst = std::max(worst, std::abs(qGray(small.pixel(x, y)) - qGray(otherSmall.pixel(x, y))));
    return worst;
}

/// A point; of a line of text another edition of its font may be a few thousandths wider.
qreal toleranceOfWidth(const QQuickItem &item, qreal width)
{
    const bool isText = item.property("text").isValid();
    return isText ? std::max(1.0, 0.004 * width) : 1.0;
}

} // namespace

TEST_P(Look, everyBoxLiesWithinAPointOfItsPlace)
{
    for (const auto &[path, expected] : expectedBoxes(GetParam().name)) {
        const QQuickItem *item = at(path);
        ASSERT_NE(item, nullptr) << path.join('/').toStdString();
        const QRectF box = boxOf(*item);
        const std::string name = path.join('/').toStdString();
        EXPECT_NEAR(box.x(), expected.x(), 1) << name;
        EXPECT_NEAR(box.y(), expected.y(), 1) << name;
        EXPECT_NEAR(box.width(), expected.width(), toleranceOfWidth(*item, expected.width())) << name;
        EXPECT_NEAR(box.height(), expected.height(), 1) << name;
    }
}

TEST_P(Look, theColumnAsksForTheHeightOfItsPicture)
{
    const std::map<QString, int> heights = {{"no-device", 521}, {"ready", 539},           {"running", 539},
                                            {"failed", 541},    {"running-900x700", 539}, {"picker-open", 539}};
    const auto *content = m_shown->window().property("content").value<QQuickItem *>();
    EXPECT_EQ(content->implicitHeight(), heights.at(GetParam().name));
    EXPECT_EQ(content->implicitWidth(), 520);
    EXPECT_EQ(m_shown->item("column")->height(), heights.at(GetParam().name));
    // A new window has room for the highest of them, as it keeps its size when a state changes.
    EXPECT_GE(content->property("roomyHeight").toReal(), 541);
}

TEST_P(Look, coloursAreTheWrittenOnes)
{
    constexpr int tolerance = 6;
    const QImage picture = m_shown->picture();
    ASSERT_EQ(picture.size(), GetParam().size * scale());
    for (const auto &[point, expected] : expectedColors(GetParam().name)) {
        const QColor color = colorAt(picture, point, static_cast<int>(scale()));
        const std::string where = std::to_string(point.x()) + ", " + std::to_string(point.y());
        EXPECT_NEAR(color.red(), expected.red(), tolerance) << where;
        EXPECT_NEAR(color.green(), expected.green(), tolerance) << where;
        EXPECT_NEAR(color.blue(), expected.blue(), tolerance) << where;
    }
}

TEST_P(Look, thePictureIsTheReferences)
{
    const QImage picture = m_shown->picture();
    const QImage reference = QImage(QStringLiteral(TOLVENARY_REFERENCE "/") + GetParam().name + ".png")
                                 .convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(reference.size(), GetParam().size);
    saveForPeople(picture, reference, "look-" + GetParam().name + "-" + QString::number(scale()) + "x");
    const QImage points = picture.scaled(reference.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_LE(worstSquare(points, reference), 26);
}

INSTANTIATE_TEST_SUITE_P(States, Look, testing::ValuesIn(referenceStates()),
                         [](const auto &info) { return testName(info.param); });

} // namespace tolvenary::test
