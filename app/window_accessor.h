#pragma once

#include <QQuickItem>

#include <functional>

namespace tolvenary
{

/// An invisible item that reaches the window which hosts it: `configure` runs on the turn of the main loop after it was
/// made, and again whenever the item is updated, each time only if the item is in a window. So `configure` must bear
/// being run again. Thread: main.
class WindowAccessor : public QQuickItem
{
    Q_OBJECT

  public:
    using Configure = std::function<void(QQuickWindow &window)>;

    explicit WindowAccessor(Configure configure, QQuickItem *parent = nullptr);

    /// Configures the window at once, if there is one.
    void updateView();

  protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;

  private:
    Configure m_configure;
};

} // namespace tolvenary
