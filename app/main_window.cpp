#include "app/main_window.h"
#include "ui_main_window.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/globals/model.h"
#include "app/globals/sheet_model.h"
#include "app/globals/trace.h"
#include "app/idle_moment.h"
#include "app/more_actions.h"
#include "app/newest_version_box.h"
#include "app/print_failure_box.h"
#include "app/print_progress.h"
#include "cloud/client_identity.h"
#include "cloud/get_sw_version_api.h"
#include "content/capture/capture_screen.h"
#include "content/page/edit_main_window.h"
#include "content/page/editor_actions.h"
#include "content/page/picture_file.h"
#include "content/page/print_preview_window.h"
#include "device/diagnostics/diagnostic_hub.h"
#include "device/packet_analysis.h"
#include "device/printer.h"
#include "device/printer_read_thread.h"
#include "device/printer_state.h"
#include "device/printer_thread.h"

#include <QCloseEvent>
#include <QDeadlineTimer>
#include <QEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QTextEdit>
#include <QTimer>
#include <QtDebug>

namespace {

constexpr int kWidth = 600; ///< pixels
constexpr int kHeight = 460;
constexpr int kConnectingMs = 8000; ///< what the device may take to tell its model
constexpr int kStopMs = 700;        ///< for threads that no write holds up
constexpr int kVanishMs = 200;      ///< until the desktop has painted what was behind the window

/// The button says what the action says, and can be clicked when the action can be invoked.
void follow(QPushButton* button, const QAction* action)
{
    const auto copy = [button, action] {
        button->setToolTip(action->toolTip());
        button->setAccessibleName(action->iconText());
        button->setEnabled(action->isEnabled());
    };
    QObject::connect(action, &QAction::changed, button, copy);
    copy();
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QWidget(parent, Qt::Window) // a window of its own, also when the welcome window made it
    , ui(std::make_unique<Ui::MainWindow>())
    , m_menuBar(std::make_unique<QMenuBar>())
{
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    setFixedSize(width(), height());
    ui->setupUi(this);
    // Else the layout gives the window its least width again while the screen is captured, and it is in the picture.
    layout()->setSizeConstraint(QLayout::SetNoConstraint);
    ProgressCatRunningDialog::standOver(this);
    buildMenu();
    onMenuUpdateClicked();
    createThreads();
    createPages();
    connectButtons();
}

MainWindow::~MainWindow() = default;

void MainWindow::buildMenu()
{
    QMenu* menu = m_menuBar->addMenu(QString());
    QAction* about = menu->addAction(QString());
    about->setShortcut(QKeySequence(QStringLiteral("Ctrl+M")));
    connect(about, &QAction::triggered, this, &MainWindow::onMenuAboutClicked);
    menu->addSeparator();
    QAction* update = menu->addAction(QString());
    update->setShortcut(QKeySequence(QStringLiteral("Ctrl+U")));
    connect(update, &QAction::triggered, this, &MainWindow::onMenuUpdateClicked);
    retranslateMenu();
}

void MainWindow::retranslateMenu()
{
    QAction* menu = m_menuBar->actions().constFirst();
    menu->setText(tr("关于"));
    menu->menu()->actions().constFirst()->setText(tr("关于羽毛盒"));
    menu->menu()->actions().constLast()->setText(tr("检查更新"));
}

void MainWindow::createThreads()
{
    printThread = new PrinterThread;
    connect(printThread, &PrinterThread::resultReady, this, &MainWindow::slotsHandlePrintResult);
    connect(printThread, &QThread::finished, this, &MainWindow::showPrintState);
    connect(printThread, &QThread::finished, this, &MainWindow::closeAfterJob);
    readThread = new PrinterReadThread;
    connect(readThread, &PrinterReadThread::sigAnalysisSuccess, this, &MainWindow::onAnalysisSuccess);
    // A reply that came ahead of this signal was of the printer before.
    connect(readThread, &PrinterReadThread::signalCheckSetCrcKeyFirstTime, this, &forgetReportedModel);
    connect(readThread, &PrinterReadThread::signalCheckSetCrcKeyFirstTime, this,
            &MainWindow::onCheckSetCrcKeyFirstTime);
    m_session = Printer::session();
    readThread->start();
}

bool MainWindow::stopThreads()
{
    if (!readThread)
        return true;
    readThread->requestInterruption();
    while (printThread->isMoving())
        printThread->wait(kStopMs);
    // One that is stuck keeps the receiver waiting as well, and the process ends without them.
    const QDeadlineTimer end(printThread->isRunning() ? 0 : kStopMs);
    bool ended = true;
    for (QThread* thread : {static_cast<QThread*>(readThread), static_cast<QThread*>(printThread)}) {
        if (thread->wait(end))
            delete thread;
        else
            ended = false; // its destructor would wait as long as the port does
    }
    readThread = nullptr;
    printThread = nullptr;
    return ended;
}

void MainWindow::createPages()
{
    editWindow = new EditMainWindow(this);
    previewWindow = new PrintPreviewWindow(this);
    setFixedWidth(kWidth);
    setFixedHeight(kHeight);
    editWindow->initFont();
    stackedWidget = new QStackedWidget;
    stackedWidget->addWidget(editWindow);
    stackedWidget->addWidget(previewWindow);
    stackedWidget->setCurrentIndex(0);
    ui->verticalLayout->addWidget(stackedWidget);
    m_printProgress = new PrintProgress(editWindow->editor()->parentWidget());
    connect(printThread, &PrinterThread::progressed, m_printProgress, &PrintProgress::setSent);
    connect(m_printProgress, &PrintProgress::cancelRequested, printThread, &PrinterThread::cancel);
    editWindow->editor()->setFocus(); // one starts the client to write
    trace(QStringLiteral("verticalLayout geometry"));
    trace(ui->verticalLayout->geometry().width());
    trace(ui->verticalLayout->geometry().height());
}

void MainWindow::keepDrafts(const QString& folder)
{
    editWindow->keepDrafts(folder);
}

void MainWindow::connectButtons()
{
    connect(ui->printButton, &QPushButton::clicked, editWindow->printAction(), &QAction::trigger);
    // Also when the page gives its action the texts of another language.
    connect(editWindow->printAction(), &QAction::changed, this, &MainWindow::showPrintState);
    connect(editWindow, &EditMainWindow::signDoPrint, this, &MainWindow::doPrint);
    connect(ui->pictureButton, &QPushButton::clicked, editWindow->pictureAction(), &QAction::trigger);
    connect(editWindow->pictureAction(), &QAction::triggered, this, &MainWindow::slotsPickImage);
    connect(this, &MainWindow::signalsPickImage, editWindow, &EditMainWindow::slotsInsertImage);
    connect(ui->screenshotButton, &QPushButton::clicked, editWindow->captureAction(), &QAction::trigger);
    connect(editWindow->captureAction(), &QAction::triggered, this, &MainWindow::slotsCaptureScreen);
    ui->fontButton->setVisible(true);
    connect(ui->fontButton, &QPushButton::clicked, this, &MainWindow::onBtnFontClicked);
    follow(ui->printButton, editWindow->printAction());
    follow(ui->pictureButton, editWindow->pictureAction());
    follow(ui->screenshotButton, editWindow->captureAction());
    follow(ui->fontButton, editWindow->fontAction());
    m_moreActions = new MoreActions(*editWindow->moreMenu(), *this);
    ui->previewButton->hide();
    ui->diagnosticsButton->hide();
    connect(ui->diagnosticsButton, &QPushButton::clicked, this, &MainWindow::slotsSetLanguage);
    ui->stateLabel->setText(QString());
    ui->stateLabel->hide();
}

void MainWindow::doPrint(QImage image, int printType)
{
    if (deviceBusy || !printThread)
        return;
    trace(QStringLiteral("doPrint"));
    if (printThread->isRunning()) {
        qDebug() << "isRunning wait";
        printThread->requestInterruption();
    }
    // start() has no effect on a thread that runs. The job stored here is then lost to the next request, which stores
    // its own before it starts (docs/architecture.md, "Kept behaviour").
    printThread->setImage(image, printType, m_session);
    printThread->start();
    showPrintState();
}

/// What doPrint() would drop or store cannot be asked for by the person. A thread that has announced its end does not
/// run any longer; its result comes earlier.
void MainWindow::showPrintState()
{
    QAction& action = *editWindow->printAction();
    const bool printing = printThread && printThread->isRunning();
    const QString reason = deviceBusy ? tr("正在连接打印机，请稍候再打印")
                           : printing ? tr("正在打印，请等待完成或取消")
                                      : QString();
    if (!reason.isEmpty() && ui->printButton->hasFocus())
        editWindow->setFocus(); // else it would go to the next button
    action.setEnabled(reason.isEmpty());
    action.setToolTip(reason.isEmpty() ? toolTipOf(action) : reason);
    m_printProgress->setRunning(printing);
}

void MainWindow::slotsHandlePrintResult(int resultCode, QString strResult)
{
    m_tellsResult = true;
    if (resultCode != 0)
        showPrintFailureBox(*this, strResult, printerState(printThread ? printThread->portFailure() : 0));
    m_tellsResult = false;
    qDebug() << strResult;
    closeAfterJob();
}

QString MainWindow::printerState() const
{
    return printerState(lastPortFailure());
}

QString MainWindow::printerState(int portFailure) const
{
    return printerStateText(portFailure, deviceBusy || !g_printerReady, m_toldModel);
}

void MainWindow::slotsPickImage()
{
    if (lastImageDir.isEmpty())
        lastImageDir = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString file = QFileDialog::getOpenFileName(this, tr("选择图片"), lastImageDir,
                                                      tr("Images (*.png *.bmp *.jpg *.tif *.GIF *.jpeg)"));
    if (file.isEmpty())
        return;
    const QImage image = readPicture(file);
    if (image.isNull())
        return;
    lastImageDir = file; // the file and not its folder: the next dialog opens on it
    emit signalsPickImage(image);
}

void MainWindow::slotsCaptureScreen()
{
    if (!savedGeometry.isNull())
        return;
    savedGeometry = geometry();
    // Next to nothing in a corner instead of hidden, for a hidden window might be the program's last.
    setGeometry(0, 0, 0, 1);
    setFixedWidth(0);
    setFixedHeight(1);
    QTimer::singleShot(kVanishMs, Qt::PreciseTimer, this, &MainWindow::slotsHandleTimeOut);
}

void MainWindow::slotsHandleTimeOut()
{
    captureScreen = new CaptureScreen;
    // The window first: a picture is made as wide as the page, and the page is as wide as its window.
    connect(captureScreen, &CaptureScreen::signalCompleteCature, this, &MainWindow::slotsHandleCaptureClose);
    connect(captureScreen, &CaptureScreen::signalCompleteCature, editWindow, &EditMainWindow::slotsInsertPixmap);
    connect(captureScreen, &CaptureScreen::signalClose, this, &MainWindow::slotsHandleCaptureClose);
    // It holds a picture of the whole screen.
    connect(captureScreen, &CaptureScreen::signalClose, captureScreen, &QObject::deleteLater);
    captureScreen->show();
}

void MainWindow::slotsHandleCaptureClose()
{
    if (savedGeometry.isNull())
        return;
    setFixedWidth(kWidth);
    setFixedHeight(kHeight);
    setGeometry(savedGeometry);
    savedGeometry = QRect();
}

void MainWindow::slotsSetLanguage()
{
    auto* hub = new TestMainWindow;
    if (readThread)
        connect(readThread, &PrinterReadThread::sigAnalysisSuccess, hub, &TestMainWindow::onAnalysisSuccess);
    hub->show();
}

void MainWindow::onAnalysisSuccess(unsigned char pkgTag, QString text)
{
    if (pkgTag != ReplyModel)
        return;
    m_toldModel = text;
    sheetModel().choose(text);
    if (takeReportedModel(text))
        onDeviceInitTimeout();
    trace(QStringLiteral("CRCKEY Set Success"));
}

void MainWindow::onBtnFontClicked()
{
    trace(QStringLiteral("onBtnFontClicked"));
    editWindow->chooseFont();
}

void MainWindow::onMenuUpdateClicked()
{
    auto* check = new GetSWVersionApi(this);
    m_versionCheck = check;
    connect(check, &GetSWVersionApi::signalReceived, this, [this, check] {
        if (m_versionCheck == check) {
            m_versionCheck = nullptr;
            m_tellsNewest = false;
        }
        check->deleteLater();
    });
    check->checkVersion([window = QPointer<MainWindow>(this)](const GetSWVersionModel& newest) {
        if (window && newest.mustUpdate)
            atIdleMoment(window, [window] { window->closeForUpdate(); });
        else if (window && window->m_tellsNewest && newest.versionCode.toInt() <= kClientVersionCode)
            showNewestVersionBox(*window);
    });
}

void MainWindow::closeForUpdate()
{
    if (editWindow->writeDraft())
        close();
}

void MainWindow::slotsAskForUpdate()
{
    m_tellsNewest = true;
    if (!m_versionCheck)
        onMenuUpdateClicked();
}

void MainWindow::onMenuAboutClicked()
{
    auto* dialog = new AboutQuillboxDialog;
    dialog->show();
}

void MainWindow::onDeviceInitTimeout()
{
    if (!connectingDialog || !connectingDialog->isVisible())
        return;
    deviceBusy = false;
    connectingDialog->close();
    showPrintState();
}

void MainWindow::onCheckSetCrcKeyFirstTime(bool isSuccess)
{
    m_session = Printer::session();
    if (isSuccess)
        m_toldModel.clear(); // of the printer before
    if (!isSuccess || deviceBusy)
        return;
    deviceBusy = true;
    showPrintState();
    connectingDialog = new ProgressCatRunningDialog;
    connectingDialog->setText(tr("设备连接中,请稍后..."));
    if (!connectingDialog->isVisible())
        connectingDialog->show();
    // Goes on when the dialog closes early, and is then no business of the next one.
    const QPointer<QWidget> ownDialog = connectingDialog;
    QTimer::singleShot(kConnectingMs, Qt::CoarseTimer, this, [this, ownDialog] {
        if (ownDialog == connectingDialog)
            onDeviceInitTimeout();
    });
}

void MainWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        retranslateMenu();
        m_moreActions->retranslate();
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    editWindow->writeDraft();
    m_closesAfterJob = printThread && printThread->isMoving();
    if (!m_closesAfterJob)
        return QWidget::closeEvent(event);
    event->ignore();
    QTimer::singleShot(PrinterThread::kStillMs, this, &MainWindow::closeAfterJob); // where it has just got stuck
}

void MainWindow::closeAfterJob()
{
    if (m_closesAfterJob && !m_tellsResult && !(printThread && printThread->isMoving()))
        close();
}
