#pragma once

#include <QQuickItem>

#include <functional>

namespace tolvenary
{

/// An invisible item that reaches the window it is in: `configure` runs in the turn of the main loop after the item was
/// made, and again whenever it is updated, each time only if the item is in a window. So `configure` must be
/// repeatable. Thread: main.
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
