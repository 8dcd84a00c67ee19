#include "update/download_manager.h"

#include "app/globals/log_text.h"
#include "update/network_release.h"

#include <QDebug>
#include <QFile>
#include <QNetworkAccessManager>

#include <algorithm>
#include <utility>

namespace {

const QString kTemporarySuffix = QStringLiteral("_tmp");

/// @param reason  may quote the server
void logFailure(const QString& reason)
{
    qDebug().noquote() << "__________" << QLatin1Char('"') + logText(reason) + QLatin1Char('"');
}

constexpr qint64 kReadBufferBytes =
    qint64{1024} * 1024; ///< else a fast server fills the memory while the disk is slow

/// Other schemes are Qt's to open as well: "file:" reads what lies on this machine, and waits for ever at a pipe.
bool isFetched(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

} // namespace

DownloadManager::DownloadManager(QObject* parent)
    : QObject(parent)
    , m_manager(new QNetworkAccessManager(this))
{
    m_refusalTimer.setSingleShot(true);
    connect(&m_refusalTimer, &QTimer::timeout, this, [this] {
        logFailure(m_refusal);
        setRunning(false);
        emit signalDownloadError();
    });
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
    m_bytesRead = 0;
    m_refusal = refusal(fileName);
    if (!m_refusal.isEmpty()) {
        m_refusalTimer.start();
        return;
    }
    if (m_bytesCurrentReceived <= 0)
        removeFile(m_file.name());

    m_reply = m_manager->get(request());
    m_reply->setReadBufferSize(kReadBufferBytes);
    // By name: a compiled-in use of error() is a deprecation warning, and errorOccurred() is new in 5.15.
    connect(m_reply, SIGNAL(downloadProgress(qint64, qint64)), this, SLOT(onDownloadProgress(qint64, qint64)));
    connect(m_reply, SIGNAL(readyRead()), this, SLOT(onReadyRead()));
    connect(m_reply, SIGNAL(finished()), this, SLOT(onFinished()));
    connect(m_reply, SIGNAL(error(QNetworkReply::NetworkError)), this, SLOT(onError(QNetworkReply::NetworkError)));
}

/// Why nothing may be started; empty where the temporary file is this transfer's now.
QString DownloadManager::refusal(const QString& fileName)
{
    m_file.release();
    if (!isFetched(m_url))
        return QStringLiteral("no address of http or https");
    if (fileName.contains(QChar::Null)) // the system would cut the name there, and open another file
        return QStringLiteral("the file name has a zero in it");
    if (!m_file.claim(fileName + kTemporarySuffix))
        return QStringLiteral("another transfer goes to the same file");
    return {};
}

QNetworkRequest DownloadManager::request() const
{
    QNetworkRequest request(m_url);
    // What Qt inflates unasked may be a thousand times as long as what was announced, and is not missed when cut.
    request.setRawHeader("Accept-Encoding", "identity");
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
    m_refusalTimer.stop();
    if (!m_reply)
        return;
    // abort() reports an error, and where there is one already it warns of the second.
    m_reply->disconnect(this);
    if (m_reply->error() == QNetworkReply::NoError)
        m_reply->abort();
    const bool givenUp = m_reply->error() == QNetworkReply::OperationCanceledError; // by the silence limit as well
    m_reply->deleteLater();
    m_reply = nullptr;
    if (givenUp)
        releaseNetworkLater(std::exchange(m_manager, new QNetworkAccessManager(this)));
}

void DownloadManager::reset()
{
    stopWork();
    m_bytesCurrentReceived = 0;
    if (m_file.claim(m_file.name())) // where it is not this transfer's any more, it may be another one's
        removeFile(m_file.name());
    m_file.release();
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

void DownloadManager::setSizeLimit(qint64 bytes)
{
    m_sizeLimit = bytes;
}

void DownloadManager::onReadyRead()
{
    if (m_isStop)
        return;
    const QByteArray chunk = m_reply->readAll(); // also when it has to be dropped, or the transfer would stand still
    m_bytesRead += chunk.size();
    const QString fault = faultInReply();
    if (!fault.isEmpty())
        fail(fault);
    else if (!m_file.append(chunk))
        fail(m_file.errorString());
}

/// What a server that keeps to its word does not do; empty otherwise.
QString DownloadManager::faultInReply() const
{
    const QByteArray coding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    if (!coding.isEmpty() && coding != "identity")
        return QStringLiteral("the body is coded, which was not asked for");
    const qint64 told = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (std::max(told, m_bytesRead) > m_sizeLimit)
        return QStringLiteral("the file is too large");
    return {};
}

void DownloadManager::onDownloadProgress(qint64 received, qint64 total)
{
    if (m_isStop)
        return;
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
        } else if (!isWhole()) {
            fail(QStringLiteral("the file is not whole"));
            return;
        } else if (m_file.exists()) {
            putInPlace();
        }
    }
    m_file.release();
    emit signalReplyFinished(status);
}

/// A connection that ends within a body is now and then the body's end to Qt 5.15, and half an installer would stand
/// in for a whole one. In a body of pieces it cannot be seen (docs/security.md, "Updates"). Chunks that could not be
/// written are missed here as well.
bool DownloadManager::isWhole() const
{
    const QVariant told = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (told.isValid() && m_bytesRead != told.toLongLong())
        return false;
    return m_file.size() == m_bytesCurrentReceived + m_bytesRead;
}

void DownloadManager::putInPlace()
{
    const QString target = m_file.name().left(m_file.name().lastIndexOf(kTemporarySuffix));
    qDebug() << target;
    m_file.replace(target); // where it cannot, the new file stays beside the old one
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
