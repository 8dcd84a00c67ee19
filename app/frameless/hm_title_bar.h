#pragma once

#include <QWidget>

/// Whole screen pixel nearest to a screen position, halves away from zero (also on a screen left of or above the
/// first one, where positions are negative).
QPoint nearestScreenPixel(const QPointF& position);

/// Transparent strip; dragging it moves its parent, which is a window. GUI thread.
class HMTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit HMTitleBar(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    qint32 m_lastPosX = 0;  ///< screen x of the mouse at the last press or move
    qint32 m_lastPosY = 0;  ///< screen y of the same
    bool m_pressed = false; ///< between a press and the release that follows it
};
