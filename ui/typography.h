#pragma once

#include "ui/text_style.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// The text styles of the panel, in the user's text size. Thread: main.
class Typography : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(tolvenary::TextStyle title READ title NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle heading READ heading NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle body READ body NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle callout READ callout NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle caption READ caption NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle label READ label NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle readOut READ readOut NOTIFY scaleChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle mainButton READ mainButton NOTIFY scaleChanged FINAL)
    Q_PROPERTY(QString monospacedFamily READ monospacedFamily CONSTANT FINAL)
    Q_PROPERTY(qreal scale READ scale NOTIFY scaleChanged FINAL)

  public:
    explicit Typography(QObject *parent = nullptr);

    TextStyle title() const;
    TextStyle heading() const;
    TextStyle body() const;
    TextStyle callout() const;
    TextStyle caption() const;
    TextStyle label() const;
    TextStyle readOut() const;
    TextStyle mainButton() const;
    QString monospacedFamily() const;

    /// 1 up to the largest size that a desktop sets by itself (11 points); above it, as much larger as the user asked.
    qreal scale() const { return m_scale; }

  Q_SIGNALS:
    void scaleChanged();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    enum class Design { standard, rounded };

    /// Lengths are in points before the user's scale.
    struct Measures {
        qreal size;
        qreal lineHeight;
        qreal baseline;
        qreal tracking = 0;
    };

    TextStyle style(Design design, QFont::Weight weight, const Measures &measures) const;

    qreal m_scale = 1;
};

} // namespace tolvenary
