#include "simulator/cloud/raw_server.h"
#include "simulator/cloud/simulated_service.h"
#include "tests/files.h"
#include "tests/system.h"
#include "update/download_manager.h"

#include <QDir>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

using Length = InstallerFile::Length;
Q_DECLARE_METATYPE(InstallerFile)

namespace {

constexpr int kError = -1;
const QByteArray kOld = "what was there before";

/// A manager and what it says: the statuses, and kError for each error.
struct Download : DownloadManager
{
    QSignalSpy progress{this, &DownloadManager::signalDownloadProcess};
    QList<int> said;

    Download()
    {
        connect(this, &DownloadManager::signalReplyFinished, [this](int status) { said += status; });
        connect(this, &DownloadManager::signalDownloadError, [this] { said += kError; });
    }

    QList<int> run(const QString& url, const QString& file)
    {
        said.clear();
        downloadFile(url, file);
        [[maybe_unused]] const bool ended = QTest::qWaitFor([this] { return !said.isEmpty(); });
        QCoreApplication::processEvents(); // for what may come twice
        return said;
    }
};

} // namespace

class DownloadManagerTest : public QObject
{
    Q_OBJECT

    SimulatedService m_service;
    const QString m_url = m_service.installerPath();

private slots:
    void transfers_data()
    {
        QTest::addColumn<InstallerFile>("installer");
        QTest::addColumn<int>("room"); // on the disk
        QTest::addColumn<int>("outcome");
        QTest::addColumn<int>("size"); // of what is in place then; 0: the file that was there before
        constexpr int kRoom = 1000000;
        QTest::newRow("nothing") << InstallerFile{0} << kRoom << 200 << 0;
        QTest::newRow("told") << InstallerFile{300000} << kRoom << 200 << 300000;
        QTest::newRow("chunked") << InstallerFile{300000, Length::Chunked} << kRoom << 200 << 300000;
        QTest::newRow("untold") << InstallerFile{300000, Length::Untold} << kRoom << 200 << 300000;
        QTest::newRow("redirected") << InstallerFile{1, Length::Told, 200, 3} << kRoom << 200 << 1;
        QTest::newRow("slow") << InstallerFile{30000, Length::Chunked, 200, 0, 120000} << kRoom << 200 << 30000;
        QTest::newRow("206") << InstallerFile{300000, Length::Told, 206} << kRoom << 206 << 300000;
        QTest::newRow("404") << InstallerFile{300000, Length::Told, 404} << kRoom << kError << 0;
        QTest::newRow("cut") << InstallerFile{300000, Length::Told, 200, 0, 0, 100000} << kRoom << kError << 0;
        QTest::newRow("cut unseen") << InstallerFile{300000, Length::Untold, 200, 0, 0, 100} << kRoom << 200 << 100;
        QTest::newRow("full disk") << InstallerFile{1000} << 0 << kError << 0;
        QTest::newRow("disk gets full") << InstallerFile{300000, Length::Chunked} << 100001 << kError << 0;
    }

    void transfers()
    {
        QFETCH(InstallerFile, installer);
        QFETCH(int, room);
        QFETCH(int, outcome);
        QFETCH(int, size);
        const QTemporaryDir folder;
        const QString file = folder.filePath("安装_tmp 包.exe");
        writeFile(file, kOld);
        writeFile(file + "_tmp", "left over from an earlier run");
        m_service.setInstaller(installer);
        Download download;
        if (!limitFiles(room) && room < 1000000)
            QSKIP("no limit of a file's size");
        if (installer.status == 404)
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^_{10} \"[^\"\\n]+\\?\\\\u2028 [^\"\\n]+\"$"));
        const QList<int> said = download.run(m_url + "?%E2%80%A8", file);
        limitFiles(kNoLimit);
        QCOMPARE(said, QList<int>{outcome});
        QCOMPARE(readFile(file), size > 0 ? installerBytes(0, size) : kOld);
        QVERIFY(!QFile::exists(file + "_tmp"));
        QVERIFY(m_service.installerHeader("range").isNull());
        QCOMPARE(m_service.installerHeader("accept-encoding"), QByteArray("identity"));
        if (size > 0)
            QCOMPARE(download.progress.last(), (QVariantList{size, size}));
        if (installer.bytesPerSecond > 0)
            QCOMPARE(download.progress.first()[1].toInt(), -1);
    }

    void silence()
    {
        const QTemporaryDir folder;
        Download download;
        download.setSilenceLimitMs(800);
        m_service.setInstaller({100000, Length::Told, 200, 0, 50000}); // takes longer, but always moves
        QCOMPARE(download.run(m_url, folder.filePath("a.exe")), QList<int>{200});
        QTcpServer mute;
        QVERIFY(mute.listen(QHostAddress::LocalHost));
        m_service.setInstaller({100000, Length::Told, 200, 0, 0, -1, 50000});
        for (const QString& url : {m_url, QStringLiteral("http://127.0.0.1:%1/").arg(mute.serverPort())})
            QCOMPARE(download.run(url, folder.filePath("a.exe")), QList<int>{kError});
    }

    void targetsThatCannotBe()
    {
        const QTemporaryDir folder;
        writeFile(folder.filePath("kept"), kOld);
        m_service.setInstaller({30000, Length::Told, 200, 0, 120000});
        QCOMPARE(Download().run(m_url, folder.path()), QList<int>{200});
        QCOMPARE(readFile(folder.filePath("kept")), kOld);
        QVERIFY(QFile::remove(folder.path() + "_tmp")); // the new file is not lost either
        Download download;
        connect(&download, &DownloadManager::signalDownloadProcess, this,
                [&] { QDir(folder.path()).removeRecursively(); });
        QCOMPARE(download.run(m_url, folder.filePath("a.exe")), QList<int>{kError});
        QCOMPARE(QDir(folder.path()).exists(), kOnWindows); // where the open lock keeps it
        QCOMPARE(download.run("http://127.0.0.1:1/x", folder.filePath("a.exe")), QList<int>{kError});
    }

    void startsNothing()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.exe");
        for (const QString& name : {file, file + "_tmp", folder.filePath("b")})
            writeFile(name, kOld);
        m_service.setInstaller({300000});
        const QString urls =
            "|nonsense|data:,x|ftp://127.0.0.1:1/x|http:///x|FILE://" + folder.filePath("b|") + m_url;
        for (const QString& url : urls.split('|')) {
            const QString target = url == m_url ? folder.filePath("c") + QChar(0) : file;
            Download download;
            QCOMPARE(download.run(url, target), QList<int>{kError});
            download.reset();
            QCOMPARE(readFile(file) + readFile(file + "_tmp"), kOld + kOld);
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 3);
        }
        QCOMPARE(Download().run("HTTP" + m_url.mid(4), file), QList<int>{200});
    }

    void oneTransferToAFile()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.exe");
        QFile lock(file + "_tmp.lock"); // of a client that has crashed
        writeFile(lock.fileName(), "4194305\nquillbox\n\n");
        m_service.setInstaller({1});
        Download second;
        QCOMPARE(second.run(m_url, file), QList<int>{200});
        QVERIFY(QFile::remove(file));
        m_service.setInstaller({300000, Length::Told, 200, 0, 0, -1, 100000});
        Download first;
        first.downloadFile(m_url, file);
        QTRY_COMPARE(QFileInfo(file + "_tmp").size(), 100000);
        // On Windows nobody opens the lock of somebody who runs.
        QVERIFY(kOnWindows != lock.open(QIODevice::ReadWrite));
        QVERIFY(kOnWindows !=
                lock.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
        QCOMPARE(second.run(m_url, file), QList<int>{kError});
        second.reset();
        QCOMPARE(QFileInfo(file + "_tmp").size(), 100000);
        first.reset();
        QVERIFY(QDir(folder.path()).isEmpty());
        m_service.setInstaller({3000000, Length::Chunked});
        connect(&second, &DownloadManager::signalDownloadProcess, this, [&] { QFile::remove(file + "_tmp"); });
        QCOMPARE(second.run(m_url, file), QList<int>{kError});
        QVERIFY(QDir(folder.path()).isEmpty());
    }

    void hostileServers_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("piece"); // sent without end
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
        const QByteArray coded = qCompress(installerBytes(0, 3000000)).mid(4);
        const QByteArray deflate = ok + "Content-Encoding: deflate\r\n";
        const QByteArray large(65536, 'a');
        QTest::newRow("coded") << deflate + "\r\n" + coded << QByteArray();
        QTest::newRow("coded, cut") << deflate + "Content-Length: 400000\r\n\r\n" + coded.left(50000) << QByteArray();
        QTest::newRow("body") << ok + "\r\n" << large;
        QTest::newRow("2 GB") << ok + "Content-Length: 2147483649\r\n\r\n" << QByteArray("x");
        QTest::newRow("headers") << ok << "X: " + large + "\r\n";
        QTest::newRow("continue") << QByteArray() << QByteArray("HTTP/1.1 100 \r\n\r\n").repeated(1000);
        QTest::newRow("line of a chunk") << chunked + "5;" << large;
    }

    void hostileServers()
    {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, piece);
        const RawServer server(head, piece, piece.isEmpty() ? 0 : -1);
        const QTemporaryDir folder;
        writeFile(folder.filePath("a.exe"), kOld);
        auto download = std::make_unique<Download>();
        download->setSilenceLimitMs(900);
        if (!head.contains("2147483649")) // a byte more than usual
            download->setSizeLimit(100000000);
        QTimer::singleShot(100, download.get(), [] { QThread::msleep(500); }); // for a slow disk
        QCOMPARE(download->run(server.address(), folder.filePath("a.exe")), QList<int>{kError});
        const RawServer another(head, piece, piece.isEmpty() ? 0 : -1); // the first one may still send
        download->downloadFile(another.address(), folder.filePath("a.exe"));
        QTRY_VERIFY(another.sent() > (piece.size() > 1 ? 1000000 : 0));
        QElapsedTimer clock;
        clock.start();
        download.reset();
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY2(peakMegabytes() < 300 * LIMIT_FACTOR, qPrintable(QString::number(peakMegabytes())));
        QFile::remove(folder.filePath("a.exe_tmp")); // of the one that was given up
        QCOMPARE(readFile(folder.filePath("a.exe")), kOld);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    }

    void stopsAndStartsAnew()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.exe");
        Download download;
        m_service.setInstaller({300000, Length::Told, 200, 0, 0, -1, 100000});
        for (const bool supportRange : {true, false}) {
            download.setSupportRange(supportRange);
            download.downloadFile(m_url, file);
            QTRY_COMPARE(QFileInfo(file + "_tmp").size(), 100000);
            QCOMPARE(m_service.installerHeader("range"), QByteArray(supportRange ? "bytes=0-" : ""));
            download.downloadFile(m_url + "?ignored", file);
            QCOMPARE(download.getDownloadUrl(), m_url);
            supportRange ? download.stopWork() : download.reset();
            QCOMPARE(QFile::exists(file + "_tmp"), supportRange);
            QVERIFY(download.said.isEmpty());
        }
        m_service.setInstaller({300000});
        for (int i = 0; i < 2; ++i)
            QCOMPARE(download.run(m_url, file), QList<int>{200});
        QCOMPARE(download.findChildren<QNetworkReply*>().size(), 1); // the one before has been let go
        m_service.setInstaller({300000, Length::Told, 304});         // of which Qt reads no body, and finds no fault
        QCOMPARE(download.run(m_url, file), QList<int>{kError});
        QCOMPARE(readFile(file), installerBytes(0, 300000));
    }
};

QTEST_GUILESS_MAIN(DownloadManagerTest)
#include "tst_download_manager.moc"
