#include "content/page/draft_keeper.h"
#include "content/page/edit_main_window.h"
#include "content/page/file_actions.h"
#include "content/page/page_editor.h"
#include "content/page/page_file.h"
#include "content/page/page_renderer.h"
#include "content/page/picture_insertion.h"
#include "content/page/text_runs.h"
#include "tests/files.h"
#include "tests/system.h"

#include <QAction>
#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(PageFault)

/// Pages come back: from files, and as drafts of clients that end, crash, run side by side or find a full disk. What is no
/// page harms nothing.
class PageFileTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<EditMainWindow> m_window;

    QTextEdit* editor() const { return m_window->editor(); }
    QString path(const QString& name) const { return m_folder->filePath(name); }

    static std::unique_ptr<EditMainWindow> window()
    {
        auto result = std::make_unique<EditMainWindow>();
        result->initFont();
        result->resize(600, 400);
        result->grab();
        return result;
    }

    static QImage rendered(QTextEdit* editor) { return renderPage(*qobject_cast<PageEditor*>(editor), 576); }

    static QImage noise(int width, int height)
    {
        QImage image(width, height, QImage::Format_ARGB32);
        for (int i = 0; i < width * height; ++i)
            image.setPixel(i % width, i / width, QRandomGenerator::global()->generate());
        return image;
    }

    static QString address(const QImage& picture)
    {
        QBuffer buffer;
        picture.save(&buffer, "PNG");
        return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(buffer.data().toBase64());
    }

    QByteArray content(const QString& name) const { return readFile(path(name)); }
    bool put(const QString& name, const QByteArray& bytes) const { return writeFile(path(name), bytes); }

    static void paste(QTextEdit* editor, const QString& html)
    {
        auto* mime = new QMimeData;
        mime->setHtml(html);
        QGuiApplication::clipboard()->setMimeData(mime);
        editor->paste();
    }

    /// A page of the client's own, with a picture.
    QByteArray ownPage() const
    {
        const auto page = window();
        type(*page, "caption");
        page->slotsInsertImage(noise(20, 20));
        PageWriter().write(contentOf(*page->editor()), path("own.html"));
        return content("own.html");
    }

    QString folder() const { return path("drafts"); }
    QStringList files() const { return QDir(folder()).entryList({"*.html*"}, QDir::Files, QDir::Name); }
    QString draft(int file) const { return folder() + '/' + files().value(file); }

    /// A client with what it finds.
    std::unique_ptr<EditMainWindow> client() const
    {
        auto result = window();
        result->keepDrafts(folder());
        return result;
    }

    static void type(EditMainWindow& window, const QString& text) { QTest::keyClicks(window.editor(), text); }
    static QString text(const EditMainWindow& window) { return window.editor()->toPlainText(); }

    static bool makeOlder(const QString& path, int seconds)
    {
        QFile file(path);
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime);
    }

    /// The draft of a client that was here, when `age` seconds have gone by since.
    void leave(const QString& words, int age) const
    {
        const QString draft = folder() + '/' + words + ".html";
        QVERIFY(QDir().mkpath(folder()));
        QCOMPARE(PageWriter().write(contentOf(QTextEdit(words)), draft), QString());
        QVERIFY(makeOlder(draft, age));
    }

private slots:
    void initTestCase()
    {
        // The test library sets another resolution than the screen's, which would change the size of pictures.
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // nobody reaches into those
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_window = window();
    }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("html");
        const QString small = QStringLiteral("<img src='%1'>").arg(address(noise(30, 20)));
        QTest::newRow("text")
            << "a  b\t<b>bold</b> <i style='font-family:DejaVu Serif; font-size:31px'>i</i> <u>u</u><s>s</s>"
               "<sub>2</sub> <span style='font-size:7.5pt'>tiny</span> &lt;img src=\"picture:0\"&gt; &amp;";
        QTest::newRow("paragraphs")
            << "<p align=center>c</p><p></p><p style='font-size:40pt'><br></p><p align=right>r</p>"
               "<p align=justify style='line-height:170%; margin-left:30px; text-indent:9px'>j<br>k</p>";
        QTest::newRow("lists") << "<ol><li>one<ul><li><b>in</b></ul><li style='font-size:9pt'>two</ol><ul><li>x" +
                                      small + "</ul>";
        QTest::newRow("table") << "<table border=1 width=80%><tr><td>a<td rowspan=2>b<tr><td align=right>" + small +
                                      "</table>z<table border=1><tr><td>c<td></table>an empty cell before";
        QTest::newRow("of a web page")
            << "<h1>head</h1><hr><pre>co    de\nx</pre><a href='http://a.org/' style='text-decoration:none; "
               "color:red'>link</a> <a name=x>y</a><blockquote>q</blockquote>";
        QTest::newRow("pictures") << "text " + small + " beside" + small + "<p>" + small + "<img width=15 src='" +
                                         address(noise(60, 40).convertToFormat(QImage::Format_Mono)) + "'>";
    }

    void roundTrip()
    {
        QFETCH(QString, html);
        paste(editor(), html);
        m_window->slotsInsertImage(noise(700, 90));
        QTest::keyClicks(editor(), "after");
        editor()->setCurrentFont(QFont("DejaVu Sans", 9, QFont::Bold, true));
        QVERIFY(insertPicture(*editor(), noise(70, 9), 0xd800)); // whose name is half a character
        QTest::keyClick(editor(), Qt::Key_Return);
        PageWriter writer;
        QCOMPARE(writer.write(contentOf(*editor()), path("one.html")), QString());

        const auto other = window();
        PageContent page;
        QCOMPARE(readPage(path("one.html"), PageOrigin::Client, &page), PageFault::None);
        replacePage(*other->editor(), page);
        QCOMPARE(other->editor()->toPlainText(), editor()->toPlainText());
        QCOMPARE(other->editor()->textCursor().position(), editor()->textCursor().position());
        QCOMPARE(writer.write(contentOf(*other->editor()), path("two.html")), QString());
        QCOMPARE(content("two.html"), content("one.html"));
        QCOMPARE(rendered(other->editor()), rendered(editor()));
        for (QTextEdit* each : {editor(), other->editor()}) {
            each->moveCursor(QTextCursor::End);
            QTest::keyClick(each, Qt::Key_Up);
            QTest::keyClick(each, Qt::Key_Up);
            QTest::keyClicks(each, "beside");
        }
        QCOMPARE(rendered(other->editor()), rendered(editor()));
    }

    void badFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<PageFault>("opened");
        m_folder = std::make_unique<QTemporaryDir>();
        const QByteArray whole = ownPage();
        const auto changed = [whole](const char* from, const QByteArray& to) {
            return QByteArray(whole).replace(from, to);
        };
        QImage white(12000, 10000, QImage::Format_Grayscale8); // some hundred kilobytes as a file
        white.fill(Qt::white);
        const QByteArray huge = "<img src='" + address(white).toLatin1() + "'>";
        using Fault = PageFault;
        QTest::newRow("whole") << whole << Fault::None;
        QTest::newRow("empty") << QByteArray() << Fault::NotAPage;
        QTest::newRow("cut in a picture") << whole.left(whole.indexOf("base64,") + 99) << Fault::Damaged;
        QTest::newRow("cut at its end") << whole.chopped(1) << Fault::Damaged;
        QTest::newRow("base64") << changed("iVBOR", "iVB-R") << Fault::Damaged;
        QTest::newRow("not UTF-8") << changed("caption", "capti\xff!") << Fault::Damaged;
        QTest::newRow("other version") << changed("page\" content=\"1", "page\" content=\"2") << Fault::OtherVersion;
        QTest::newRow("NUL") << changed("caption", QByteArray(1, '\0')) << Fault::NotAPage;
        QTest::newRow("no HTML") << QByteArray("text <b>text</b>") << Fault::NotAPage;
        QTest::newRow("of others") << QByteArray("<HTML><img src=data:,none><img src='data:,P1 1 1 1'>x")
                                   << Fault::None;
        QTest::newRow("GBK") << QByteArray("<html><meta charset=gbk>\xc4\xe3") << Fault::None;
        for (const QByteArray part : {"<b>x", "<i></b>", "<td colspan=2000 rowspan='999'>"})
            QTest::newRow(part) << "<html>" + part.repeated(1200) << Fault::TooLarge;
        QTest::newRow("tables") << "<html>" + QByteArray("<table><tr><td>").repeated(12) << Fault::TooLarge;
        QTest::newRow("closed") << "<html>" + QByteArray("<b>x</b>").repeated(1200) << Fault::None;
        QTest::newRow("flat") << "<html>" + QByteArray("<p>x<li>x").repeated(900) << Fault::None;
        QTest::newRow("text") << "<html>" + QByteArray("word ").repeated(2 << 20) << Fault::TooLarge;
        QTest::newRow("word") << "<html>" + QByteArray(200 << 10, 'x') << Fault::TooLarge;
        QTest::newRow("pixels") << "<html>" + huge.repeated(4) << Fault::None; // without some of them
        QTest::newRow("own pixels") << changed("caption", huge.repeated(4)) << Fault::TooLarge;
    }

    void badFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(PageFault, opened);
        put("page.html", content);
        QTest::keyClicks(editor(), "before");
        PageContent page;
        QCOMPARE(readPage(path("page.html"), PageOrigin::Client, &page),
                 content.contains("quillbox-page") ? opened : PageFault::NotAPage);
        QString told;
        QTimer::singleShot(0, this, [&told] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                told = box->text();
                box->accept();
            }
        });
        const bool isOpen = m_window->findChild<FileActions*>()->openFile(path("page.html"));
        QCOMPARE(isOpen, opened == PageFault::None);
        QCOMPARE(editor()->toPlainText() == "before", !isOpen);
        QCOMPARE(told.contains("page.html"), !isOpen);
        QCOMPARE(this->content("page.html"), content);
        editor()->undo();
        QCOMPARE(editor()->toPlainText(), isOpen ? QStringLiteral("before") : QString());
    }

    /// Nothing but what the file holds itself, whatever it names.
    void loadsNothingElse()
    {
        QVERIFY(noise(9, 9).save(path("red.png")));
        put("style.css", "p { font-size: 40pt }");
        const QByteArray base = QUrl::fromLocalFile(path("")).toEncoded() + '/';
        QByteArray html = "<html><head><base href='@'><link rel=stylesheet type=text/css href='@style.css'></head>"
                          "<body background='@red.png'><table><tr><td background='@red.png'></table><p>x"
                          "<img src='@red.png'><img src=red.png><img src='http://127.0.0.1:1/a.png'>"
                          "<img src='picture:7'><img width=5000 src='data:,P1 1 1 1'>";
        put("page.html", html.replace('@', base));
        QVERIFY(m_window->findChild<FileActions*>()->openFile(path("page.html")));
        const QVector<TextRun> runs = textRuns(*editor()->document());
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs[0].format.fontPointSize(), 20.0);
        QVERIFY(runs[1].format.toImageFormat().name().startsWith("pasted_image_"));
        QCOMPARE(runs[1].end - runs[1].begin, 1);
        QCOMPARE(editor()->horizontalScrollBar()->maximum(), 0);
        QVERIFY(!contentOf(*editor()).html.contains("file:"));
    }

    /// The dialog shows the drafts that other clients have left, once, and then where a page was opened last.
    void opensByTheDialog()
    {
        leave("left by another", 99);
        leave("newest", 50);
        put("page.html", "<html>opened");
        const auto window = client();
        QStringList shown;
        for (int i = 0; i < 2; ++i) {
            QTimer::singleShot(0, qApp, [&] {
                auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                shown += dialog->directory().path() + (dialog->fileMode() == QFileDialog::ExistingFile ? "" : "!");
                dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path("page.html"));
                QTest::keyClick(dialog->findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
            });
            window->openAction()->trigger();
        }
        QCOMPARE(text(*window), QString("opened"));
        QCOMPARE(shown, (QStringList{folder(), m_folder->path()}));
        PageContent page;
        QCOMPARE(readPage(path("none.html"), PageOrigin::Anybody, &page), PageFault::CannotRead);
        QVERIFY(QFile::resize(path("page.html"), kMostFileBytes + 1));
        QCOMPARE(readPage(path("page.html"), PageOrigin::Anybody, &page), PageFault::TooLarge);
    }

    void newPage()
    {
        paste(editor(), "<ul><li><b style='font-size:50pt'>x</b></ul>");
        m_window->slotsInsertImage(noise(20, 20));
        const QImage before = rendered(editor());
        m_window->newAction()->trigger();
        QTest::keyClicks(editor(), "y");
        const TextRun typed = textRuns(*editor()->document()).value(0);
        QCOMPARE(editor()->document()->blockCount(), 1);
        QVERIFY(!editor()->textCursor().currentList());
        QVERIFY(typed.format.fontPointSize() == 20 && typed.format.fontWeight() == QFont::Normal);
        editor()->undo();
        editor()->undo();
        QCOMPARE(rendered(editor()), before);
    }

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
        dead.start(kOnWindows ? "cmd" : "true", {"/c", "exit"});
        const QByteArray pid = QByteArray::number(dead.processId());
        QVERIFY(dead.waitForFinished());
        const QString left = draft(0);
        const QByteArray page = readFile(left);
        const QByteArray lock =
            readFile(left + ".lock").replace(QByteArray::number(QCoreApplication::applicationPid()), pid);
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(folder()) && put("drafts/a.html", page) && put("drafts/a.html.lock", lock));
        const auto next = client();
        QCOMPARE(text(*next), text(*window));
        QVERIFY(text(*next).endsWith("xend"));
        QCOMPARE(next->editor()->textCursor().position(), window->editor()->textCursor().position());
        QVERIFY(!next->editor()->document()->isUndoAvailable());
        QCOMPARE(contentOf(*next->editor()).pictures.value(0).pixelColor(9, 9), QColor(Qt::red));
        QCOMPARE(files(), QStringList({"a.html", "a.html.lock"}));
    }

    /// The window is closed while a draft is on its way.
    void closesMeanwhile()
    {
        const auto window = client();
        window->slotsInsertImage(noise(380, 6000)); // takes a while
        QTRY_VERIFY(!files().isEmpty());            // its lock
        type(*window, "end");
        window->writeDraft();
        QCoreApplication::processEvents();
        QVERIFY(readFile(draft(0)).contains("end"));
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
        auto window = client();
        const QDateTime before = QFileInfo(draft(0)).lastModified();
        window->writeDraft();
        QCOMPARE(QFileInfo(draft(0)).lastModified(), before);
        window->editor()->moveCursor(QTextCursor::End);
        window->writeDraft();
        QVERIFY(QFileInfo(draft(0)).lastModified() != before);
        QVERIFY(readFile(draft(0)).contains(R"(name="quillbox-caret" content="4")"));
        window.reset();
        QVERIFY(makeOlder(draft(0), 50));
        const QDateTime older = QFileInfo(draft(0)).lastModified();
        window = client(); // with the caret where it was
        window->writeDraft();
        QCOMPARE(QFileInfo(draft(0)).lastModified(), older);
        window->newAction()->trigger();
        window->writeDraft();
        QCOMPARE(files(), QStringList("page.html.lock"));
    }

    /// One that cannot be read is put aside, and not over another.
    void unreadable()
    {
        leave("whole", 99);
        const QByteArray bad = readFile(draft(0)).chopped(9);
        QVERIFY(put("drafts/bad.html", bad) && put("drafts/bad.html.unreadable", "earlier"));
        const auto window = client();
        QCOMPARE(text(*window), QString());
        QVERIFY(window->findChild<DraftKeeper*>()->hasOthers());
        QCOMPARE(files(), QStringList({"bad.html.unreadable", "bad.html.unreadable2", "whole.html"}));
        QCOMPARE(readFile(draft(0)) + readFile(draft(1)), "earlier" + bad);
        type(*window, "next");
        window->writeDraft();
        QCOMPARE(files().size(), 5);
    }

    void fullDisk()
    {
        if (!limitFiles(kNoLimit))
            QSKIP("no limit of a file's size");
        leave("page", 50);
        const QByteArray before = readFile(draft(0));
        const auto window = client();
        window->editor()->setPlainText(QString(9999, 'x'));
        limitFiles(4096);
        QTest::qWait(3300); // and it is tried by itself
        window->writeDraft();
        QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
        QVERIFY(!window->findChild<FileActions*>()->saveFile(draft(0)));
        limitFiles(kNoLimit);
        QCOMPARE(readFile(draft(0)), before);
        QCOMPARE(text(*window).size(), 9999);
        QCOMPARE(files(), QStringList({"page.html", "page.html.lock"}));
        window->writeDraft();
        QVERIFY(readFile(draft(0)).contains(QByteArray(9999, 'x')));
    }
};

QTEST_MAIN(PageFileTest)
#include "tst_page_file.moc"
