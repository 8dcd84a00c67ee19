#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QUrl>

class QNetworkAccessManager;

/// Fetches one file at a time over HTTP. The bytes go to "<target>_tmp" as they come. When the transfer ends without
/// an error, that file takes the target's name and replaces a file that had it.
///
/// The class can resume by a range request, which is switched off: every start is a fresh download without a Range
/// header (docs/architecture.md, "Kept behaviour"). GUI thread; nothing blocks but the disk.
class DownloadManager : public QObject
{
    Q_OBJECT

public:
    explicit DownloadManager(QObject* parent = nullptr);
    ~DownloadManager() override; ///< ends a running transfer as stopWork() does

    /// Starts a transfer; does nothing while one runs.
    /// @param url       followed through redirects, but never from https to http
    /// @param fileName  target, whose folder has to be there: else what comes is dropped, and no file appears
    void downloadFile(const QString& url, const QString& fileName);
    /// Ends a running transfer without a signal and leaves the temporary file.
    void stopWork();
    /// stopWork(), and removes the temporary file.
    void reset();
    void removeFile(const QString& fileName); ///< if it is there
    void setSupportRange(bool supportRange);  ///< for the next start
    QString getDownloadUrl() const;           ///< of the transfer that was started last
    /// How long nothing may come before a transfer fails; 30 s unless set. For the next start.
    void setSilenceLimitMs(int ms);

signals:
    /// Bytes so far and in all; the latter is -1 where the server does not tell it.
    void signalDownloadProcess(qint64 received, qint64 total);
    /// The transfer ended without a network error.
    /// @param statusCode  of HTTP, 0 without one; the file is in place whatever it is
    void signalReplyFinished(int statusCode);
    /// The network or the disk failed, nothing came for too long, fewer bytes came than were told, or the status was
    /// 400 or above. Nothing is left of the transfer; the target is as it was.
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
    bool isCutOff() const;
    void setRunning(bool running);
    void putInPlace();
    void fail(const QString& reason);

    QNetworkAccessManager* m_manager; ///< child of this
    QUrl m_url;
    QString m_fileName; ///< of the temporary file
    bool m_supportRange = false;
    qint64 m_bytesRead = 0;            ///< from the running reply, written or dropped
    qint64 m_bytesReceived = 0;        ///< of the running reply
    qint64 m_bytesTotal = 0;           ///< of the running reply
    qint64 m_bytesCurrentReceived = 0; ///< where to resume: bytes that an earlier reply left on disk
    bool m_isStop = true;              ///< no transfer runs
    QNetworkReply* m_reply = nullptr;  ///< stays after its end, until the next start or stopWork()
    int m_silenceLimitMs = 30000;
};
