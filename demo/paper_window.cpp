#include "demo/paper_window.h"

#include "app/widgets/light_palette.h"
#include "demo/frame_log_model.h"
#include "demo/paper_file.h"
#include "demo/paper_news.h"
#include "demo/paper_style.h"

#include <QButtonGroup>
#include <QEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QShortcut>
#include <QStandardPaths>

#include "ui_paper_window.h"

using Model = SimulatedPrinter::Model;
using Condition = SimulatedPrinter::Condition;

namespace {

constexpr int kLogHeight = 190;
constexpr qreal kDotsPerMillimetre = 8;

QList<QKeySequence> zoomInKeys()
{
    return {QKeySequence(Qt::CTRL + Qt::Key_Plus), QKeySequence(Qt::CTRL + Qt::Key_Equal)};
}

QString withKey(const QString& text, const QKeySequence& key)
{
    return QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText));
}

} // namespace

PaperWindow::PaperWindow(SimulatedPrinter& printer, QWidget* parent)
    : QWidget(parent)
    , m_printer(printer)
    , m_ui(new Ui::PaperWindow)
    , m_log(new FrameLogModel(this))
    , m_folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setPalette(lightPalette());
    setStyleSheet(paperStyle());
    m_ui->setupUi(this);
    m_ui->models->setId(m_ui->modelK1, int(Model::K1));
    m_ui->models->setId(m_ui->modelK2, int(Model::K2));
    m_ui->conditions->setId(m_ui->conditionReady, int(Condition::Ready));
    m_ui->conditions->setId(m_ui->conditionPaperOut, int(Condition::PaperOut));
    m_ui->conditions->setId(m_ui->conditionCoverOpen, int(Condition::CoverOpen));
    m_ui->splitter->setStretchFactor(0, 1);
    m_ui->splitter->setStretchFactor(1, 0);
    m_ui->splitter->setSizes({height() - kLogHeight, kLogHeight});
    m_ui->frameLog->setModel(m_log);
    connect(new PaperNews(printer, this), &PaperNews::arrived, this, &PaperWindow::refresh);
    connectControls();
    m_ui->paper->setSource([this](qint64 first, int lines) { return m_printer.lookAtPaper(first, lines); });
    retranslate();
    refresh();
    m_ui->paper->setFocus();
}

PaperWindow::~PaperWindow() = default;

void PaperWindow::connectControls()
{
    PaperView* paper = m_ui->paper;
    // clicked, not toggled: the buttons also follow the printer.
    connect(m_ui->models, QOverload<int>::of(&QButtonGroup::idClicked), this,
            [this](int id) { chooseModel(static_cast<Model>(id)); });
    connect(m_ui->pluggedIn, &QCheckBox::clicked, this,
            [this](bool on) { on ? m_printer.plugIn() : m_printer.unplug(); });
    connect(m_ui->conditions, QOverload<int>::of(&QButtonGroup::idClicked), this,
            [this](int id) { m_printer.setCondition(static_cast<Condition>(id)); });
    connect(m_ui->save, &QToolButton::clicked, this, &PaperWindow::askWhereToSave);
    connect(m_ui->tearOff, &QToolButton::clicked, this, &PaperWindow::tearOff);
    connect(m_ui->language, &QToolButton::clicked, this, &PaperWindow::languageAsked);
    connect(m_ui->diagnostics, &QToolButton::clicked, this, &PaperWindow::diagnosticsAsked);
    connect(m_ui->zoomIn, &QToolButton::clicked, paper, [paper] { paper->setZoom(paper->zoomAbove()); });
    connect(m_ui->zoomOut, &QToolButton::clicked, paper, [paper] { paper->setZoom(paper->zoomBelow()); });
    connect(m_ui->zoomReset, &QToolButton::clicked, paper, [paper] { paper->setZoom(1); });
    connect(m_ui->fitWidth, &QToolButton::clicked, paper, &PaperView::setFitToWidth);
    connect(paper, &PaperView::zoomChanged, this, &PaperWindow::showZoom);
    connect(m_ui->clearLog, &QToolButton::clicked, m_log, &FrameLogModel::clear);
    addKey(zoomInKeys(), m_ui->zoomIn);
    addKey({QKeySequence(Qt::CTRL + Qt::Key_Minus)}, m_ui->zoomOut);
    addKey({QKeySequence(Qt::CTRL + Qt::Key_0)}, m_ui->zoomReset);
    addKey({QKeySequence::Save}, m_ui->save);
}

void PaperWindow::addKey(const QList<QKeySequence>& keys, QAbstractButton* button)
{
    for (const QKeySequence& key : keys)
        connect(new QShortcut(key, this), &QShortcut::activated, button, [button] { button->click(); });
}

void PaperWindow::refresh()
{
    m_log->append(m_printer.frames(m_log->nextNumber()));
    m_ui->paper->refresh();
    showControls();
    showCounts();
}

void PaperWindow::showControls()
{
    const PrinterReport report = m_printer.report();
    QAbstractButton* modelButton = m_ui->models->button(static_cast<int>(report.model));
    QAbstractButton* conditionButton = m_ui->conditions->button(static_cast<int>(report.condition));
    modelButton->setChecked(true);
    conditionButton->setChecked(true);
    m_ui->pluggedIn->setChecked(report.pluggedIn);

    PrinterFace face;
    face.name = modelButton->text();
    face.state = report.pluggedIn ? conditionButton->text() : tr("USB 未插入");
    face.light = lampColour(report.pluggedIn, report.condition == Condition::Ready);
    m_ui->paper->setFace(face);

    const bool hasPaper = m_ui->paper->lineCount() > 0;
    m_ui->save->setEnabled(hasPaper);
    m_ui->tearOff->setEnabled(hasPaper);
}

void PaperWindow::showCounts()
{
    const PrinterReport report = m_printer.report();
    const int lines = m_ui->paper->lineCount();
    m_ui->frameCount->setText(tr("正确的帧 %1").arg(report.frames));
    m_ui->crcErrors->setText(tr("CRC 错误 %1").arg(report.crcErrors));
    setAlarm(m_ui->crcErrors, report.crcErrors > 0);
    m_ui->keyExchanges->setText(tr("密钥交换 %1").arg(report.keyExchanges));
    m_ui->paperLength->setText(
        tr("纸长 %1 点行 = %2 毫米").arg(lines).arg(QString::number(lines / kDotsPerMillimetre, 'f', 1)));
}

void PaperWindow::showZoom()
{
    const PaperView* paper = m_ui->paper;
    m_ui->zoomReset->setText(QStringLiteral("%1 %").arg(qRound(paper->zoom() * 100)));
    m_ui->zoomIn->setEnabled(paper->zoom() < PaperView::kLargestZoom);
    m_ui->zoomOut->setEnabled(paper->zoom() > PaperView::kSmallestZoom);
    m_ui->fitWidth->setChecked(paper->fitsToWidth());
}

void PaperWindow::retranslate()
{
    m_ui->retranslateUi(this);
    m_ui->zoomReset->setMinimumWidth(m_ui->zoomReset->fontMetrics().horizontalAdvance(QStringLiteral("400 %")) + 32);
    m_ui->zoomIn->setToolTip(withKey(m_ui->zoomIn->toolTip(), zoomInKeys().first()));
    m_ui->zoomOut->setToolTip(withKey(m_ui->zoomOut->toolTip(), QKeySequence(Qt::CTRL + Qt::Key_Minus)));
    m_ui->zoomReset->setToolTip(withKey(m_ui->zoomReset->toolTip(), QKeySequence(Qt::CTRL + Qt::Key_0)));
    m_ui->save->setToolTip(withKey(m_ui->save->toolTip(), QKeySequence::Save));
    m_ui->paper->setHint(tr("纸还是空白的。\n在编辑窗口里写点什么，再按打印，就会从这里出来。"));
    m_log->retranslate();
    m_ui->frameLog->fitColumns();
    showControls();
    showCounts();
}

void PaperWindow::chooseModel(Model model)
{
    // Choosing the one that is there already must not plug it in.
    if (model != m_printer.report().model)
        m_printer.plugIn(model);
}

void PaperWindow::tearOff()
{
    m_ui->paper->tearOff();
    showControls();
    showCounts();
}

void PaperWindow::askWhereToSave()
{
    auto* dialog = new QFileDialog(this, tr("保存打印纸"), m_folder, tr("PNG 图片 (*.png)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(paperFileName());
    connect(dialog, &QFileDialog::fileSelected, this, &PaperWindow::save);
    dialog->open(); // the printer may go on while somebody thinks
}

void PaperWindow::save(const QString& file)
{
    m_folder = QFileInfo(file).absolutePath();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const QImage paper = m_ui->paper->picture();
    const QString failure = paper.isNull() ? tr("已经没有纸了") : writePaper(paper, file);
    QGuiApplication::restoreOverrideCursor();
    if (!failure.isEmpty())
        reportFailure(file, failure);
}

void PaperWindow::reportFailure(const QString& file, const QString& reason)
{
    auto* box = new QMessageBox(QMessageBox::Warning, tr("保存打印纸"),
                                tr("无法保存 %1。").arg(QDir::toNativeSeparators(file)), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(reason);
    box->open();
}

void PaperWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
