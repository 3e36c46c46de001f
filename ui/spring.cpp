#include "ui/spring.h"

#include <QtMath>

namespace tolvenary
{

Spring::Spring(QObject *parent) : QAbstractAnimation(parent) {}

void Spring::setTarget(qreal target)
{
    if (m_placed && target == m_target)
        return;
    // The first target is where the value begins; only a change of it is animated.
    if (!m_placed || m_restful) {
        m_placed = true;
        m_target = target;
        settle();
        Q_EMIT targetChanged();
        return;
    }
    const qreal speed = state() == Running ? motionAfter(currentTime() / 1000.0).speed : 0;
    stop();
    m_target = target;
    m_start = {m_value - target, speed};
    Q_EMIT targetChanged();
    start();
}

void Spring::setRestful(bool restful)
{
    if (restful == m_restful)
        return;
    m_restful = restful;
    if (restful && m_placed) {
        stop();
        settle();
    }
    Q_EMIT restfulChanged();
}

void Spring::updateCurrentTime(int milliseconds)
{
    // A thousandth of a scale cannot be seen: the motion ends there instead of keeping the window drawing.
    constexpr qreal still = 1e-4;
    const Motion motion = motionAfter(milliseconds / 1000.0);
    if (milliseconds > 0 && qAbs(motion.offset) < still && qAbs(motion.speed) < still * 10) {
        stop();
        settle();
        return;
    }
    m_value = m_target + motion.offset;
    Q_EMIT valueChanged();
}

Spring::Motion Spring::motionAfter(qreal seconds) const
{
    const qreal undamped = 2 * M_PI / m_response;
    const qreal decay = m_dampingFraction * undamped;
    const qreal damped = undamped * qSqrt(1 - m_dampingFraction * m_dampingFraction);
    const qreal sine = (m_start.speed + decay * m_start.offset) / damped;
    const qreal envelope = qExp(-decay * seconds);
    const qreal swing = m_start.offset * qCos(damped * seconds) + sine * qSin(damped * seconds);
    const qreal turn = damped * (sine * qCos(damped * seconds) - m_start.offset * qSin(damped * seconds));
    return {envelope * swing, envelope * (turn - decay * swing)};
}

void Spring::settle()
{
    m_value = m_target;
    Q_EMIT valueChanged();
}

} // namespace tolvenary
