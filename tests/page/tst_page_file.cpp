#include "content/page/edit_main_window.h"
#include "content/page/file_actions.h"
#include "content/page/page_editor.h"
#include "content/page/page_file.h"
#include "content/page/page_renderer.h"
#include "content/page/text_runs.h"
#include "tests/page/disk_full.h"

#include <QBuffer>
#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(PageFault)

/// A page as a file: what is written comes back, and what is no page harms nothing.
class PageFileTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<EditMainWindow> m_window;

    QTextEdit* editor() const { return m_window->editor(); }
    QString path(const QString& name) const { return m_folder.filePath(name); }

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

    static QByteArray png(const QImage& picture)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        picture.save(&buffer, "PNG");
        return bytes;
    }

    static QString address(const QByteArray& content)
    {
        return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(content.toBase64());
    }

    QByteArray content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void put(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    static void paste(QTextEdit* editor, const QString& html)
    {
        auto* mime = new QMimeData;
        mime->setHtml(html);
        QGuiApplication::clipboard()->setMimeData(mime);
        editor->paste();
    }

    /// A page of the client's own, with a picture.
    static QByteArray ownPage()
    {
        const QTemporaryDir folder;
        const auto page = window();
        QTest::keyClicks(page->editor(), "caption");
        page->slotsInsertImage(noise(20, 20));
        PageWriter().write(contentOf(*page->editor()), folder.filePath("page"));
        QFile file(folder.filePath("page"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// 12000 x 10000, in some hundred kilobytes.
    static QByteArray hugePng()
    {
        QImage image(12000, 10000, QImage::Format_Grayscale8);
        image.fill(Qt::white);
        return png(image);
    }

private slots:
    void initTestCase()
    {
        // The test library sets another resolution than the screen's, which would change the size of pictures.
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
    }

    void init() { m_window = window(); }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("html");
        const QString small = QStringLiteral("<img src='%1'>").arg(address(png(noise(30, 20))));
        QTest::newRow("text")
            << "a  b\t<b>bold</b> <i style='font-family:DejaVu Serif; font-size:31px'>i</i> <u>u</u><s>s</s>"
               "<sub>2</sub> <span style='font-size:7.5pt'>tiny</span> &lt;img src=\"picture:0\"&gt; &amp;";
        QTest::newRow("paragraphs")
            << "<p align=center>c</p><p></p><p style='font-size:40pt'><br></p><p align=right>r</p>"
               "<p align=justify style='line-height:170%; margin-left:30px; text-indent:9px'>j<br>k</p>";
        QTest::newRow("lists") << "<ol><li>one<ul><li><b>in</b></ul><li style='font-size:9pt'>two</ol><ul><li>x" +
                                      small + "</ul>";
        QTest::newRow("table") << "<table border=1 width=80%><tr><td>a<td rowspan=2>b<tr><td align=right>" + small +
                                      "</table>z";
        QTest::newRow("of a web page")
            << "<h1>head</h1><hr><pre>co    de\nx</pre><a href='http://a.org/' style='text-decoration:none; "
               "color:red'>link</a> <a name=x>y</a><blockquote>q</blockquote>";
        QTest::newRow("pictures") << "text " + small + " beside" + small + "<p>" + small + "<img width=15 src='" +
                                         address(png(noise(60, 40).convertToFormat(QImage::Format_Mono))) + "'>";
    }

    void roundTrip()
    {
        QFETCH(QString, html);
        paste(editor(), html);
        m_window->slotsInsertImage(noise(700, 90));
        QTest::keyClicks(editor(), "after");
        editor()->setCurrentFont(QFont("DejaVu Sans", 9, QFont::Bold, true));
        m_window->slotsInsertImage(noise(70, 9));
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
        QTest::addColumn<PageFault>("asDraft");
        QTest::addColumn<PageFault>("opened");
        const QByteArray whole = ownPage();
        const auto row = [](const char* name, const QByteArray& bytes, PageFault asDraft, PageFault opened) {
            QTest::newRow(name) << bytes << asDraft << opened;
        };
        using Fault = PageFault;
        row("whole", whole, Fault::None, Fault::None);
        row("empty", {}, Fault::NotAPage, Fault::NotAPage);
        row("cut in a picture", whole.left(whole.indexOf("base64,") + 99), Fault::Damaged, Fault::Damaged);
        row("cut at its end", whole.left(whole.size() - 1), Fault::Damaged, Fault::Damaged);
        row("base64", QByteArray(whole).replace("iVBOR", "iVB-R"), Fault::Damaged, Fault::Damaged);
        row("picture", QByteArray(whole).replace("iVBOR", "AAAAA"), Fault::Damaged, Fault::Damaged);
        row("not UTF-8", QByteArray(whole).replace("caption", "capti\xff!"), Fault::Damaged, Fault::Damaged);
        row("other version", QByteArray(whole).replace("page\" content=\"1", "page\" content=\"2"),
            Fault::OtherVersion, Fault::OtherVersion);
        row("NUL", QByteArray(whole).replace("caption", QByteArray("cap\0ion", 7)), Fault::NotAPage, Fault::NotAPage);
        row("no HTML", png(noise(9, 9)).replace('\0', "") + " <b>text</b>", Fault::NotAPage, Fault::NotAPage);
        row("of others", "<HTML><img src=data:,none><img src='data:,P1 1 1 1'>x", Fault::NotAPage, Fault::None);
        row("GBK", "<html><meta charset=gbk>\xc4\xe3", Fault::NotAPage, Fault::None);
        for (const QByteArray part : {"<b>x", "<i></b>", "<td colspan=2000 rowspan='999'>"})
            row(part, "<html>" + part.repeated(1200), Fault::NotAPage, Fault::TooLarge);
        row("tables", "<html>" + QByteArray("<table><tr><td>").repeated(12), Fault::NotAPage, Fault::TooLarge);
        row("deep enough", "<html>" + QByteArray("<i>x").repeated(900) + QByteArray("<p>x<li>x").repeated(900),
            Fault::NotAPage, Fault::None);
        row("text", "<html>" + QByteArray("word ").repeated(2 << 20), Fault::NotAPage, Fault::TooLarge);
        row("word", "<html>" + QByteArray(200 << 10, 'x'), Fault::NotAPage, Fault::TooLarge);
        const QByteArray huge = "<img src='data:image/png;base64," + hugePng().toBase64() + "'>";
        row("pixels", "<html>" + huge, Fault::NotAPage, Fault::None);
        row("more pixels", "<html>" + huge.repeated(10), Fault::NotAPage, Fault::None); // some of them
        row("more own pixels", QByteArray(whole).replace("caption", huge.repeated(10)), Fault::TooLarge,
            Fault::TooLarge);
    }

    void badFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(PageFault, opened);
        put("page.html", content);
        QTest::keyClicks(editor(), "before");
        PageContent page;
        const auto draft = readPage(path("page.html"), PageOrigin::Client, &page);
        QTEST(draft, "asDraft");
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
        put("red.png", png(noise(9, 9)));
        put("style.css", "p { font-size: 40pt }");
        const QByteArray base = QUrl::fromLocalFile(path("")).toEncoded() + '/';
        put("page.html", "<html><head><base href='" + base + "'><link rel=stylesheet href='" + base +
                             "style.css'></head>"
                             "<body background='" +
                             base + "red.png'><table><tr><td background='" + base +
                             "red.png'></table><p>x<img src='" + base +
                             "red.png'><img src=red.png>"
                             "<img src='http://127.0.0.1:1/a.png'><img src='picture:7'><img width=5000 src='" +
                             address(png(noise(9, 9))).toLatin1() + "'>");
        QVERIFY(m_window->findChild<FileActions*>()->openFile(path("page.html")));
        const QVector<TextRun> runs = textRuns(*editor()->document());
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs[0].format.fontPointSize(), 20.0);
        QVERIFY(runs[1].format.toImageFormat().name().startsWith("pasted_image_"));
        QCOMPARE(runs[1].end - runs[1].begin, 1);
        QCOMPARE(editor()->horizontalScrollBar()->maximum(), 0);
        QVERIFY(!contentOf(*editor()).html.contains("file:"));
    }

    void savingFails()
    {
        QTest::keyClicks(editor(), "page");
        auto* files = m_window->findChild<FileActions*>();
        QVERIFY(files->saveFile(path("kept.html")));
        const QByteArray kept = content("kept.html");
        const DiskFull full;
        for (int i = 0; i < 2; ++i) {
            if (i == 0)
                editor()->setPlainText(QString(5000, 'x')); // fails with the last bytes, the picture with the first
            else
                m_window->slotsInsertImage(noise(500, 500));
            QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
            QVERIFY(!files->saveFile(path("kept.html")));
            QCOMPARE(content("kept.html"), kept);
        }
        QCOMPARE(QDir(m_folder.path()).entryList({"kept*"}), QStringList("kept.html"));
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
};

QTEST_MAIN(PageFileTest)
#include "tst_page_file.moc"
