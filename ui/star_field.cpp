#include "ui/star_field.h"

#include "ui/star_nodes.h"

#include <QQuickWindow>

#include <algorithm>
#include <chrono>

namespace tolvenary
{

namespace
{

// At this pace a star's opacity never steps by more than three parts in a hundred.
constexpr std::chrono::milliseconds frame{33};

} // namespace

StarField::StarField(QQuickItem *parent)
    : QQuickItem(parent), m_stars(makeStars(systemRandomBits)), m_pulses(makePulses(m_stars.size(), systemRandomBits))
{
    setFlag(ItemHasContents);
    m_tick.setInterval(frame);
    connect(&m_tick, &QTimer::timeout, this, &StarField::tick);
    connect(this, &StarField::pausedChanged, this, &StarField::updatePulsing);
}

void StarField::setTwinkle(bool twinkle)
{
    if (twinkle == m_twinkle)
        return;
    m_twinkle = twinkle;
    m_seconds = 0;
    Q_EMIT twinkleChanged();
    updatePulsing();
}

void StarField::setRestful(bool restful)
{
    if (restful == m_restful)
        return;
    m_restful = restful;
    Q_EMIT restfulChanged();
    updatePulsing();
}

void StarField::setStars(std::vector<Star> stars)
{
    m_stars = std::move(stars);
    m_pulses = makePulses(m_stars.size(), systemRandomBits);
    update();
}

std::vector<double> StarField::opacities() const
{
    std::vector<double> opacities;
    opacities.reserve(m_stars.size());
    const bool pulses = m_twinkle && !m_restful;
    for (std::size_t i = 0; i < m_stars.size(); ++i)
        opacities.push_back(m_stars[i].a * (pulses ? brightness(m_pulses[i], m_seconds) : 1));
    return opacities;
}

bool StarField::eventFilter(QObject *watched, QEvent *event)
{
    // The window system tells with the same event that the window came into view and that it went out of it.
    if (event->type() == QEvent::Expose)
        updatePulsing();
    return QQuickItem::eventFilter(watched, event);
}

void StarField::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void StarField::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange) {
        if (data.window) {
            data.window->installEventFilter(this);
            connect(data.window, &QWindow::visibilityChanged, this, &StarField::updatePulsing, Qt::UniqueConnection);
        }
        updatePulsing();
    }
    if (change == ItemVisibleHasChanged)
        updatePulsing();
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

QSGNode *StarField::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    if (width() <= 0 || height() <= 0) {
        delete node;
        return nullptr;
    }
    const StarPicture picture{m_stars, opacities(), size(), window()->effectiveDevicePixelRatio()};
    // The software renderer knows no geometry.
    const bool software = window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    return software ? updateStarSprites(node, picture, *window()) : updateStarGeometry(node, picture);
}

void StarField::updatePulsing()
{
    const bool seen = window() && window()->isExposed() && window()->visibility() != QWindow::Minimized && isVisible();
    const bool pulses = m_twinkle && !m_restful && !m_paused && seen;
    if (pulses == m_tick.isActive())
        return;
    if (pulses) {
        m_sinceTick.start();
        m_tick.start();
    } else {
        m_tick.stop();
        update();
    }
}

void StarField::tick()
{
    m_seconds += static_cast<double>(m_sinceTick.restart()) / 1000;
    update();
}

} // namespace tolvenary
