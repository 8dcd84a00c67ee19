#include "app/frameless/hm_base_window.h"

#include "app/frameless/hm_title_bar.h"

#include <QPainter>
#include <QPainterPath>

HMBaseWindow::HMBaseWindow(QWidget* parent)
    : QWidget(parent)
    , m_titleBar(nullptr)
{
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint);
    setAttribute(Qt::WA_TranslucentBackground);
    m_titleBar = new HMTitleBar(this);
    m_titleBar->move(0, 0);
}

void HMBaseWindow::paintEvent(QPaintEvent*)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(0, 0, width(), height(), 3.0, 3.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillPath(path, QBrush(QColor(238, 223, 204)));
}
