#include "app/widgets/strip_button.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

enum State { Normal, Hover, Pressed, Disabled };
constexpr int kDensity = 2;
constexpr qreal kPale = 0.34; ///< makes the artwork's ink its disabled grey

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
        return isPale() ? Normal : Disabled;
    if (isDown() || isChecked())
        return Pressed;
    return hasFocus() || option.state & QStyle::State_MouseOver ? Hover : Normal;
}

bool StripButton::isPale() const
{
    return !isEnabled() && (Disabled + 1) * width() * kDensity > m_dense.width();
}

void StripButton::paintEvent(QPaintEvent* event)
{
    const bool dense = devicePixelRatioF() > 1 && !m_dense.isNull();
    if (!dense && !isPale()) {
        QPushButton::paintEvent(event);
        return;
    }
    const QPixmap strip = dense ? m_dense : QPixmap(m_strip);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform); // for densities other than 2
    painter.setOpacity(isPale() ? kPale : 1);
    const QSize cell = size() * strip.height() / height();
    painter.drawPixmap(rect(), strip, QRect(QPoint(state() * cell.width(), 0), cell));
}
