#include "update/download_manager.h"

#include "app/globals/log_text.h"

#include <QDebug>
#include <QFile>
#include <QNetworkAccessManager>

namespace {

const QString kTemporarySuffix = QStringLiteral("_tmp");

/// @param reason  may quote the server
void logFailure(const QString& reason)
{
    qDebug().noquote() << "__________" << QLatin1Char('"') + logText(reason) + QLatin1Char('"');
}

/// Whether all of it is on the disk. The file is closed between chunks, so that nobody who looks at it is locked out.
bool append(QFile& file, const QByteArray& chunk)
{
    const bool written = file.write(chunk) == chunk.size() && file.flush(); // a full disk shows in either
    file.close();
    return written;
}

} // namespace

DownloadManager::DownloadManager(QObject* parent)
    : QObject(parent)
    , m_manager(new QNetworkAccessManager(this))
{
}

DownloadManager::~DownloadManager()
{
    stopWork();
}

void DownloadManager::downloadFile(const QString& url, const QString& fileName)
{
    if (!m_isStop)
        return;
    stopWork(); // a reply that ended is still here
    setRunning(true);
    m_url = QUrl(url);
    m_fileName = fileName + kTemporarySuffix;
    m_bytesRead = 0;
    if (m_bytesCurrentReceived <= 0)
        removeFile(m_fileName);

    m_reply = m_manager->get(request());
    // By name: a compiled-in use of error() is a deprecation warning, and errorOccurred() is new in 5.15.
    connect(m_reply, SIGNAL(downloadProgress(qint64, qint64)), this, SLOT(onDownloadProgress(qint64, qint64)));
    connect(m_reply, SIGNAL(readyRead()), this, SLOT(onReadyRead()));
    connect(m_reply, SIGNAL(finished()), this, SLOT(onFinished()));
    connect(m_reply, SIGNAL(error(QNetworkReply::NetworkError)), this, SLOT(onError(QNetworkReply::NetworkError)));
}

QNetworkRequest DownloadManager::request() const
{
    QNetworkRequest request(m_url);
    // Installers lie on mirrors and behind links to the newest one, and Qt 5 follows no redirect unasked.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // Else a connection that went away without a word keeps the transfer waiting for hours.
    request.setTransferTimeout(m_silenceLimitMs);
    if (m_supportRange)
        request.setRawHeader("Range", QStringLiteral("bytes=%1-").arg(m_bytesCurrentReceived).toLatin1());
    return request;
}

void DownloadManager::setRunning(bool running)
{
    if (m_isStop != running)
        return;
    m_isStop = !running;
    emit signalRunning(running);
}

void DownloadManager::stopWork()
{
    setRunning(false);
    if (!m_reply)
        return;
    // abort() reports an error, and where there is one already it warns of the second.
    m_reply->disconnect(this);
    if (m_reply->error() == QNetworkReply::NoError)
        m_reply->abort();
    m_reply->deleteLater();
    m_reply = nullptr;
}

void DownloadManager::reset()
{
    stopWork();
    m_bytesReceived = 0;
    m_bytesTotal = 0;
    m_bytesCurrentReceived = 0;
    removeFile(m_fileName);
}

void DownloadManager::removeFile(const QString& fileName)
{
    if (QFile::exists(fileName))
        QFile::remove(fileName);
}

void DownloadManager::setSupportRange(bool supportRange)
{
    m_supportRange = supportRange;
}

QString DownloadManager::getDownloadUrl() const
{
    return m_url.toString();
}

void DownloadManager::setSilenceLimitMs(int ms)
{
    m_silenceLimitMs = ms;
}

void DownloadManager::onReadyRead()
{
    if (m_isStop)
        return;
    const QByteArray chunk = m_reply->readAll(); // also when it has to be dropped, or it would pile up in memory
    m_bytesRead += chunk.size();
    QFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    if (!append(file, chunk))
        fail(file.errorString()); // a file with a gap must not take the place of a whole one
}

void DownloadManager::onDownloadProgress(qint64 received, qint64 total)
{
    if (m_isStop)
        return;
    m_bytesReceived = received;
    m_bytesTotal = total;
    emit signalDownloadProcess(received + m_bytesCurrentReceived, total + m_bytesCurrentReceived);
}

void DownloadManager::onFinished()
{
    setRunning(false);
    int status = 0;
    if (m_reply) {
        status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (m_reply->error() != QNetworkReply::NoError) {
            logFailure(m_reply->errorString());
        } else if (isCutOff()) {
            fail(QStringLiteral("the connection ended early"));
            return;
        } else if (QFile::exists(m_fileName)) {
            putInPlace();
        }
    }
    emit signalReplyFinished(status);
}

/// A connection that ends within a body of known length is now and then the body's end to Qt 5.15, and half an
/// installer would stand in for a whole one. In a body of pieces it cannot be seen.
bool DownloadManager::isCutOff() const
{
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader); // none after decompression
    return length.isValid() && m_bytesRead < length.toLongLong();
}

void DownloadManager::putInPlace()
{
    const QString target = m_fileName.left(m_fileName.lastIndexOf(kTemporarySuffix));
    removeFile(target);
    qDebug() << target;
    QFile::rename(m_fileName, target); // where the target cannot go, the new file stays beside it
}

void DownloadManager::onError(QNetworkReply::NetworkError code)
{
    Q_UNUSED(code) // its text says more
    fail(m_reply ? m_reply->errorString() : QString());
}

void DownloadManager::fail(const QString& reason)
{
    logFailure(reason);
    reset();
    emit signalDownloadError();
}
