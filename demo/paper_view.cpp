#include "demo/paper_view.h"

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
constexpr int kBlockLines = 240; ///< scaled at once; a whole number of pixels at each of the usual zooms
constexpr qreal kZoomSteps[] = {0.25, 1.0 / 3, 0.5, 2.0 / 3, 0.8, 1, 2, 3, 4};
constexpr qreal kSameZoom = 1e-6;

const QColor kDesk(0xe8, 0xec, 0xf0);
const QColor kHintInk(0x6b, 0x74, 0x80);

} // namespace

PaperView::PaperView(const SimulatedPrinter& printer, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_printer(printer)
    , m_paper(printer.lookAtPaper(0, 0))
{
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    horizontalScrollBar()->setSingleStep(kScrollStep);
    verticalScrollBar()->setSingleStep(kScrollStep);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void PaperView::setFace(const PrinterFace& face)
{
    if (face == m_face)
        return;
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
    const PaperLook look = m_printer.lookAtPaper(0, 0);
    const bool newRoll = look.roll != m_paper.roll;
    if (!newRoll && look.lineCount == m_paper.lineCount)
        return;
    const bool follow = newRoll || followsNewest();
    const qint64 firstBefore = firstLine();
    m_paper = look;
    if (newRoll)
        m_tornAt = 0;
    fitOrLayOut(follow);
    // The roll gives up its oldest lines; what is being looked at stays where it is.
    const qreal lost = static_cast<qreal>(firstLine() - firstBefore) * m_zoom;
    if (!follow)
        verticalScrollBar()->setValue(verticalScrollBar()->value() - qRound(lost));
}

void PaperView::tearOff()
{
    m_tornAt = m_paper.lineCount;
    layOut(true);
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
    const PaperLook look = m_printer.lookAtPaper(firstLine(), lineCount());
    return look.roll == m_paper.roll ? look.picture : QImage();
}

void PaperView::setZoom(qreal zoom)
{
    m_fit = false;
    zoomAt(zoom, viewport()->rect().center(), followsNewest());
}

qreal PaperView::nextZoom(int direction) const
{
    const auto* end = std::end(kZoomSteps);
    const auto* step = std::upper_bound(std::begin(kZoomSteps), end, m_zoom + direction * kSameZoom);
    if (direction > 0)
        return step == end ? kLargestZoom : *step;
    return step == std::begin(kZoomSteps) ? kSmallestZoom : *(step - 1);
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

QSize PaperView::dotSize() const
{
    return {qRound(m_paper.headDots * m_zoom), qRound(lineCount() * m_zoom)};
}

QRect PaperView::dotArea() const
{
    const QPoint left((contentSize().width() - dotSize().width()) / 2, kDeskMargin + kLeader);
    return {contentOrigin() + left, dotSize()};
}

QSize PaperView::contentSize() const
{
    const int paperWidth = qRound((m_paper.headDots + 2 * kPaperMarginDots) * m_zoom);
    return {std::max(paperWidth + 2 * kDeskMargin, kPrinterWidth),
            kDeskMargin + kLeader + dotSize().height() + kPrinterHeight - kPrinterSlot};
}

/// The printer stands at the bottom of the view, and in the middle of its width, as long as there is room.
QPoint PaperView::contentOrigin() const
{
    const QSize spare = viewport()->size() - contentSize();
    return {spare.width() > 0 ? spare.width() / 2 : -horizontalScrollBar()->value(),
            spare.height() > 0 ? spare.height() : -verticalScrollBar()->value()};
}

qreal PaperView::fittingZoom() const
{
    // Room for a scroll bar is always left: the paper must not change its width when one appears.
    const int bar = verticalScrollBar()->isVisible() ? 0 : verticalScrollBar()->sizeHint().width();
    const qreal room = viewport()->width() - bar - 2 * kDeskMargin;
    return qBound(kSmallestZoom, room / (m_paper.headDots + 2 * kPaperMarginDots), kLargestZoom);
}

void PaperView::layOut(bool toNewest)
{
    const QSize hidden = (contentSize() - viewport()->size()).expandedTo({0, 0});
    horizontalScrollBar()->setRange(0, hidden.width());
    horizontalScrollBar()->setPageStep(viewport()->width());
    verticalScrollBar()->setRange(0, hidden.height());
    verticalScrollBar()->setPageStep(viewport()->height());
    if (toNewest)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    viewport()->update();
}

void PaperView::fitOrLayOut(bool toNewest)
{
    if (m_fit)
        changeZoom(fittingZoom(), toNewest);
    else
        layOut(toNewest);
}

void PaperView::changeZoom(qreal zoom, bool toNewest)
{
    m_zoom = qBound(kSmallestZoom, zoom, kLargestZoom);
    layOut(toNewest);
    emit zoomChanged();
}

void PaperView::zoomAt(qreal zoom, const QPoint& anchor, bool toNewest)
{
    const QPointF dot = QPointF(anchor - dotArea().topLeft()) / m_zoom;
    changeZoom(zoom, toNewest);
    const QPoint moved = (dotArea().topLeft() + dot * m_zoom - anchor).toPoint();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + moved.x());
    if (!toNewest)
        verticalScrollBar()->setValue(verticalScrollBar()->value() + moved.y());
}

void PaperView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), kDesk);
    const int margin = qRound(kPaperMarginDots * m_zoom);
    const QRect sheet = dotArea().adjusted(-margin, -kLeader, margin, 0);
    const int printerWidth = std::max(sheet.width() + 2 * kDeskMargin - 8, kPrinterWidth);
    const QPoint corner(sheet.center().x() - printerWidth / 2, sheet.bottom() + 1 - kPrinterSlot);
    drawPrinter(painter, {corner, QSize(printerWidth, kPrinterHeight)}, sheet, m_face);
    drawSheet(painter, sheet, event->rect());
    drawDots(painter, event->rect());
    if (lineCount() == 0)
        drawHint(painter);
}

/// Block by block from the first line shown, so that a part drawn alone looks as in the whole.
void PaperView::drawDots(QPainter& painter, const QRect& visible) const
{
    const QRect area = dotArea();
    const qreal ratio = devicePixelRatioF();
    const bool wholePixels = std::floor(m_zoom * ratio) == m_zoom * ratio;
    const auto mode = wholePixels ? Qt::FastTransformation : Qt::SmoothTransformation;
    const auto linesTo = [&](int y) {
        return qBound(0, static_cast<int>(std::ceil((y - area.top()) / m_zoom)), lineCount());
    };
    const int end = linesTo(visible.bottom() + 1);
    for (int block = linesTo(visible.top() - 1) / kBlockLines * kBlockLines; block < end; block += kBlockLines) {
        const int lines = std::min(kBlockLines, lineCount() - block);
        const PaperLook look = m_printer.lookAtPaper(firstLine() + block, lines);
        if (look.roll != m_paper.roll || look.firstLine != firstLine() + block)
            continue; // a new roll, or lines given up, since the last refresh(); the next one is due
        const int top = qRound(block * m_zoom);
        const QRect place(area.x(), area.y() + top, area.width(), qRound((block + lines) * m_zoom) - top);
        const QImage dots =
            look.picture.convertToFormat(QImage::Format_RGB32); // one bit a dot is scaled less exactly
        painter.drawImage(place, dots.scaled(place.size() * ratio, Qt::IgnoreAspectRatio, mode));
    }
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
    const bool follow = followsNewest();
    QAbstractScrollArea::resizeEvent(event);
    fitOrLayOut(follow);
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
        zoomAt(nextZoom(m_wheelTurn > 0 ? 1 : -1), event->position().toPoint(), false);
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
