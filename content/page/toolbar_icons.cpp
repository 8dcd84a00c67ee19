#include "content/page/toolbar_icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace {

constexpr qreal kGrid = 20; // glyphs are drawn on a grid of 20 × 20

void drawLetter(QPainter& painter, const QString& letter, const QRectF& rect, qreal height, QFont font)
{
    font.setPixelSize(100);
    QPainterPath path;
    path.addText(0, 0, font, letter);
    const QRectF box = path.boundingRect();
    const qreal scale = height / box.height();
    painter.save();
    painter.translate(rect.center().x() - box.center().x() * scale, rect.bottom() - box.bottom() * scale);
    painter.scale(scale, scale);
    painter.fillPath(path, painter.pen().color());
    painter.restore();
}

QFont letterFont(QFont::Weight weight, bool italic = false)
{
    QFont font(QStringLiteral("serif"));
    font.setStyleHint(QFont::Serif);
    font.setWeight(weight);
    font.setItalic(italic);
    return font;
}

void drawTurn(QPainter& painter, bool back)
{
    if (!back) {
        painter.translate(kGrid, 0);
        painter.scale(-1, 1);
    }
    QPainterPath bow(QPointF(5.5, 7.5));
    bow.lineTo(12, 7.5);
    bow.arcTo(QRectF(8, 7.5, 8.5, 8.5), 90, -180);
    bow.lineTo(8, 16);
    painter.setPen(QPen(painter.pen().color(), 1.8, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPath(bow);
    QPainterPath head(QPointF(2.5, 7.5));
    head.lineTo(7.5, 3.2);
    head.lineTo(7.5, 11.8);
    head.closeSubpath();
    painter.fillPath(head, painter.pen().color());
}

void drawBars(QPainter& painter, Glyph glyph)
{
    static constexpr std::array<int, 4> kLengths = {14, 9, 14, 9};
    int y = 3;
    for (const int length : kLengths) {
        const int room = 14 - length;
        int x = 3;
        if (glyph == Glyph::AlignCenter)
            x += room / 2;
        else if (glyph == Glyph::AlignRight)
            x += room;
        painter.fillRect(QRectF(x, y, length, 2), painter.pen().color());
        y += 4;
    }
}

void drawSizedA(QPainter& painter, bool larger)
{
    const QColor ink = painter.pen().color();
    drawLetter(painter, QStringLiteral("A"), QRectF(0.5, 0, 13, 17), larger ? 13.5 : 10, letterFont(QFont::DemiBold));
    painter.fillRect(QRectF(13, 5, 6, 1.8), ink);
    if (larger)
        painter.fillRect(QRectF(15.1, 2.9, 1.8, 6), ink);
}

void drawGlyph(QPainter& painter, Glyph glyph)
{
    const QRectF letterBox(0, 0, kGrid, 16.5);
    switch (glyph) {
    case Glyph::Undo:
    case Glyph::Redo:
        return drawTurn(painter, glyph == Glyph::Undo);
    case Glyph::Bold:
        return drawLetter(painter, QStringLiteral("B"), letterBox, 13, letterFont(QFont::Bold));
    case Glyph::Italic:
        return drawLetter(painter, QStringLiteral("I"), letterBox, 13, letterFont(QFont::Normal, true));
    case Glyph::Underline:
        drawLetter(painter, QStringLiteral("U"), QRectF(0, 0, kGrid, 14), 11.5, letterFont(QFont::DemiBold));
        return painter.fillRect(QRectF(4, 16, 12, 1.5), painter.pen().color());
    case Glyph::AlignLeft:
    case Glyph::AlignCenter:
    case Glyph::AlignRight:
        return drawBars(painter, glyph);
    case Glyph::Larger:
    case Glyph::Smaller:
        return drawSizedA(painter, glyph == Glyph::Larger);
    }
}

class GlyphEngine : public QIconEngine
{
public:
    GlyphEngine(Glyph glyph, const QPalette& palette)
        : m_glyph(glyph)
        , m_palette(palette)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(m_palette.color(group, QPalette::ButtonText));
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / kGrid, rect.height() / kGrid);
        drawGlyph(*painter, m_glyph);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    Glyph m_glyph;
    QPalette m_palette;
};

} // namespace

QIcon toolbarIcon(Glyph glyph, const QPalette& palette)
{
    return QIcon(new GlyphEngine(glyph, palette));
}
