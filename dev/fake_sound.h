#pragma once

#include "platform/fake/fake_platform.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tolvenary
{

/// What the fake system plays, as sliders move it: time passes, the microphone and the applications deliver a tone
/// each, and the device is listened to. Thread: main, also for the cycles.
class FakeSound : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("there is one, beside the system that it drives")
    /// Amplitudes; at 0 a source delivers nothing at all, as a dead one does.
    Q_PROPERTY(qreal microphone MEMBER m_microphone NOTIFY changed)
    Q_PROPERTY(qreal applications MEMBER m_applications NOTIFY changed)
    Q_PROPERTY(bool device READ hasDevice WRITE setDevice NOTIFY changed)
    Q_PROPERTY(bool permission READ hasPermission WRITE setPermission NOTIFY changed)
    /// The largest sample that the device was given in the last cycles; 0 while nothing runs.
    Q_PROPERTY(qreal peak READ peak NOTIFY heard)

  public:
    /// The platform outlives this.
    explicit FakeSound(FakePlatform &platform);

    bool hasDevice() const;
    void setDevice(bool there);
    bool hasPermission() const;
    void setPermission(bool granted);
    qreal peak() const { return m_peak; }

  Q_SIGNALS:
    void changed();
    void heard();

  private:
    void pass();
    void cycle();
    void fill(double frequency, qreal amplitude);

    FakePlatform &m_platform;
    QTimer m_tick;
    QElapsedTimer m_clock;
    double m_owed = 0; ///< seconds of sound that are due
    std::size_t m_frame = 0;
    std::vector<float> m_block;
    qreal m_microphone = 0.25;
    qreal m_applications = 0.2;
    qreal m_peak = 0;
};

} // namespace tolvenary
