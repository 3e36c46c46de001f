#pragma once

#include "ui/star.h"

#include <QElapsedTimer>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// Draws the stars and lets them pulse. The stars are made with the field and stay for its life; their places follow
/// its size. While nobody can see the window nothing is drawn and no timer runs. Thread: main, but for the drawing.
class StarField : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool twinkle READ twinkle WRITE setTwinkle NOTIFY twinkleChanged FINAL)
    Q_PROPERTY(bool restful READ restful WRITE setRestful NOTIFY restfulChanged FINAL)
    Q_PROPERTY(bool paused MEMBER m_paused NOTIFY pausedChanged FINAL)

  public:
    explicit StarField(QQuickItem *parent = nullptr);

    /// From the first true on the stars pulse, each in its own rhythm; before it they stand at full opacity.
    bool twinkle() const { return m_twinkle; }
    void setTwinkle(bool twinkle);

    /// True for users who want nothing to move: the stars stand at full opacity.
    bool restful() const { return m_restful; }
    void setRestful(bool restful);

    const std::vector<Star> &stars() const { return m_stars; }

    /// Other stars in place of the random ones, for pictures that must not differ.
    void setStars(std::vector<Star> stars);

    /// True while frames are being asked for.
    bool isPulsing() const { return m_tick.isActive(); }

    /// The opacity in which each star is drawn now.
    std::vector<double> opacities() const;

  Q_SIGNALS:
    void twinkleChanged();
    void restfulChanged();
    void pausedChanged();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

  private:
    void updatePulsing();
    void tick();

    std::vector<Star> m_stars;
    std::vector<Pulse> m_pulses;
    QTimer m_tick;
    QElapsedTimer m_sinceTick;
    double m_seconds = 0; ///< of pulsing that were seen; a hidden field stands still
    bool m_twinkle = false;
    bool m_restful = false;
    bool m_paused = false; ///< the stars stand as they were: nobody can see the window
};

} // namespace tolvenary
