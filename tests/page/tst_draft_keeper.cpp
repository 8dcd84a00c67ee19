#include "content/page/draft_keeper.h"
#include "content/page/edit_main_window.h"
#include "tests/page/disk_full.h"

#include <QAction>
#include <QProcess>
#include <QTextEdit>
#include <QtTest>

#include <memory>

/// Pages that come back: of clients that end, crash, run side by side or find a full disk.
class DraftKeeperTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    QString folder() const { return m_folder->filePath("drafts"); }
    QStringList files() const { return QDir(folder()).entryList({"*.html*"}, QDir::Files, QDir::Name); }
    QString path(int file) const { return folder() + '/' + files().value(file); }

    static QByteArray content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static bool put(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    /// A client with what it finds.
    std::unique_ptr<EditMainWindow> client() const
    {
        auto window = std::make_unique<EditMainWindow>();
        window->initFont();
        window->resize(600, 400);
        window->keepDrafts(folder());
        return window;
    }

    static void type(EditMainWindow& window, const QString& text) { QTest::keyClicks(window.editor(), text); }
    static QString text(const EditMainWindow& window) { return window.editor()->toPlainText(); }

    static bool makeOlder(const QString& path, int seconds)
    {
        QFile file(path);
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime);
    }

    /// A client that was here, and its draft when `age` seconds have gone by since.
    void leave(const QString& words, int age) const
    {
        EditMainWindow window;
        window.keepDrafts(m_folder->filePath("elsewhere"));
        window.editor()->setPlainText(words);
        window.writeDraft();
        const QDir made(m_folder->filePath("elsewhere"));
        const QString draft = folder() + '/' + words + ".html";
        QVERIFY(QDir().mkpath(folder()) && QFile::rename(made.filePath(made.entryList({"*.html"}).value(0)), draft));
        QVERIFY(makeOlder(draft, age));
    }

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    /// Somebody writes without a pause, and the process ends without a word.
    void crash()
    {
        const auto window = client();
        QImage picture(300, 200, QImage::Format_RGB32);
        picture.fill(Qt::red);
        window->slotsInsertImage(picture);
        QElapsedTimer time;
        time.start();
        while (files().filter(QRegularExpression("html$")).isEmpty() && time.elapsed() < 9000) {
            type(*window, "x");
            QTest::qWait(50);
        }
        QVERIFY2(time.elapsed() < 5000, QByteArray::number(time.elapsed()));
        type(*window, "end");
        QTest::keyClick(window->editor(), Qt::Key_Left);
        window->writeDraft();

        QProcess dead;
        dead.start("true", QStringList());
        const QByteArray pid = QByteArray::number(dead.processId());
        QVERIFY(dead.waitForFinished());
        const QString draft = path(0);
        const QByteArray page = content(draft);
        const QByteArray lock =
            content(draft + ".lock").replace(QByteArray::number(QCoreApplication::applicationPid()), pid);
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(folder()) && put(folder() + "/a.html", page) && put(folder() + "/a.html.lock", lock));
        const auto next = client();
        QCOMPARE(text(*next), text(*window));
        QVERIFY(text(*next).endsWith("xend"));
        QCOMPARE(next->editor()->textCursor().position(), window->editor()->textCursor().position());
        QVERIFY(!next->editor()->document()->isUndoAvailable());
        QCOMPARE(contentOf(*next->editor()).pictures.value(0).pixelColor(9, 9), QColor(Qt::red));
        QCOMPARE(files(), QStringList({"a.html", "a.html.lock"}));
    }

    void twoClients()
    {
        leave("old", 100);
        leave("new", 50);
        auto first = client();
        auto second = client();
        auto third = client();
        QCOMPARE(text(*first) + '|' + text(*second) + '|' + text(*third), QStringLiteral("new|old|"));
        QVERIFY(!first->findChild<DraftKeeper*>()->hasOthers());
        type(*third, "third");
        third->writeDraft();
        QVERIFY(makeOlder(third->findChild<DraftKeeper*>()->file(), 10));
        type(*second, "very "); // at its start
        second->writeDraft();
        for (auto* each : {&first, &second, &third})
            each->reset();
        const auto next = client();
        QCOMPARE(text(*next), QStringLiteral("very old"));
        QVERIFY(next->findChild<DraftKeeper*>()->hasOthers());
        QCOMPARE(files().filter(QRegularExpression("html$")).size(), 3);
    }

    void onlyWhatChanges()
    {
        leave("page", 50);
        const auto window = client();
        const QDateTime before = QFileInfo(path(0)).lastModified();
        window->writeDraft();
        QCOMPARE(QFileInfo(path(0)).lastModified(), before);
        window->editor()->moveCursor(QTextCursor::End);
        window->writeDraft();
        QVERIFY(QFileInfo(path(0)).lastModified() != before);
        QVERIFY(content(path(0)).contains(R"(name="quillbox-caret" content="4")"));
        window->newAction()->trigger();
        window->writeDraft();
        QCOMPARE(files(), QStringList("page.html.lock"));
    }

    /// One that cannot be read is put aside, and not over another.
    void unreadable_data()
    {
        QTest::addColumn<QByteArray>("draft");
        leave("whole", 99);
        const QByteArray whole = content(path(0));
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut") << whole.left(whole.size() - 9);
        QTest::newRow("other version") << QByteArray(whole).replace("content=\"1\"", "content=\"9\"");
        QTest::newRow("no page of the client's") << QByteArray("<html>x</html>");
    }

    void unreadable()
    {
        QFETCH(QByteArray, draft);
        leave("whole", 99);
        QVERIFY(put(folder() + "/bad.html", draft) && put(folder() + "/bad.html.unreadable", "earlier"));
        const auto window = client();
        QCOMPARE(text(*window), QString());
        QVERIFY(window->findChild<DraftKeeper*>()->hasOthers());
        QCOMPARE(files(), QStringList({"bad.html.unreadable", "bad.html.unreadable2", "whole.html"}));
        QCOMPARE(content(path(0)) + content(path(1)), "earlier" + draft);
        type(*window, "next");
        window->writeDraft();
        QCOMPARE(files().size(), 5);
    }

    void fullDisk()
    {
        leave("page", 50);
        const QByteArray before = content(path(0));
        const auto window = client();
        {
            const DiskFull full;
            window->editor()->setPlainText(QString(9999, 'x'));
            window->writeDraft();
        }
        QCOMPARE(content(path(0)), before);
        QCOMPARE(text(*window).size(), 9999);
        QCOMPARE(files(), QStringList({"page.html", "page.html.lock"}));
        window->writeDraft();
        QVERIFY(content(path(0)).contains(QByteArray(9999, 'x')));
    }

    /// Kept as soon as it can be.
    void folderCannotBeWritten()
    {
        QVERIFY(put(folder(), "a file in its place"));
        const auto window = client();
        type(*window, "page");
        window->writeDraft();
        QVERIFY(QFile::remove(folder()));
        window->writeDraft();
        QVERIFY(content(path(0)).contains("page"));
    }
};

QTEST_MAIN(DraftKeeperTest)
#include "tst_draft_keeper.moc"
