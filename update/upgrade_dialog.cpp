#include "update/upgrade_dialog.h"

#include "app/dialogs/qx_message_dialog.h"
#include "ui_upgrade_dialog.h"
#include "update/download_manager.h"

#include <QDebug>
#include <QDesktopServices>
#include <QEvent>
#include <QLocale>
#include <QUrl>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int kRateIntervalMs = 500;
constexpr int kHttpOk = 200;

/// In whole percent; 0 where the total is not known.
qint64 percentOf(qint64 received, qint64 total)
{
    return total > 0 ? std::min(received, total) * 100 / total : 0;
}

/// "512 B", "1.50 MB" with 1024 of each in the next. Qt's word for a byte is one of the desktop's language, not ours.
QString dataSize(qint64 bytes)
{
    return bytes < 1024 ? QStringLiteral("%1 B").arg(bytes)
                        : QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

} // namespace

UpgradeDialog::UpgradeDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(new Ui::UpgradeDialog)
{
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connect(m_ui->buttonRestart, &QPushButton::clicked, this, &UpgradeDialog::onRestart);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &UpgradeDialog::reject);
    connect(&m_rateTimer, &QTimer::timeout, this, &UpgradeDialog::showRate);
    m_rateTimer.setInterval(kRateIntervalMs);
    m_clock.start();
    showBytes();
    showRate();
}

UpgradeDialog::~UpgradeDialog()
{
    giveUp();
}

void UpgradeDialog::startDownload(const QString& url, const QString& fileName)
{
    giveUp();
    m_url = url;
    m_fileName = fileName;
    if (!checkArguments())
        return;
    m_manager = std::make_unique<DownloadManager>();
    m_manager->setSilenceLimitMs(m_silenceLimitMs);
    // signalDownloadError() has no slot: after a failure the dialog stays as it is.
    connect(m_manager.get(), &DownloadManager::signalRunning, m_ui->buttonRestart, &QWidget::setDisabled);
    connect(m_manager.get(), &DownloadManager::signalDownloadProcess, this, &UpgradeDialog::onDownloadProcess);
    connect(m_manager.get(), &DownloadManager::signalReplyFinished, this, &UpgradeDialog::onReplyFinished);
    m_started = true;
    m_rate.add(m_clock.elapsed(), 0);
    m_manager->downloadFile(m_url, m_fileName);
}

void UpgradeDialog::setSilenceLimitMs(int ms)
{
    m_silenceLimitMs = ms;
}

void UpgradeDialog::onRestart()
{
    if (!checkArguments()) // with which there is a manager
        return;
    m_started = true;
    m_manager->downloadFile(m_url, m_fileName);
}

bool UpgradeDialog::checkArguments()
{
    if (!m_url.isEmpty() && !m_fileName.isEmpty())
        return true;
    auto* message = new QXMessageDialog;
    message->setWindowFlag(Qt::WindowStaysOnTopHint);
    message->setWindowTitle(windowTitle());
    message->setText(tr("参数错误"));
    message->show();
    const auto bringToFront = [message] {
        message->raise();
        message->activateWindow();
    };
    // Later, since whoever calls shows this dialog next.
    QMetaObject::invokeMethod(message, bringToFront, Qt::QueuedConnection);
    return false;
}

void UpgradeDialog::onDownloadProcess(qint64 received, qint64 total)
{
    qDebug().noquote() << QStringLiteral("%1").arg(percentOf(received, total));
    m_received = received;
    m_total = total;
    m_rate.add(m_clock.elapsed(), received);
    showBar();
    showBytes();
    if (!m_rateTimer.isActive())
        m_rateTimer.start();
}

void UpgradeDialog::showBar()
{
    if (m_total < 0) {
        m_ui->progressBar->setRange(0, 0);
        return;
    }
    int shift = 0; // the bar counts in int, which is too small for 2 GiB
    while ((m_total >> shift) > std::numeric_limits<int>::max())
        ++shift;
    m_ui->progressBar->setMaximum(static_cast<int>(m_total >> shift));
    m_ui->progressBar->setValue(static_cast<int>(std::min(m_received, m_total) >> shift));
}

void UpgradeDialog::showBytes()
{
    if (m_total < 0)
        m_ui->labelBytes->setText(dataSize(m_received));
    else
        m_ui->labelBytes->setText(
            QStringLiteral("%1%   %2 / %3")
                .arg(QString::number(percentOf(m_received, m_total)), dataSize(m_received), dataSize(m_total)));
}

void UpgradeDialog::showRate()
{
    const qint64 rate = m_rate.bytesPerSecond(m_clock.elapsed());
    m_ui->labelRate->setText(tr("%1/秒").arg(dataSize(rate)));
    if (rate == 0)
        m_rateTimer.stop(); // until something comes
}

void UpgradeDialog::onReplyFinished(int statusCode)
{
    qDebug() << statusCode;
    m_started = false;
    if (statusCode != kHttpOk) {
        qDebug() << "Download Failed";
        return;
    }
    qDebug() << "Download Success";
    askToOpen();
    close(); // now that another window is open, or the program would end with its last one
}

void UpgradeDialog::askToOpen()
{
    auto* question = new QXMessageDialog;
    question->setWindowFlag(Qt::WindowStaysOnTopHint);
    question->setWindowTitle(windowTitle());
    question->setText(tr("下载完成，是否打开文件?"));
    question->setAttribute(Qt::WA_ShowWithoutActivating); // the person may be writing again
    question->setDefaultButton(QDialogButtonBox::Cancel);
    connect(question, &QDialog::accepted, question,
            [file = m_fileName] { QDesktopServices::openUrl(QUrl::fromLocalFile(file)); });
    question->show();
}

void UpgradeDialog::done(int result)
{
    giveUp();
    QDialog::done(result);
}

void UpgradeDialog::giveUp()
{
    if (std::exchange(m_started, false))
        m_manager->reset();
}

void UpgradeDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        showBytes();
        showRate();
    }
}
