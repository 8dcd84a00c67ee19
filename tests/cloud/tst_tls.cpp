#include "app/globals/settings.h"
#include "cloud/base_api.h"
#include "cloud/service_address.h"
#include "simulator/cloud/simulated_service.h"
#include "simulator/cloud/tls_identity.h"
#include "tests/system.h"
#include "update/download_manager.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

struct Call : BaseApi
{
    QString outcome;
    QSignalSpy over{this, &BaseApi::signalReceived};

protected:
    void onSuccess(int status, const QJsonObject&) override { outcome = QStringLiteral("success %1").arg(status); }
    void onFailed(int status, const QString&) override { outcome = QStringLiteral("failed %1").arg(status); }
};

/// Whom the client talks to over TLS, by Qt's OpenSSL on Linux and by schannel on Windows.
class TlsTest : public QObject
{
    Q_OBJECT

    const TlsIdentity m_trusted, m_unknown, m_ofAnother{"DNS:quillbox.example"}, m_ended{"IP:127.0.0.1", -1};
    const TrustedRoot m_roots[3]{TrustedRoot(m_trusted.root()), TrustedRoot(m_ofAnother.root()),
                                 TrustedRoot(m_ended.root())};

private slots:
    void reachesTheTrustedAlone()
    {
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        const QTemporaryDir folder;
        for (const TlsIdentity* identity : {&m_trusted, &m_unknown, &m_ofAnother, &m_ended}) {
            const bool trusted = identity == &m_trusted;
            SimulatedService service(0, identity);
            service.setReply("some/Call", ServiceReply::plain(ServiceReply::success({})));
            service.setInstaller({1000});
            serviceAddress() = service.address();
            Call call;
            call.sendRequest("some/Call", QJsonObject{{"secret", 1}});
            QVERIFY(call.over.wait());
            QCOMPARE(call.outcome, QString(trusted ? "success 200" : "failed -1"));
            QCOMPARE(service.requests().size(), trusted ? 1 : 0);

            DownloadManager download;
            QSignalSpy done(&download, &DownloadManager::signalReplyFinished);
            QSignalSpy failed(&download, &DownloadManager::signalDownloadError);
            download.downloadFile(service.installerPath(), folder.filePath("a.exe"));
            QTRY_COMPARE(done.size() + failed.size(), 1);
            QCOMPARE(done.size(), trusted ? 1 : 0);
            QCOMPARE(service.installerRequests(), trusted ? 1 : 0);
            QCOMPARE(QFile::remove(folder.filePath("a.exe")), trusted);
        }
    }
};

QTEST_MAIN(TlsTest)
#include "tst_tls.moc"
