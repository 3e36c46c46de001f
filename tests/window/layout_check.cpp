#include "tests/window/layout_check.h"

#include "ui/symbol.h"
#include "ui/text_label.h"

#include <QFontMetricsF>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>

#include <functional>
#include <vector>

namespace tolvenary::test
{

namespace
{

/// Less than this cannot be seen.
constexpr qreal hair = 0.51;

/// Something to be seen that nothing else may lie on.
struct Thing {
    const QQuickItem *item;
    QRectF box; ///< in the window
};

bool isText(const QQuickItem &item)
{
    return qobject_cast<const TextLabel *>(&item) && !item.property("text").toString().isEmpty();
}

bool isThing(const QQuickItem &item)
{
    return isText(item) || item.inherits("QQuickControl") || item.objectName() == "dot" ||
           qobject_cast<const Symbol *>(&item);
}

/// The part of a text's item that its words take up.
QRectF words(const QQuickItem &text)
{
    const qreal width = text.property("contentWidth").toReal();
    qreal x = 0;
    if (text.property("mirrored").toBool())
        x = text.width() - width;
    if (text.property("centered").toBool())
        x = (text.width() - width) / 2;
    return {x, 0, width, text.height()};
}

QRectF boxOf(const QQuickItem &item)
{
    return item.mapRectToScene(isText(item) ? words(item) : item.boundingRect());
}

QString nameOf(const QQuickItem &item)
{
    QStringList names;
    for (const QQuickItem *each = &item; each; each = each->parentItem())
        if (!each->objectName().isEmpty())
            names.prepend(each->objectName());
    QString name = names.join('/');
    if (isText(item))
        name += " \"" + item.property("text").toString() + '"';
    return name;
}

QString shown(const QRectF &box)
{
    return QStringLiteral(" (%1, %2, %3 x %4)").arg(box.x()).arg(box.y()).arg(box.width()).arg(box.height());
}

bool holds(const QRectF &outer, const QRectF &inner)
{
    return outer.adjusted(-hair, -hair, hair, hair).contains(inner);
}

void visit(const QQuickItem &item, const std::function<void(const QQuickItem &)> &look)
{
    if (!item.isVisible() || item.opacity() == 0)
        return;
    look(item);
    for (const QQuickItem *child : item.childItems())
        visit(*child, look);
}

/// The nearest box around an item that its contents must not leave: a card, a row, a button.
const QQuickItem *frameOf(const QQuickItem &item)
{
    static const QRegularExpression frames("(Card|Row|^bubble|^header)$");
    for (const QQuickItem *each = item.parentItem(); each; each = each->parentItem())
        if (frames.match(each->objectName()).hasMatch() || each->inherits("QQuickControl"))
            return each;
    return nullptr;
}

/// The bottom of the stack that an item belongs to: an open list lies over everything else, and rightly so.
const QQuickItem *layerOf(const QQuickItem &item)
{
    const QQuickItem *layer = &item;
    for (const QQuickItem *each = &item; each; each = each->parentItem())
        if (each->inherits("QQuickPopupItem") || !each->parentItem())
            return each;
    return layer;
}

/// What is scrolled out of a list's view is neither seen nor wrong.
bool isScrolledAway(const QQuickItem &item)
{
    for (const QQuickItem *each = item.parentItem(); each; each = each->parentItem())
        if (each->clip() && !holds(boxOf(*each), boxOf(item)))
            return true;
    return false;
}

std::vector<Thing> thingsIn(const QQuickWindow &window)
{
    std::vector<Thing> things;
    visit(*window.contentItem(), [&things](const QQuickItem &item) {
        if (isThing(item) && !isScrolledAway(item))
            things.push_back({&item, boxOf(item)});
    });
    return things;
}

void checkText(const QQuickItem &text, QStringList &faults)
{
    const auto face = text.property("face").value<TextStyle>();
    const int lines = text.property("lineCount").toInt();
    if (lines * face.lineHeight() > text.height() + hair)
        faults.append(nameOf(text) + " is higher than its item");
    if (text.property("contentWidth").toReal() > text.width() + hair)
        faults.append(nameOf(text) + " is wider than its item");
    // The status alone has a limit of its own.
    if (text.property("truncated").toBool() && text.objectName() != "message")
        faults.append(nameOf(text) + " is cut");
    const QRectF ink = QFontMetricsF(face.font()).tightBoundingRect(text.property("text").toString());
    if (face.baseline() + ink.top() < -1 || face.baseline() + ink.bottom() > face.lineHeight() + 1)
        faults.append(nameOf(text) + " looks out of its line");
}

void checkPlace(const Thing &thing, const QRectF &window, QStringList &faults)
{
    if (!holds(window, thing.box))
        faults.append(nameOf(*thing.item) + " leaves the window" + shown(thing.box));
    const QQuickItem *frame = frameOf(*thing.item);
    if (frame && !holds(boxOf(*frame), thing.box))
        faults.append(nameOf(*thing.item) + " leaves " + nameOf(*frame) + shown(thing.box));
}

bool areApart(const Thing &one, const Thing &other)
{
    const QRectF common = one.box.intersected(other.box);
    return common.width() <= hair || common.height() <= hair || one.item->isAncestorOf(other.item) ||
           other.item->isAncestorOf(one.item) || layerOf(*one.item) != layerOf(*other.item);
}

} // namespace

QStringList layoutFaults(const QQuickWindow &window)
{
    QStringList faults;
    const std::vector<Thing> things = thingsIn(window);
    for (const auto &[item, box] : things)
        if (isText(*item))
            checkText(*item, faults);
    for (std::size_t i = 0; i < things.size(); ++i) {
        checkPlace(things[i], QRectF(QPointF(), window.size()), faults);
        for (std::size_t j = i + 1; j < things.size(); ++j)
            if (!areApart(things[i], things[j]))
                faults.append(nameOf(*things[i].item) + " lies on " + nameOf(*things[j].item) + shown(things[i].box) +
                              shown(things[j].box));
    }
    // A walk that met next to nothing has proved nothing.
    if (things.size() < 20)
        faults.append(QStringLiteral("only %1 things were found").arg(things.size()));
    return faults;
}

std::map<QString, QRectF> layoutOf(const QQuickWindow &window)
{
    std::map<QString, QRectF> layout;
    for (const auto &[item, box] : thingsIn(window))
        layout.emplace(nameOf(*item), box);
    return layout;
}

} // namespace tolvenary::test
