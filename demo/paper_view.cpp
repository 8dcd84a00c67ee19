#include "demo/paper_view.h"

#include "demo/paper_dots.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kPaperMarginDots = 32; ///< the head is 4 mm narrower than the paper on either side
constexpr int kDeskMargin = 24;      ///< between the paper and the edge of the view
constexpr int kLeader = 18;          ///< paper between the tear bar and the first line
constexpr int kWheelNotch = 120;     ///< eighths of a degree
constexpr int kScrollStep = 24;
constexpr qreal kZoomSteps[] = {0.25, 1.0 / 3, 0.5, 2.0 / 3, 0.8, 1, 2, 3, 4};
constexpr qreal kSameZoom = 1e-6;

const QColor kDesk(0xe8, 0xec, 0xf0);
const QColor kHintInk(0x6b, 0x74, 0x80);

} // namespace

PaperView::PaperView(QWidget* parent)
    : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    horizontalScrollBar()->setSingleStep(kScrollStep);
    verticalScrollBar()->setSingleStep(kScrollStep);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void PaperView::setSource(Source source)
{
    m_source = std::move(source);
    refresh();
}

void PaperView::setFace(const PrinterFace& face)
{
    m_face = face;
    viewport()->update();
}

void PaperView::setHint(const QString& hint)
{
    m_hint = hint;
    viewport()->update();
}

void PaperView::refresh()
{
    const qint64 firstBefore = firstLine();
    const PaperLook before = m_paper;
    m_paper = m_source(0, 0);
    const bool newRoll = m_paper.roll != before.roll;
    if (newRoll)
        m_tornAt = 0;
    const bool stay = !newRoll && !followsNewest();
    if (stay && firstLine() != firstBefore) {
        // The roll has given up its oldest lines; what is being looked at stays where it is.
        const int lost = qRound(static_cast<qreal>(firstLine() - firstBefore) * m_zoom);
        verticalScrollBar()->setValue(verticalScrollBar()->value() - lost);
    }
    if (m_fit && m_paper.headDots != before.headDots)
        changeZoom(fittingZoom());
    if (newRoll)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    layOut();
}

void PaperView::tearOff()
{
    m_tornAt = m_paper.lineCount;
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    layOut();
}

qint64 PaperView::firstLine() const
{
    return std::max(m_tornAt, m_paper.firstKeptLine);
}

int PaperView::lineCount() const
{
    return static_cast<int>(m_paper.lineCount - firstLine());
}

QImage PaperView::picture() const
{
    const PaperLook look = m_source(firstLine(), lineCount());
    return look.roll == m_paper.roll ? look.picture : QImage();
}

void PaperView::setZoom(qreal zoom)
{
    m_fit = false;
    zoomAt(zoom, viewport()->rect().center(), followsNewest());
}

qreal PaperView::zoomAbove() const
{
    const auto* next = std::find_if(std::begin(kZoomSteps), std::end(kZoomSteps),
                                    [this](qreal step) { return step > m_zoom + kSameZoom; });
    return next == std::end(kZoomSteps) ? kLargestZoom : *next;
}

qreal PaperView::zoomBelow() const
{
    const auto* here = std::find_if(std::begin(kZoomSteps), std::end(kZoomSteps),
                                    [this](qreal step) { return step > m_zoom - kSameZoom; });
    return here == std::begin(kZoomSteps) ? kSmallestZoom : *(here - 1);
}

void PaperView::setFitToWidth(bool fit)
{
    m_fit = fit;
    zoomAt(fit ? fittingZoom() : m_zoom, viewport()->rect().center(), followsNewest());
}

bool PaperView::followsNewest() const
{
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

QRect PaperView::dotArea() const
{
    const QPoint origin = contentOrigin();
    const int left = origin.x() + (contentSize().width() - qRound(m_paper.headDots * m_zoom)) / 2;
    return {left, origin.y() + kDeskMargin + kLeader, static_cast<int>(std::ceil(m_paper.headDots * m_zoom)),
            static_cast<int>(std::ceil(lineCount() * m_zoom))};
}

int PaperView::paperWidth() const
{
    return qRound((m_paper.headDots + 2 * kPaperMarginDots) * m_zoom);
}

QSize PaperView::contentSize() const
{
    const int height = static_cast<int>(std::ceil(lineCount() * m_zoom));
    return {std::max(paperWidth() + 2 * kDeskMargin, kPrinterWidth),
            kDeskMargin + kLeader + height + kPrinterHeight - kPrinterSlot};
}

/// The printer stands at the bottom of the view, and in the middle of its width, as long as there is room.
QPoint PaperView::contentOrigin() const
{
    const QSize room = viewport()->size();
    const QSize content = contentSize();
    return {content.width() < room.width() ? (room.width() - content.width()) / 2 : -horizontalScrollBar()->value(),
            content.height() < room.height() ? room.height() - content.height() : -verticalScrollBar()->value()};
}

qreal PaperView::fittingZoom() const
{
    // Room for a scroll bar is always left: the paper must not change its width when one appears.
    const int bar = verticalScrollBar()->isVisible() ? 0 : verticalScrollBar()->sizeHint().width();
    const int room = viewport()->width() - bar - 2 * kDeskMargin;
    qreal zoom = qBound<qreal>(kSmallestZoom, qreal(room) / (m_paper.headDots + 2 * kPaperMarginDots), kLargestZoom);
    if (zoom >= 1)
        zoom = std::floor(zoom * devicePixelRatioF()) / devicePixelRatioF();
    return zoom;
}

void PaperView::layOut()
{
    const bool follow = followsNewest();
    const QSize content = contentSize();
    const QSize room = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, content.width() - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    verticalScrollBar()->setRange(0, std::max(0, content.height() - room.height()));
    verticalScrollBar()->setPageStep(room.height());
    if (follow)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    viewport()->update();
}

void PaperView::changeZoom(qreal zoom)
{
    m_zoom = qBound(kSmallestZoom, zoom, kLargestZoom);
    layOut();
    emit zoomChanged();
}

void PaperView::zoomAt(qreal zoom, const QPoint& anchor, bool toNewest)
{
    const QPointF dot = QPointF(anchor - dotArea().topLeft()) / m_zoom;
    changeZoom(zoom);
    const QPoint moved = (dotArea().topLeft() + dot * m_zoom - anchor).toPoint();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + moved.x());
    verticalScrollBar()->setValue(toNewest ? verticalScrollBar()->maximum()
                                           : verticalScrollBar()->value() + moved.y());
}

void PaperView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), kDesk);
    const QRect dots = dotArea();
    const int margin = qRound(kPaperMarginDots * m_zoom);
    const QRect sheet = dots.adjusted(-margin, -kLeader, margin, 0);
    const int slotAt = sheet.bottom() + 1;
    const int printerWidth = std::max(sheet.width() + 2 * kDeskMargin - 8, kPrinterWidth);
    const QRect housing(sheet.center().x() - printerWidth / 2, slotAt - kPrinterSlot, printerWidth, kPrinterHeight);
    if (housing.intersects(event->rect()))
        drawPrinter(painter, housing, sheet.left(), sheet.right() + 1, m_face);
    drawSheet(painter, sheet, event->rect());
    drawDots(painter, dots & event->rect());
    if (lineCount() == 0)
        drawHint(painter);
}

void PaperView::drawDots(QPainter& painter, const QRect& visible) const
{
    if (visible.isEmpty())
        return;
    const qreal ratio = devicePixelRatioF();
    const qreal scale = m_zoom * ratio;
    const QPoint corner = dotArea().topLeft();
    const QRectF part(QPointF(visible.topLeft() - corner) * ratio, QSizeF(visible.size()) * ratio);
    const QRect pixels = part.toAlignedRect();
    const auto first = static_cast<int>(pixels.top() / scale);
    const int end = std::min(lineCount(), static_cast<int>(std::ceil((pixels.bottom() + 1) / scale)));
    const PaperLook look = m_source(firstLine() + first, end - first);
    // A roll put in since the last refresh() has other lines; its own refresh is on its way.
    const QImage dots = look.roll == m_paper.roll ? look.picture : QImage();
    QImage picture =
        renderDots(dots, look.firstLine - firstLine(), scale, m_zoom < 1 ? DotEdges::Soft : DotEdges::Hard, pixels);
    picture.setDevicePixelRatio(ratio);
    painter.drawImage(QPointF(corner) + QPointF(pixels.topLeft()) / ratio, picture);
}

void PaperView::drawHint(QPainter& painter) const
{
    QRect room = viewport()->rect().adjusted(kDeskMargin, kDeskMargin, -kDeskMargin, 0);
    room.setBottom(dotArea().top() - kLeader - kDeskMargin);
    painter.setPen(kHintInk);
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}

void PaperView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    if (m_fit)
        changeZoom(fittingZoom());
    else
        layOut();
}

void PaperView::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    event->accept();
    m_wheelTurn += event->angleDelta().y(); // touch pads send fractions of a notch
    for (; std::abs(m_wheelTurn) >= kWheelNotch; m_wheelTurn -= m_wheelTurn > 0 ? kWheelNotch : -kWheelNotch) {
        m_fit = false;
        zoomAt(m_wheelTurn > 0 ? zoomAbove() : zoomBelow(), event->position().toPoint(), false);
    }
}

void PaperView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Home)
        verticalScrollBar()->setValue(0);
    else if (event->key() == Qt::Key_End)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    else
        QAbstractScrollArea::keyPressEvent(event);
}
