#pragma once

#include "update/transfer_rate.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>

class DownloadManager;
namespace Ui {
class UpgradeDialog;
}

/// Downloads an installer, shows how far it is, and asks at the end whether to open it.
///
/// It closes itself only when the installer has come with status 200. After a failure it stays open with the progress
/// where it stopped, and the person may start anew (docs/architecture.md, "Kept behaviour") by a button that is
/// disabled while a transfer runs. Closing it gives up a
/// transfer that runs, of which no file is left. GUI thread.
class UpgradeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit UpgradeDialog(QWidget* parent = nullptr);
    ~UpgradeDialog() override;

    /// Starts the download. When one of the two is empty, a message window says so and nothing starts.
    /// @param url       of the installer
    /// @param fileName  where it goes; a file of that name is replaced at the end
    void startDownload(const QString& url, const QString& fileName);
    /// How long nothing may come before the download fails; 30 s unless set. For the next startDownload().
    void setSilenceLimitMs(int ms);

    void done(int result) override; ///< every way of closing comes through here

public slots:
    /// @param received, total  bytes; a total of -1 is not known
    void onDownloadProcess(qint64 received, qint64 total);
    /// @param statusCode  of HTTP, 0 without one
    void onReplyFinished(int statusCode);
    void onRestart(); ///< downloads the same once more; does nothing while a transfer runs

protected:
    void changeEvent(QEvent* event) override;

private:
    bool checkArguments();
    void giveUp();
    void showBar();
    void showBytes();
    void showRate();
    void askToOpen();

    std::unique_ptr<Ui::UpgradeDialog> m_ui;
    QString m_url;
    QString m_fileName;
    bool m_started = false; ///< and not finished; stays true after a failure
    qint64 m_received = 0;  ///< bytes
    qint64 m_total = -1;    ///< bytes; -1: not known
    TransferRate m_rate;
    QElapsedTimer m_clock;
    QTimer m_rateTimer;
    int m_silenceLimitMs = 30000;
    std::unique_ptr<DownloadManager> m_manager;
};
