#pragma once

#include <QAbstractAnimation>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// A value that follows its target as a damped oscillator does: `response` is the period of the undamped one in
/// seconds, `dampingFraction` its share of critical damping. A new target takes over place and speed, so a press that
/// is let go half way turns around without a jump. For users who want nothing to move it is at its target at once: the
/// change itself stays, as it is all that tells of a press. Thread: main.
class Spring : public QAbstractAnimation
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    Q_PROPERTY(qreal value READ value NOTIFY valueChanged FINAL)
    Q_PROPERTY(qreal response MEMBER m_response FINAL)
    Q_PROPERTY(qreal dampingFraction MEMBER m_dampingFraction FINAL)
    Q_PROPERTY(bool restful READ restful WRITE setRestful NOTIFY restfulChanged FINAL)

  public:
    explicit Spring(QObject *parent = nullptr);

    qreal target() const { return m_target; }
    void setTarget(qreal target);

    qreal value() const { return m_value; }

    /// True for users who want nothing to move.
    bool restful() const { return m_restful; }
    void setRestful(bool restful);

    int duration() const override { return -1; }

  Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void restfulChanged();

  protected:
    void updateCurrentTime(int milliseconds) override;

  private:
    struct Motion {
        qreal offset; ///< from the target
        qreal speed;  ///< per second
    };

    Motion motionAfter(qreal seconds) const;
    void settle();

    qreal m_response = 0.2;
    qreal m_dampingFraction = 0.7;
    qreal m_target = 0;
    qreal m_value = 0;
    Motion m_start{0, 0};
    bool m_placed = false;
    bool m_restful = false;
};

} // namespace tolvenary
