#pragma once

#include "tests/ui/support/panel_stage.h"
#include "tests/ui/support/reference_states.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>

class QQuickWindow;

namespace tolvenary
{
class Motion;
}

namespace tolvenary::test
{

/// The real window of the panel, showing a stage. Its stars are the reference's, and nothing moves until its motion is
/// set otherwise.
class StageWindow
{
  public:
    StageWindow(PanelStage &stage, const QSize &size);

    QQuickWindow &window() { return *m_window; }
    Motion &motion();

    /// The first item of that name, looked for below `root` or in the whole window; null if there is none.
    QQuickItem *item(const QString &name, QQuickItem *root = nullptr) const;

    /// Makes the window as large as its panel asks for, and at least as large as that.
    void takeNaturalSize(const QSize &least);

    /// What the window shows, in pixels.
    QImage picture();

    void openApplicationPicker();

  private:
    PanelStage &m_stage;
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_window = nullptr;
};

} // namespace tolvenary::test
