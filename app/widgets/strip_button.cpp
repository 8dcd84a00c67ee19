#include "app/widgets/strip_button.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

enum State { Normal, Hover, Pressed, Disabled };
constexpr int kDensity = 2;

QString denseNameOf(QString file)
{
    return file.insert(file.lastIndexOf(QLatin1Char('.')), QStringLiteral("@2x"));
}

} // namespace

StripButton::StripButton(QWidget* parent)
    : QPushButton(parent)
{
}

void StripButton::setStrip(const QString& file)
{
    m_strip = file;
    m_dense = QPixmap(denseNameOf(file));
    m_dense.setDevicePixelRatio(1); // cells are cut in pixels of the file
    update();
}

int StripButton::state() const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    if (!isEnabled())
        return (Disabled + 1) * width() * kDensity <= m_dense.width() ? Disabled : Normal;
    if (isDown() || isChecked())
        return Pressed;
    return hasFocus() || option.state & QStyle::State_MouseOver ? Hover : Normal;
}

void StripButton::paintEvent(QPaintEvent* event)
{
    if (devicePixelRatioF() <= 1 || m_dense.isNull()) {
        QPushButton::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform); // for densities other than 2
    const QSize cell = size() * kDensity;
    painter.drawPixmap(rect(), m_dense, QRect(QPoint(state() * cell.width(), 0), cell));
}
