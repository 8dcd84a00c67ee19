#include "demo/paper_dots.h"

#include <QVector>
#include <QtAlgorithms>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

QRgb grey(qreal blackness)
{
    const int level = qBound(0, qRound(255 * (1 - blackness)), 255);
    return qRgb(level, level, level);
}

bool isBlack(const uchar* line, int dot)
{
    return (line[dot >> 3] >> (7 - (dot & 7)) & 1) != 0;
}

/// The line of the paper, or null where there is none.
const uchar* lineOf(const QImage& dots, qint64 line)
{
    return line < 0 || line >= dots.height() ? nullptr : dots.constScanLine(static_cast<int>(line));
}

void renderHard(const QImage& dots, qint64 firstLine, qreal scale, const QRect& pixels, QImage* result)
{
    const auto dotAt = [scale](int pixel) {
        return static_cast<qint64>(std::floor((pixel + 0.5) / scale));
    };
    QVector<int> columns(pixels.width());
    for (int column = 0; column < columns.size(); ++column)
        columns[column] = static_cast<int>(std::min<qint64>(dotAt(pixels.left() + column), dots.width() - 1));
    qint64 drawn = -1;
    for (int row = 0; row < pixels.height(); ++row) {
        auto* out = reinterpret_cast<QRgb*>(result->scanLine(row));
        const qint64 number = dotAt(pixels.top() + row);
        const uchar* line = lineOf(dots, number - firstLine);
        if (row > 0 && number == drawn) {
            std::memcpy(out, result->constScanLine(row - 1), static_cast<std::size_t>(result->bytesPerLine()));
            continue;
        }
        drawn = number;
        for (const int dot : qAsConst(columns))
            *out++ = line && isBlack(line, dot) ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
    }
}

/// How many dots are black left of each pixel edge; edges within a dot count their share of it.
class InkSums
{
public:
    InkSums(qreal scale, const QRect& pixels, int dots)
        : m_sums(dots / 8 + 1)
    {
        for (int column = 0; column <= pixels.width(); ++column) {
            const qreal at = qBound<qreal>(0, (pixels.left() + column) / scale, dots);
            const int whole = static_cast<int>(at);
            m_edges.append({whole, at - whole});
        }
    }

    /// Adds to each column what the pixel covers of the line.
    void add(const uchar* line, qreal weight, QVector<qreal>* columns)
    {
        // Plain pointers: a small picture of a long paper takes millions of steps.
        int* sums = m_sums.data();
        for (int byte = 0; byte + 1 < m_sums.size(); ++byte)
            sums[byte + 1] = sums[byte] + static_cast<int>(qPopulationCount(line[byte]));
        qreal left = -1;
        qreal* column = columns->data();
        for (const Edge& edge : qAsConst(m_edges)) {
            const int rest = edge.whole & 7;
            qreal right = sums[edge.whole >> 3];
            if (rest > 0)
                right += qPopulationCount(static_cast<quint8>(line[edge.whole >> 3] >> (8 - rest)));
            if (edge.share > 0 && isBlack(line, edge.whole))
                right += edge.share;
            if (left >= 0)
                *column++ += weight * (right - left);
            left = right;
        }
    }

private:
    struct Edge
    {
        int whole;   ///< dots left of it
        qreal share; ///< of the next dot
    };

    QVector<Edge> m_edges;
    QVector<int> m_sums;
};

void renderSoft(const QImage& dots, qint64 firstLine, qreal scale, const QRect& pixels, QImage* result)
{
    InkSums sums(scale, pixels, dots.width());
    QVector<qreal> ink(pixels.width());
    for (int row = 0; row < pixels.height(); ++row) {
        const qreal top = (pixels.top() + row) / scale;
        const qreal bottom = (pixels.top() + row + 1) / scale;
        ink.fill(0);
        for (qreal number = std::floor(top); number < bottom; ++number) {
            const qreal covered = std::min(bottom, number + 1) - std::max(top, number);
            if (const uchar* line = lineOf(dots, static_cast<qint64>(number) - firstLine))
                sums.add(line, covered, &ink);
        }
        auto* out = reinterpret_cast<QRgb*>(result->scanLine(row));
        for (int column = 0; column < pixels.width(); ++column)
            out[column] = grey(ink[column] * scale * scale);
    }
}

} // namespace

QImage renderDots(const QImage& dots, qint64 firstLine, qreal scale, DotEdges edges, const QRect& pixels)
{
    QImage result(pixels.size(), QImage::Format_RGB32);
    if (result.isNull())
        return {};
    const bool whole = scale == std::floor(scale);
    if (dots.isNull())
        result.fill(Qt::white);
    else if (edges == DotEdges::Hard || whole)
        renderHard(dots, firstLine, scale, pixels, &result);
    else
        renderSoft(dots, firstLine, scale, pixels, &result);
    return result;
}
