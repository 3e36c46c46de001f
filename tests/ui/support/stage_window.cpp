#include "tests/ui/support/stage_window.h"

#include "app/window_style.h"
#include "tests/core/event_loop.h"
#include "ui/motion.h"
#include "ui/star_field.h"

#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/qtestmouse.h>

#include <stdexcept>

Q_IMPORT_QML_PLUGIN(TolvenaryPlugin)

namespace tolvenary::test
{

StageWindow::StageWindow(PanelStage &stage, const QSize &size) : m_stage(stage)
{
    m_engine.addImportPath("qrc:/qt/qml");
    m_engine.setInitialProperties({{"coordinator", QVariant::fromValue(&stage.coordinator())},
                                   {"actions", QVariant::fromValue(&stage.actions())}});
    m_engine.load(QUrl("qrc:/qt/qml/Tolvenary/PanelWindow.qml"));
    m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
    if (!m_window)
        throw std::runtime_error("no window");
    auto *stars = qobject_cast<StarField *>(item("stars"));
    stars->setStars(referenceStars());
    motion().setReduced(true);
    styleWindow(*m_window);
    m_window->resize(size);
    m_window->show();
    waitUntil([&] { return m_window->isExposed(); });
}

Motion &StageWindow::motion()
{
    return *m_engine.singletonInstance<Motion *>(qmlTypeId("Tolvenary", 1, 0, "Motion"));
}

QQuickItem *StageWindow::item(const QString &name, QQuickItem *root) const
{
    QQuickItem *from = root ? root : m_window->contentItem();
    if (from->objectName() == name)
        return from;
    for (QQuickItem *child : from->childItems())
        if (QQuickItem *found = item(name, child))
            return found;
    return nullptr;
}

void StageWindow::takeNaturalSize(const QSize &least)
{
    const auto *content = m_window->property("content").value<QQuickItem *>();
    const QSizeF natural(content->implicitWidth(), content->implicitHeight());
    m_window->resize(natural.toSize().expandedTo(least));
    waitUntil([&] { return m_window->contentItem()->size().toSize() == m_window->size(); });
}

QImage StageWindow::picture()
{
    processEvents();
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

void StageWindow::openApplicationPicker()
{
    QQuickItem *picker = item("appPicker");
    const QPointF middle = picker->mapToScene(QPointF(picker->width() / 2, picker->height() / 2));
    QTest::mouseClick(m_window, Qt::LeftButton, {}, middle.toPoint());
    waitUntil([&] { return picker->property("opened").toBool(); });
}

} // namespace tolvenary::test
