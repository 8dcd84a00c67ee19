#include "demo/paper_drawing.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int kTooth = 8;
constexpr int kToothDepth = 4;
constexpr int kShadow = 6;
constexpr int kTextMargin = 16;

const QColor kHousingTop(0x4b, 0x54, 0x60);
const QColor kHousingBottom(0x33, 0x3a, 0x44);
const QColor kHousingInk(0xe6, 0xea, 0xef);

/// The strip's torn end, as deep as the teeth.
QPainterPath teeth(const QRect& sheet)
{
    const int bottom = sheet.top() + kToothDepth;
    const int right = sheet.left() + sheet.width();
    QPainterPath path(QPointF(sheet.left(), bottom));
    for (int x = sheet.left(); x < right; x += kTooth) {
        path.lineTo(x, sheet.top());
        path.lineTo(std::min(x + kTooth / 2, right), bottom);
        path.lineTo(std::min(x + kTooth, right), sheet.top());
    }
    path.lineTo(right, bottom);
    return path;
}

void drawSideShadow(QPainter& painter, const QRect& strip, int from, int to)
{
    QLinearGradient shade(from, 0, to, 0);
    shade.setColorAt(0, QColor(0x20, 0x2a, 0x38, 70));
    shade.setColorAt(0.4, QColor(0x20, 0x2a, 0x38, 22));
    shade.setColorAt(1, Qt::transparent);
    painter.fillRect(strip, shade);
}

void drawLamp(QPainter& painter, const QPointF& centre, const QColor& light)
{
    QColor glow = light;
    glow.setAlpha(70);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(centre, 7, 7);
    painter.setBrush(light);
    painter.drawEllipse(centre, 4, 4);
}

} // namespace

void drawPrinter(QPainter& painter, const QRect& housing, int slotLeft, int slotRight, const PrinterFace& face)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath body;
    body.addRoundedRect(QRectF(housing.adjusted(0, 0, 0, 20)), 10, 10); // its lower corners are out of sight
    QLinearGradient shade(housing.topLeft(), housing.bottomLeft());
    shade.setColorAt(0, kHousingTop);
    shade.setColorAt(1, kHousingBottom);
    painter.setClipRect(housing);
    painter.fillPath(body, shade);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x14, 0x17, 0x1c));
    painter.drawRoundedRect(QRectF(slotLeft - 6, housing.top() + kPrinterSlot - 3, slotRight - slotLeft + 12, 6), 3,
                            3);

    const QRect texts = housing.adjusted(kTextMargin, kPrinterSlot + 6, -kTextMargin, -4);
    painter.setPen(kHousingInk);
    painter.drawText(texts, Qt::AlignLeft | Qt::AlignVCenter, face.name);
    painter.drawText(texts, Qt::AlignRight | Qt::AlignVCenter, face.state);
    const int stateWidth = painter.fontMetrics().horizontalAdvance(face.state);
    drawLamp(painter, QPointF(texts.right() - stateWidth - 14, texts.center().y() + 0.5), face.light);
    painter.restore();
}

void drawSheet(QPainter& painter, const QRect& sheet, const QRect& visible)
{
    const QRect body = sheet.adjusted(0, kToothDepth, 0, 0);
    const QRect shown = body & visible;
    const int right = sheet.left() + sheet.width();
    const QRect sides = body & QRect(sheet.left(), visible.top(), sheet.width(), visible.height());
    painter.fillRect(shown, Qt::white);
    drawSideShadow(painter, QRect(sheet.left() - kShadow, sides.top(), kShadow, sides.height()), sheet.left(),
                   sheet.left() - kShadow);
    drawSideShadow(painter, QRect(right, sides.top(), kShadow, sides.height()), right, right + kShadow);
    if (sheet.top() + kToothDepth < visible.top())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x20, 0x2a, 0x38, 60), 1));
    painter.drawPath(teeth(sheet));
    painter.fillPath(teeth(sheet), Qt::white);
    painter.restore();
}
