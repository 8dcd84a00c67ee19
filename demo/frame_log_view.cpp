#include "demo/frame_log_view.h"

#include "demo/frame_log_model.h"

#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int kCellPadding = 24;
constexpr int kRowPadding = 6;

} // namespace

FrameLogView::FrameLogView(QWidget* parent)
    : QTableView(parent)
{
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false); // Tab leads out of the table
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed); // so that thousands of rows need not be measured
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);

    const QScrollBar* bar = verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) { m_follows = value == bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this](int, int maximum) {
        if (m_follows)
            verticalScrollBar()->setValue(maximum);
    });
}

void FrameLogView::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { setAutoScroll(true); });
    fitColumns();
}

void FrameLogView::fitColumns()
{
    ensurePolished();
    QFont bold = font(); // the rows of damaged frames
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    for (int column = 0; model() && column < FrameLogModel::ColumnCount; ++column) {
        int width = metrics.horizontalAdvance(model()->headerData(column, Qt::Horizontal).toString());
        for (const QString& text : FrameLogModel::widestTexts(column))
            width = std::max(width, metrics.horizontalAdvance(text));
        setColumnWidth(column, width + kCellPadding);
    }
}

void FrameLogView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    // When the current row is among those that go, its successor becomes current; that must not scroll to it.
    setAutoScroll(false);
    QTableView::rowsAboutToBeRemoved(parent, first, last);
    if (!m_follows) {
        const int lost = (last - first + 1) * verticalHeader()->defaultSectionSize();
        verticalScrollBar()->setValue(verticalScrollBar()->value() - lost);
    }
}
