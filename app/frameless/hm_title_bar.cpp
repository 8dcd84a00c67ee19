#include "app/frameless/hm_title_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

QPoint nearestScreenPixel(const QPointF& position)
{
    // Not toPoint(), which rounds -0.5 up.
    return {static_cast<int>(std::lround(position.x())), static_cast<int>(std::lround(position.y()))};
}

HMTitleBar::HMTitleBar(QWidget* parent)
    : QWidget(parent)
{
}

void HMTitleBar::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = nearestScreenPixel(event->screenPos());
    m_pressed = true;
    m_lastPosX = position.x();
    m_lastPosY = position.y();
    QWidget::mousePressEvent(event);
}

void HMTitleBar::mouseMoveEvent(QMouseEvent* event)
{
    if (m_pressed) {
        const QPoint position = nearestScreenPixel(event->screenPos());
        const QPoint step(position.x() - m_lastPosX, position.y() - m_lastPosY);
        m_lastPosX = position.x();
        m_lastPosY = position.y();
        if (QWidget* window = parentWidget())
            window->move(window->pos() + step);
    }
    QWidget::mouseMoveEvent(event);
}

void HMTitleBar::mouseReleaseEvent(QMouseEvent* event)
{
    m_pressed = false;
    QWidget::mouseReleaseEvent(event);
}

void HMTitleBar::paintEvent(QPaintEvent* event)
{
    // The outline that a strip with a colour of its own would fill; it has none, the window shows through.
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(0, 0, width(), height(), 3.0, 3.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QWidget::paintEvent(event);
}
