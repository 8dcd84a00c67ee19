#include "demo/paper_drawing.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>

namespace {

constexpr int kTooth = 8;
constexpr int kToothDepth = 4;
constexpr int kTextMargin = 16;
constexpr int kShadow[] = {60, 40, 26, 17, 10, 4}; ///< opacity of each column of pixels beside the paper

const QColor kHousingTop(0x4b, 0x54, 0x60);
const QColor kHousingBottom(0x33, 0x3a, 0x44);
const QColor kHousingInk(0xe6, 0xea, 0xef);
const QColor kSlot(0x14, 0x17, 0x1c);

QColor shade(int opacity)
{
    return {0x20, 0x2a, 0x38, opacity};
}

/// The strip's torn end, as deep as the teeth.
QPolygonF teeth(const QRect& sheet)
{
    const qreal top = sheet.top();
    const qreal bottom = top + kToothDepth;
    QPolygonF points;
    for (int x = 0; x < sheet.width(); x += kTooth / 2)
        points << QPointF(sheet.left() + x, x % kTooth == 0 ? top : bottom);
    return points << QPointF(sheet.left() + sheet.width(), bottom) << QPointF(sheet.left(), bottom);
}

void drawLamp(QPainter& painter, const QPointF& centre, QColor light)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawEllipse(centre, 4, 4);
    light.setAlpha(70);
    painter.setBrush(light);
    painter.drawEllipse(centre, 7, 7);
}

} // namespace

void drawPrinter(QPainter& painter, const QRect& housing, const QRect& sheet, const PrinterFace& face)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(housing);
    painter.setPen(Qt::NoPen);
    QLinearGradient body(housing.topLeft(), housing.bottomLeft());
    body.setColorAt(0, kHousingTop);
    body.setColorAt(1, kHousingBottom);
    painter.setBrush(body);
    painter.drawRoundedRect(housing.adjusted(0, 0, 0, 20), 10, 10); // its lower corners are out of sight
    painter.setBrush(kSlot);
    painter.drawRoundedRect(sheet.left() - 6, housing.top() + kPrinterSlot - 3, sheet.width() + 12, 6, 3, 3);

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
    const QRect inSight(sheet.x(), visible.y(), sheet.width(), visible.height());
    const QRect body = sheet.adjusted(0, kToothDepth, 0, 0) & inSight;
    painter.fillRect(body, Qt::white);
    QRect beside = body;
    for (const int opacity : kShadow) {
        beside.adjust(-1, 0, 1, 0);
        painter.fillRect(beside.left(), beside.top(), 1, beside.height(), shade(opacity));
        painter.fillRect(beside.right(), beside.top(), 1, beside.height(), shade(opacity));
    }
    if (sheet.top() + kToothDepth < visible.top())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(shade(60));
    painter.drawPolygon(teeth(sheet));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawPolygon(teeth(sheet));
    painter.restore();
}
