#include "app/tolvenary_app.h"

#include "app/window_accessor.h"
#include "app/window_style.h"
#include "core/answer.h"
#include "platform/audio_server.h"
#include "platform/platform.h"
#include "platform/window_occlusion.h"
#include "platform/workspace.h"
#include "ui/motion.h"

#include <QPointer>
#include <QQuickWindow>
#include <QSurfaceFormat>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

#include <malloc.h>

Q_IMPORT_QML_PLUGIN(TolvenaryPlugin)

namespace tolvenary
{

TolvenaryApp::TolvenaryApp(Platform &platform) : m_platform(platform), m_coordinator(platform), m_actions(m_coordinator)
{
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

TolvenaryApp::~TolvenaryApp()
{
    m_platform.windowOcclusion().observeWindowDidChangeOcclusionState(0, nullptr);
    m_platform.workspace().observeAccessibilityDisplayOptionsDidChange(nullptr);
    m_coordinator.teardown();
}

bool TolvenaryApp::show()
{
    const bool blended = isBlendedByCompositor();
    QQuickWindow::setDefaultAlphaBuffer(blended);
    if (blended) {
        // The software renderer asks for no more than the default.
        QSurfaceFormat format = QSurfaceFormat::defaultFormat();
        format.setAlphaBufferSize(8);
        QSurfaceFormat::setDefaultFormat(format);
    }
    m_engine.setInitialProperties({{QStringLiteral("coordinator"), QVariant::fromValue(&m_coordinator)},
                                   {QStringLiteral("actions"), QVariant::fromValue(&m_actions)},
                                   {QStringLiteral("blended"), blended}});
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Tolvenary/PanelWindow.qml")));
    if (!window())
        return false;
    followMotion();
    // Owned by the window's content, which never outlives the window.
    new WindowAccessor(styleWindow, window()->contentItem());
    window()->show();
    launch();
    return true;
}

QQuickWindow *TolvenaryApp::window() const
{
    return m_engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(m_engine.rootObjects().first());
}

void TolvenaryApp::followMotion()
{
    auto *motion = m_engine.singletonInstance<Motion *>(qmlTypeId("Tolvenary", 1, 0, "Motion"));
    NSWorkspace &workspace = m_platform.workspace();
    const auto follow = [motion, &workspace] {
        motion->setReduced(workspace.accessibilityDisplayShouldReduceMotion());
    };
    workspace.observeAccessibilityDisplayOptionsDidChange(follow);
    follow();
    m_platform.windowOcclusion().observeWindowDidChangeOcclusionState(
        window()->winId(), [motion](bool visible) { motion->setPaused(!visible); });
}

QCoro::Task<void> TolvenaryApp::launch()
{
    const QPointer<TolvenaryApp> self(this);
    // Until the sound server has told what it has, an empty list would look like the truth.
    AudioServer &server = m_platform.audioServer();
    co_await answer<bool>([&server](auto done) { server.settle(done); });
    if (!self)
        co_return;
    m_coordinator.refreshBlackHole();
    co_await m_coordinator.refreshApps();
    // Building and first painting the window frees memory in small pieces, which the heap does not give back by itself.
    // So it is asked to, once, when everything has been painted.
    QTimer::singleShot(std::chrono::seconds(1), [] { malloc_trim(0); });
}

} // namespace tolvenary
