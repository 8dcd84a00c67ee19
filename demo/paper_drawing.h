#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

/// What the drawn printer tells of itself.
struct PrinterFace
{
    QString name;
    QString state;
    QColor light; ///< of its lamp; says the same as `state`

    bool operator==(const PrinterFace& other) const
    {
        return name == other.name && state == other.state && light == other.light;
    }
};

/// The height of the drawn printer and where in it the paper comes out, in pixels.
constexpr int kPrinterHeight = 54;
constexpr int kPrinterSlot = 11;
/// A narrower printer has no room for its texts.
constexpr int kPrinterWidth = 300;

/// The housing with its slot, seen from the front.
/// @param sheet  the paper, whose width the slot has
void drawPrinter(QPainter& painter, const QRect& housing, const QRect& sheet, const PrinterFace& face);

/// A blank strip of paper with its shadow and, at the top, the teeth of the tear bar.
/// @param sheet    the whole strip, which may be far longer than a screen
/// @param visible  what has to be drawn
void drawSheet(QPainter& painter, const QRect& sheet, const QRect& visible);
