#pragma once

#include "update/partial_file.h"

#include <QNetworkReply>
#include <QObject>
#include <QTimer>
#include <QUrl>

class QNetworkAccessManager;

/// Fetches one file at a time over HTTP. The bytes go to "<target>_tmp" as they come, beside which
/// "<target>_tmp.lock" keeps other transfers away. When the transfer ends without an error and all that has come is
/// on the disk, that file takes the target's name and replaces a file that had it.
///
/// Whatever the server does, no more than a few MiB of it are held in memory (docs/security.md, "Updates").
/// The class can resume by a range request, which is switched off: every start is a fresh download without a Range
/// header (docs/architecture.md, "Kept behaviour"). GUI thread; nothing blocks but the disk.
class DownloadManager : public QObject
{
    Q_OBJECT

public:
    explicit DownloadManager(QObject* parent = nullptr);
    ~DownloadManager() override; ///< ends a running transfer as stopWork() does

    /// Starts a transfer; does nothing while one runs.
    /// Touches nothing and ends in signalDownloadError(), in the next turn of the event loop, where the address is
    /// not of http or https, the target has a zero in it, or another transfer has the same one.
    /// @param url       followed through redirects, but never from https to http
    /// @param fileName  target, whose folder has to be there: else what comes is dropped, and the end is an error
    void downloadFile(const QString& url, const QString& fileName);
    /// Ends a running transfer without a signal and leaves the temporary file, locked until the next start or
    /// reset().
    void stopWork();
    /// stopWork(), and removes the temporary file.
    void reset();
    void removeFile(const QString& fileName); ///< if it is there
    void setSupportRange(bool supportRange);  ///< for the next start
    QString getDownloadUrl() const;           ///< of the transfer that was started last
    /// How long nothing may come before a transfer fails; 30 s unless set. For the next start.
    void setSilenceLimitMs(int ms);
    /// Bytes beyond which a transfer fails; 2 GiB unless set.
    void setSizeLimit(qint64 bytes);

signals:
    /// Bytes so far and in all; the latter is -1 where the server does not tell it.
    void signalDownloadProcess(qint64 received, qint64 total);
    /// The transfer ended without a network error.
    /// @param statusCode  of HTTP, 0 without one; the file is in place whatever it is
    void signalReplyFinished(int statusCode);
    /// The network or the disk failed, nothing came for too long, other bytes came than were told or asked for, or
    /// more than the limit, or the status was 400 or above. Nothing is left of the transfer; the target is as it was.
    void signalDownloadError();
    /// A transfer has started, or has ended in whatever way, stopWork() among them. Comes before the other signals.
    void signalRunning(bool running);

public slots:
    void onDownloadProgress(qint64 received, qint64 total);
    void onReadyRead();
    void onFinished();
    void onError(QNetworkReply::NetworkError code);

private:
    QNetworkRequest request() const;
    QString refusal(const QString& fileName);
    QString faultInReply() const;
    bool isWhole() const;
    void setRunning(bool running);
    void putInPlace();
    void fail(const QString& reason);

    QNetworkAccessManager* m_manager; ///< child of this; a new one after each transfer that was given up
    QUrl m_url;
    PartialFile m_file;
    QTimer m_refusalTimer; ///< runs between a refused start and its signal
    QString m_refusal;     ///< why nothing was started
    bool m_supportRange = false;
    qint64 m_bytesRead = 0;            ///< from the running reply, written or dropped
    qint64 m_bytesCurrentReceived = 0; ///< where to resume; a pause would add m_bytesRead
    bool m_isStop = true;              ///< no transfer runs
    QNetworkReply* m_reply = nullptr;  ///< stays after its end, until the next start or stopWork()
    int m_silenceLimitMs = 30000;
    qint64 m_sizeLimit = qint64{2} * 1024 * 1024 * 1024;
};
