#include "app/widgets/glyph_button.h"

#include <QStyle>
#include <QStyleOptionToolButton>
#include <QStylePainter>

GlyphButton::GlyphButton(QAction* action, QWidget* parent)
    : QToolButton(parent)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus); // the caret stays in the page; every action has a key of its own
    setDefaultAction(action);
}

void GlyphButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.icon = QIcon();
    option.text.clear();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    const QRect place = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, iconSize(), rect());
    const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
    painter.drawPixmap(place, icon().pixmap(iconSize() * devicePixelRatioF(), mode));
}
