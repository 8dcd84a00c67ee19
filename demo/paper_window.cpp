#include "demo/paper_window.h"

#include "app/widgets/light_palette.h"
#include "demo/frame_log_model.h"
#include "demo/paper_style.h"
#include "demo/paper_view.h"
#include "demo/wrapping_layout.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDateTime>
#include <QEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImageWriter>
#include <QLabel>
#include <QMessageBox>
#include <QSaveFile>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStandardPaths>
#include <QTableView>
#include <QToolButton>

using Model = SimulatedPrinter::Model;
using Condition = SimulatedPrinter::Condition;

namespace {

constexpr int kPollMs = 60; ///< a job changes the printer thousands of times a second
constexpr int kLogHeight = 190;
constexpr int kSmallLogHeight = 104; ///< on a small screen
constexpr int kLowestLog = 40;
constexpr int kLowestPaper = 88; ///< the printer and the desk above it
constexpr int kWidth = 760;      ///< where the screen has room
constexpr int kHeight = 720;
constexpr int kNarrowestPaper = 320; ///< the printer has no room for its texts in less, beside a scroll bar
constexpr int kGroupGap = 20;        ///< in the printer's bar
constexpr int kRowPadding = 6;
constexpr int kColumnDigits[] = {14, 6, 25, 5, 8}; ///< widths of the columns but the last, in digits
constexpr int kDotsPerMillimetre = 8;

enum Button {
    ModelK1,
    ModelK2,
    Ready,
    PaperOut,
    CoverOpen,
    Save,
    TearOff,
    Language,
    Diagnostics,
    ZoomOut,
    ZoomReset,
    ZoomIn,
    FitWidth,
    ClearLog
};

struct ButtonRow
{
    const char* name;
    const char* text;
    const char* toolTip;
    const char* keys; ///< separated by "; "
    bool checkable;
};

// In the order of Button.
const ButtonRow kButtons[] = {
    {"modelK1", "Quillbox_K1", QT_TRANSLATE_NOOP("PaperWindow", "换上一台 Quillbox_K1：每行 384 点，宽 48 毫米"), "",
     true},
    {"modelK2", "Quillbox_K2", QT_TRANSLATE_NOOP("PaperWindow", "换上一台 Quillbox_K2：每行 576 点，宽 72 毫米"), "",
     true},
    {"conditionReady", QT_TRANSLATE_NOOP("PaperWindow", "就绪"), QT_TRANSLATE_NOOP("PaperWindow", "打印机正常打印"),
     "", true},
    {"conditionPaperOut", QT_TRANSLATE_NOOP("PaperWindow", "缺纸"),
     QT_TRANSLATE_NOOP("PaperWindow", "打印机报告缺纸，收到的内容不会打印"), "", true},
    {"conditionCoverOpen", QT_TRANSLATE_NOOP("PaperWindow", "开盖"),
     QT_TRANSLATE_NOOP("PaperWindow", "打印机报告纸仓盖打开，收到的内容不会打印"), "", true},
    {"save", QT_TRANSLATE_NOOP("PaperWindow", "保存为 PNG..."),
     QT_TRANSLATE_NOOP("PaperWindow", "把显示的纸保存为 PNG 图片"), "Ctrl+S", false},
    {"tearOff", QT_TRANSLATE_NOOP("PaperWindow", "撕下"),
     QT_TRANSLATE_NOOP("PaperWindow", "撕下显示的纸，从新的一张开始"), "", false},
    {"language", QT_TRANSLATE_NOOP("PaperWindow", "语言..."),
     QT_TRANSLATE_NOOP("PaperWindow", "切换界面语言，选择型号"), "", false},
    {"diagnostics", QT_TRANSLATE_NOOP("PaperWindow", "诊断..."),
     QT_TRANSLATE_NOOP("PaperWindow", "向打印机发送各种指令，测试网络和升级"), "", false},
    {"zoomOut", "−", QT_TRANSLATE_NOOP("PaperWindow", "缩小"), "Ctrl+-", false},
    {"zoomReset", "", QT_TRANSLATE_NOOP("PaperWindow", "恢复到 100 %"), "Ctrl+0", false},
    {"zoomIn", "+", QT_TRANSLATE_NOOP("PaperWindow", "放大"), "Ctrl++; Ctrl+=", false},
    {"fitWidth", QT_TRANSLATE_NOOP("PaperWindow", "适合宽度"), QT_TRANSLATE_NOOP("PaperWindow", "让纸与窗口同宽"), "",
     true},
    {"clearLog", QT_TRANSLATE_NOOP("PaperWindow", "清空"), QT_TRANSLATE_NOOP("PaperWindow", "清空帧记录"), "", false},
};

enum Label { ModelLabel, ConditionLabel, LogTitle, FrameCount, CrcErrors, KeyExchanges, PaperLength };
// In the order of Label.
const char* const kLabelNames[] = {"modelLabel", "conditionLabel", "logTitle",   "frameCount",
                                   "crcErrors",  "keyExchanges",   "paperLength"};

QList<QKeySequence> keysOf(const ButtonRow& row)
{
    return QKeySequence::listFromString(QString::fromLatin1(row.keys));
}

QButtonGroup* groupOf(const QVector<QToolButton*>& buttons, QObject* parent)
{
    auto* group = new QButtonGroup(parent);
    for (QToolButton* button : buttons)
        group->addButton(button);
    return group;
}

void addAll(QBoxLayout* layout, const QVector<QWidget*>& widgets, int spacing)
{
    layout->setContentsMargins(0, 0, 0, 0); // bars have a padding by the style sheet
    layout->setSpacing(spacing);
    for (QWidget* widget : widgets) {
        if (widget)
            layout->addWidget(widget);
        else
            layout->addStretch();
    }
}

/// Widgets side by side; null is the room between the left ones and the right ones.
QFrame* bar(const char* name, const QVector<QWidget*>& widgets, int spacing = 6)
{
    auto* frame = new QFrame;
    frame->setObjectName(QLatin1String(name));
    addAll(new QHBoxLayout(frame), widgets, spacing);
    return frame;
}

/// The same on as many rows as the width asks for.
QFrame* wrappingBar(const char* name, const QVector<QWidget*>& widgets, int spacing = 6)
{
    auto* frame = new QFrame;
    frame->setObjectName(QLatin1String(name));
    auto* layout = new WrappingLayout(frame, spacing);
    for (QWidget* widget : widgets) {
        if (widget)
            layout->addWidget(widget);
        else
            layout->startRightGroup();
    }
    return frame;
}

QWidget* column(const QVector<QWidget*>& widgets)
{
    auto* pane = new QWidget;
    addAll(new QVBoxLayout(pane), widgets, 0);
    return pane;
}

/// No colons: not every file system takes them.
QString proposedFile()
{
    return QStringLiteral("quillbox-paper-%1.png")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

/// A file of that name is replaced only once the new one is whole.
/// @return  what went wrong, in the words of the system or of the picture writer; empty when it is written
QString writePaper(QImage paper, const QString& file)
{
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly))
        return target.errorString();
    paper.setDotsPerMeterX(kDotsPerMillimetre * 1000);
    paper.setDotsPerMeterY(kDotsPerMillimetre * 1000);
    QImageWriter writer(&target, "png");
    if (!writer.write(paper))
        return writer.errorString();
    return target.commit() ? QString() : target.errorString();
}

QColor lampColour(const PrinterReport& report)
{
    if (!report.pluggedIn)
        return {0x8a, 0x93, 0x9e};
    return report.condition == Condition::Ready ? QColor(0x4c, 0xc3, 0x6a) : QColor(0xf2, 0xa5, 0x3a);
}

} // namespace

PaperWindow::PaperWindow(SimulatedPrinter& printer, QWidget* parent)
    : QWidget(parent)
    , m_printer(printer)
    , m_paper(new PaperView(printer))
    , m_log(new QTableView)
    , m_frames(new FrameLogModel(this))
    , m_pluggedIn(new QCheckBox)
    , m_folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setPalette(lightPalette());
    setStyleSheet(paperStyle());
    makeControls();
    makeLayout();
    makeLog();
    connectPrinter();
    connectPaper();
    retranslate();
    m_paper->setFocus();
    connect(&m_poll, &QTimer::timeout, this, &PaperWindow::refresh);
    m_poll.start(kPollMs);
}

PaperWindow::~PaperWindow()
{
    m_log->verticalScrollBar()->disconnect(this); // it tells of its last range when this part is gone already
}

void PaperWindow::makeControls()
{
    for (const ButtonRow& row : kButtons) {
        auto* button = new QToolButton;
        button->setObjectName(QLatin1String(row.name));
        button->setCheckable(row.checkable);
        button->setFocusPolicy(Qt::TabFocus);
        for (const QKeySequence& key : keysOf(row))
            connect(new QShortcut(key, this), &QShortcut::activated, button, &QToolButton::click);
        m_buttons += button;
    }
    for (const char* name : kLabelNames) {
        m_labels += new QLabel;
        m_labels.last()->setObjectName(QLatin1String(name));
    }
    m_pluggedIn->setObjectName(QStringLiteral("pluggedIn"));
    m_models = groupOf(m_buttons.mid(ModelK1, 2), this);
    m_models->setId(m_buttons[ModelK1], static_cast<int>(Model::K1));
    m_models->setId(m_buttons[ModelK2], static_cast<int>(Model::K2));
    m_conditions = groupOf(m_buttons.mid(Ready, 3), this);
    m_conditions->setId(m_buttons[Ready], static_cast<int>(Condition::Ready));
    m_conditions->setId(m_buttons[PaperOut], static_cast<int>(Condition::PaperOut));
    m_conditions->setId(m_buttons[CoverOpen], static_cast<int>(Condition::CoverOpen));
}

void PaperWindow::makeLayout()
{
    QFrame* models = bar("models", {m_buttons[ModelK1], m_buttons[ModelK2]}, 0);
    QFrame* conditions = bar("conditions", {m_buttons[Ready], m_buttons[PaperOut], m_buttons[CoverOpen]}, 0);
    QFrame* printer = wrappingBar("printerBar",
                                  {bar("modelGroup", {m_labels[ModelLabel], models}), m_pluggedIn,
                                   bar("conditionGroup", {m_labels[ConditionLabel], conditions})},
                                  kGroupGap);
    QFrame* zoom =
        bar("zoomGroup", {m_buttons[ZoomOut], m_buttons[ZoomReset], m_buttons[ZoomIn], m_buttons[FitWidth]});
    QFrame* paper = wrappingBar("paperBar", {m_buttons[Save], m_buttons[TearOff], m_buttons[Language],
                                             m_buttons[Diagnostics], nullptr, zoom});
    QFrame* log = bar("logBar", {m_labels[LogTitle], nullptr, m_buttons[ClearLog]});
    QFrame* status = wrappingBar(
        "statusBar",
        {m_labels[FrameCount], m_labels[CrcErrors], m_labels[KeyExchanges], nullptr, m_labels[PaperLength]}, 18);

    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setHandleWidth(5);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(column({paper, m_paper}));
    splitter->addWidget(column({log, m_log}));
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    addAll(new QVBoxLayout(this), {printer, splitter, status}, 0);
    m_paper->setObjectName(QStringLiteral("paper"));
    m_paper->setMinimumSize(kNarrowestPaper, kLowestPaper);
    resize(kWidth, kHeight);
    splitter->setSizes({height() - kLogHeight, kLogHeight});
}

void PaperWindow::makeRoom(const QSize& size)
{
    resize(size);
    m_paper->setFitToWidth(size.width() < kWidth);
    if (size.height() < kHeight)
        findChild<QSplitter*>()->setSizes({size.height() - kSmallLogHeight, kSmallLogHeight});
}

void PaperWindow::makeLog()
{
    m_log->setObjectName(QStringLiteral("frameLog"));
    m_log->setModel(m_frames);
    m_log->setMinimumHeight(kLowestLog);
    m_log->setFrameShape(QFrame::NoFrame);
    m_log->setSelectionBehavior(QTableView::SelectRows);
    m_log->setVerticalScrollMode(QTableView::ScrollPerPixel);
    m_log->setHorizontalScrollMode(QTableView::ScrollPerPixel);
    m_log->setTabKeyNavigation(false); // Tab leads out of the table
    m_log->setShowGrid(false);
    m_log->setWordWrap(false);
    m_log->setCornerButtonEnabled(false);
    const QFontMetrics font = m_log->fontMetrics();
    QHeaderView* columns = m_log->horizontalHeader();
    columns->setStretchLastSection(true);
    columns->setHighlightSections(false);
    columns->setSectionsClickable(false);
    for (int column = FrameLogModel::Time; column < FrameLogModel::Crc; ++column)
        m_log->setColumnWidth(column, kColumnDigits[column] * font.horizontalAdvance(QLatin1Char('0')));
    QHeaderView* rows = m_log->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed); // so that thousands of rows need not be measured
    rows->setDefaultSectionSize(font.height() + kRowPadding);

    // The table stays with the newest frame until someone scrolls away, and again once they have scrolled back.
    QScrollBar* scroll = m_log->verticalScrollBar();
    connect(scroll, &QScrollBar::valueChanged, this,
            [this, scroll](int value) { m_followsFrames = value == scroll->maximum(); });
    connect(scroll, &QScrollBar::rangeChanged, this, [this, scroll](int, int maximum) {
        if (m_followsFrames)
            scroll->setValue(maximum);
    });
}

void PaperWindow::connectPrinter()
{
    // clicked, not toggled: the buttons also follow the printer.
    connect(m_models, &QButtonGroup::idClicked, this, [this](int id) { chooseModel(static_cast<Model>(id)); });
    connect(m_conditions, &QButtonGroup::idClicked, this,
            [this](int id) { m_printer.setCondition(static_cast<Condition>(id)); });
    connect(m_pluggedIn, &QCheckBox::clicked, this,
            [this](bool on) { on ? m_printer.plugIn() : m_printer.unplug(); });
}

void PaperWindow::connectPaper()
{
    const auto onClick = [this](Button button, auto action) {
        connect(m_buttons[button], &QToolButton::clicked, this, action);
    };
    onClick(Save, [this] { askWhereToSave(); });
    onClick(TearOff, [this] {
        m_paper->tearOff();
        refresh();
    });
    onClick(Language, [this] { emit languageAsked(); });
    onClick(Diagnostics, [this] { emit diagnosticsAsked(); });
    onClick(ZoomOut, [this] { m_paper->setZoom(m_paper->nextZoom(-1)); });
    onClick(ZoomReset, [this] { m_paper->setZoom(1); });
    onClick(ZoomIn, [this] { m_paper->setZoom(m_paper->nextZoom(1)); });
    onClick(FitWidth, [this](bool on) { m_paper->setFitToWidth(on); });
    onClick(ClearLog, [this] { m_frames->clear(); });
    connect(m_paper, &PaperView::zoomChanged, this, &PaperWindow::showZoom);
}

void PaperWindow::refresh()
{
    const PrinterReport report = m_printer.report();
    takeFrames();
    m_paper->refresh();
    showControls(report);
    showCounts(report);
}

void PaperWindow::takeFrames()
{
    m_log->setAutoScroll(false); // when the current row goes, the next one becomes current, which nobody asked to see
    const int lost = m_frames->append(m_printer.frames(m_frames->nextNumber()));
    m_log->setAutoScroll(true);
    if (!m_followsFrames) {
        QScrollBar* scroll = m_log->verticalScrollBar();
        scroll->setValue(scroll->value() - lost * m_log->verticalHeader()->defaultSectionSize());
    }
}

void PaperWindow::showControls(const PrinterReport& report)
{
    QAbstractButton* model = m_models->button(static_cast<int>(report.model));
    QAbstractButton* condition = m_conditions->button(static_cast<int>(report.condition));
    model->setChecked(true);
    condition->setChecked(true);
    m_pluggedIn->setChecked(report.pluggedIn);
    m_paper->setFace({model->text(), report.pluggedIn ? condition->text() : tr("USB 未插入"), lampColour(report)});
    const bool hasPaper = m_paper->lineCount() > 0;
    m_buttons[Save]->setEnabled(hasPaper);
    m_buttons[TearOff]->setEnabled(hasPaper);
}

void PaperWindow::showCounts(const PrinterReport& report)
{
    const int lines = m_paper->lineCount();
    const QString crcErrors = tr("CRC 错误 %1").arg(report.crcErrors);
    const QString alarm = QStringLiteral("<b style='color:#b42318'>%1</b>").arg(crcErrors);
    m_labels[FrameCount]->setText(tr("正确的帧 %1").arg(report.frames));
    m_labels[CrcErrors]->setText(report.crcErrors > 0 ? alarm : crcErrors);
    m_labels[KeyExchanges]->setText(tr("密钥交换 %1").arg(report.keyExchanges));
    const QString millimetres = QString::number(static_cast<qreal>(lines) / kDotsPerMillimetre, 'f', 1);
    m_labels[PaperLength]->setText(tr("纸长 %1 点行 = %2 毫米").arg(lines).arg(millimetres));
}

void PaperWindow::showZoom()
{
    const qreal zoom = m_paper->zoom();
    m_buttons[ZoomReset]->setText(QStringLiteral("%1 %").arg(qRound(zoom * 100)));
    m_buttons[ZoomIn]->setEnabled(zoom < PaperView::kLargestZoom);
    m_buttons[ZoomOut]->setEnabled(zoom > PaperView::kSmallestZoom);
    m_buttons[FitWidth]->setChecked(m_paper->fitsToWidth());
}

void PaperWindow::retranslate()
{
    setWindowTitle(tr("模拟打印机"));
    for (int i = 0; i < m_buttons.size(); ++i) {
        const ButtonRow& row = kButtons[i];
        const QString toolTip = tr(row.toolTip);
        const QString key = keysOf(row).value(0).toString(QKeySequence::NativeText);
        m_buttons[i]->setText(tr(row.text));
        m_buttons[i]->setToolTip(key.isEmpty() ? toolTip : QStringLiteral("%1 (%2)").arg(toolTip, key));
    }
    for (const Button button : {ZoomOut, ZoomReset, ZoomIn}) // whose texts say little to a screen reader
        m_buttons[button]->setAccessibleName(tr(kButtons[button].toolTip));
    showZoom();
    QToolButton* zoom = m_buttons[ZoomReset];
    zoom->setMinimumWidth(zoom->fontMetrics().horizontalAdvance(QStringLiteral("400 %")) + 32);
    m_pluggedIn->setText(tr("USB 已插入"));
    m_pluggedIn->setToolTip(tr("插上或拔下打印机的 USB 线"));
    m_labels[ModelLabel]->setText(tr("型号"));
    m_labels[ConditionLabel]->setText(tr("状态"));
    m_labels[LogTitle]->setText(tr("帧记录"));
    m_log->setAccessibleName(tr("帧记录"));
    m_paper->setAccessibleName(tr("打印纸"));
    m_paper->setHint(tr("纸还是空白的。\n在编辑窗口里写点什么，再按打印，就会从这里出来。"));
    m_frames->retranslate();
    refresh();
}

void PaperWindow::chooseModel(Model model)
{
    // Choosing the one that is there already must not plug it in.
    if (model != m_printer.report().model)
        m_printer.plugIn(model);
}

void PaperWindow::askWhereToSave()
{
    auto* dialog = new QFileDialog(this, tr("保存打印纸"), m_folder, tr("PNG 图片 (*.png)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(proposedFile());
    connect(dialog, &QFileDialog::fileSelected, this, &PaperWindow::save);
    dialog->open(); // the printer may go on while somebody thinks
}

void PaperWindow::save(const QString& file)
{
    m_folder = QFileInfo(file).absolutePath();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const QImage paper = m_paper->picture();
    const QString failure = paper.isNull() ? tr("已经没有纸了") : writePaper(paper, file);
    QGuiApplication::restoreOverrideCursor();
    if (failure.isEmpty())
        return;
    auto* box = new QMessageBox(QMessageBox::Warning, tr("保存打印纸"),
                                tr("无法保存 %1。").arg(QDir::toNativeSeparators(file)), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(failure);
    box->open();
}

void PaperWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
