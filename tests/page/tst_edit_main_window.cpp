#include "app/globals/model.h"
#include "app/globals/sheet_model.h"
#include "content/page/edit_main_window.h"
#include "content/page/editor_actions.h"
#include "content/page/picture_insertion.h"
#include "content/page/sheet_pictures.h"
#include "content/page/text_runs.h"
#include "tests/system.h"

#include <QBuffer>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QFontDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <memory>

class EditMainWindowTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<EditMainWindow> m_window;
    QTemporaryDir m_folder;

    QTextEdit* editor() const { return m_window->editor(); }
    QComboBox* sizeBox() const { return m_window->findChild<QComboBox*>(); }
    QAction* action(EditorActions::Id id) const { return m_window->textActions()->action(id); }
    QVector<TextRun> runs() const { return textRuns(*editor()->document()); }
    QUrl file(const QString& name) const { return QUrl::fromLocalFile(m_folder.filePath(name)); }

    static QImage filled(int width, int height, QColor colour = Qt::black)
    {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(colour);
        return image;
    }

    static QString dataAddress(const QImage& image)
    {
        QBuffer png;
        image.save(&png, "PNG");
        return "data:image/png;base64," + png.data().toBase64().toPercentEncoding();
    }

    QImage picture(int run) const
    {
        const QUrl name(runs().value(run).format.toImageFormat().name());
        return editor()->document()->resource(QTextDocument::ImageResource, name).value<QImage>();
    }

    /// The page in short. Text is followed by its size, a picture is its colour and its width when it does not fill
    /// the page; B, I, U and ! for colours of its own follow. The keys of what is checked come last.
    QString page() const
    {
        QString result;
        const auto mark = [&result](bool on, const QString& text) { result += on ? text : QString(); };
        for (int i = 0; i < runs().size(); ++i) {
            const QTextCharFormat format = runs()[i].format;
            const QTextCursor cursor = runs()[i].select(*editor()->document());
            const bool fills = picture(i).width() == PictureRoom::of(*editor()).width;
            mark(format.isImageFormat(), picture(i).pixelColor(0, 0).name());
            mark(format.isImageFormat() && !fills, QStringLiteral("x%1").arg(picture(i).width()));
            mark(!format.isImageFormat(), cursor.selectedText() + QString::number(format.font().pointSizeF()));
            mark(!format.isImageFormat() && format.hasProperty(QTextFormat::FontPixelSize), "px");
            mark(format.font().bold(), "B");
            mark(format.font().italic(), "I");
            mark(format.font().underline(), "U");
            mark(format.hasProperty(QTextFormat::ForegroundBrush), "!");
            mark(cursor.blockFormat().hasProperty(QTextFormat::BackgroundBrush), "!");
            mark(true, " ");
        }
        mark(editor()->horizontalScrollBar()->maximum() > 0, "too wide ");
        for (const QAction* each : m_window->actions())
            mark(each->isChecked(), each->shortcut().toString().right(1));
        return result;
    }

    static QWidget* keyboard()
    {
        const QWidget* popup = QApplication::activePopupWidget();
        return popup ? popup->focusWidget() : QApplication::focusWidget();
    }

    /// Steps: 'text is typed, @key clicks the button that names the key, + inserts a picture, = clicks the box of the
    /// font size and . the page, others are keys.
    void perform(const QString& steps)
    {
        for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (step.startsWith("'"))
                QTest::keyClicks(keyboard(), step.mid(1));
            else if (step == "+")
                m_window->slotsInsertImage(filled(9, 9));
            else if (step == "=")
                QTest::mouseClick(sizeBox()->lineEdit(), Qt::LeftButton);
            else if (step == ".")
                QTest::mouseClick(editor()->viewport(), Qt::LeftButton);
            else if (!step.startsWith("@"))
                QTest::keySequence(keyboard(), QKeySequence(step));
            QCoreApplication::processEvents(); // a click selects what is in the box only then
            for (auto* button : m_window->findChildren<QToolButton*>()) {
                if (button->toolTip().endsWith(QStringLiteral(" (%1)").arg(step.mid(1))) && step.startsWith("@"))
                    QTest::mouseClick(button, Qt::LeftButton);
            }
        }
    }

    /// The paragraphs of the page, a picture as #, an item of a list behind -.
    QString paragraphs() const
    {
        QStringList result;
        for (QTextBlock block = editor()->document()->begin(); block.isValid(); block = block.next())
            result += (block.textList() ? "-" : "") + block.text().replace(QChar::ObjectReplacementCharacter, '#');
        return result.join('|');
    }

    qreal height() const
    {
        return editor()->document()->size().height() - 2 * editor()->document()->documentMargin();
    }

private slots:
    void initTestCase()
    {
        // The test library sets another resolution than the screen's, which would change the size of pictures.
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
        QVERIFY(filled(40, 10, Qt::red).save(file("红 50%.png").toLocalFile()));
        QVERIFY(filled(2000, 100, Qt::blue).save(file("wide.bmp").toLocalFile()));
        QVERIFY(filled(30, 33000).save(file("tall.png").toLocalFile()));
        QFile broken(file("broken.png").toLocalFile());
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("\x89PNG no more") > 0);
    }

    void init()
    {
        g_modelIndex = 0;
        sheetModel().choose("Quillbox_K2");
        m_window = std::make_unique<EditMainWindow>();
        m_window->initFont();
        m_window->resize(600, 400);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        editor()->setFocus();
    }

    void printTypeAndWidth()
    {
        EditMainWindow hidden; // prints the same although it was never shown
        hidden.resize(m_window->size());
        hidden.initFont();
        QSignalSpy spy(m_window.get(), &EditMainWindow::signDoPrint);
        QSignalSpy hiddenSpy(&hidden, &EditMainWindow::signDoPrint);
        for (const bool withPicture : {false, true}) {
            const QString html = withPicture ? "一行 <img src='data:,P1 1 1 1'>" : "一行 &lt;img src='typed'&gt;";
            editor()->setHtml(html);
            hidden.editor()->setHtml(html);
            for (g_modelIndex = 0; g_modelIndex < 2; ++g_modelIndex) {
                hidden.printPage();
                perform("Ctrl+P");
                QCOMPARE(spy.size(), hiddenSpy.size());
                QCOMPARE(spy.last()[0].value<QImage>().width(), g_modelIndex == 0 ? 384 : 576);
                QCOMPARE(spy.last()[1].toInt(), withPicture ? 0 : 1);
                QCOMPARE(hiddenSpy.last()[0].value<QImage>(), spy.last()[0].value<QImage>());
            }
        }
    }

    void insertedPicture()
    {
        m_window->slotsInsertImage(QImage());
        m_window->slotsInsertPixmap(QPixmap());
        m_window->slotsInsertImage(filled(6000, 1)); // nothing is left of its height
        m_window->slotsInsertImage(filled(1, 2000)); // more than a million rows
        QVERIFY(runs().isEmpty() && !editor()->document()->isUndoAvailable());

        const int width = editor()->viewport()->width() - editor()->verticalScrollBar()->widthMM();
        for (QImage source : {filled(1200, 600), filled(57, 20)}) {
            source.setDevicePixelRatio(2); // from a dense screen
            editor()->clear();
            m_window->slotsInsertPixmap(QPixmap::fromImage(source));
            QCOMPARE(picture(0).size(), source.scaledToWidth(width).size());
            QCOMPARE(picture(0).devicePixelRatio(), 1.0);
        }
    }

    /// What filled the sheet fills the other one, made from what was put in; what was undone before as well.
    void pictureOnBothSheets()
    {
        QImage source = filled(1200, 600);
        for (int x = 0; x < source.width(); ++x) {
            for (int y = 0; y < source.height(); ++y)
                source.setPixel(x, y, 0xff000000u | static_cast<uint>(x * 7919 + y * 104729) % 0xffffffu);
        }
        const QImage pasted = source.copy(0, 0, 500, 20);
        perform("'above Return");
        auto* rich = new QMimeData;
        rich->setHtml("<img src='" + dataAddress(pasted) + "'>");
        QApplication::clipboard()->setMimeData(rich);
        perform("Ctrl+V Return");
        m_window->slotsInsertImage(source);
        const int steps = editor()->document()->availableUndoSteps();
        for (const QString model : {"Quillbox_K1", "Quillbox_K2", "Quillbox_K3"}) {
            sheetModel().choose(model);
            const int sheet = model == "Quillbox_K1" ? 384 : 576;
            QCOMPARE(editor()->viewport()->width(), sheet);
            QCOMPARE(editor()->document()->size().width(), sheet);
            QCOMPARE(picture(1).convertToFormat(QImage::Format_RGB32),
                     (sheet == 384 ? pasted.scaledToWidth(PictureRoom::of(*editor()).width) : pasted)
                         .convertToFormat(QImage::Format_RGB32));
            QCOMPARE(picture(2), source.scaledToWidth(PictureRoom::of(*editor()).width));
            QCOMPARE(editor()->document()->availableUndoSteps(), steps);
        }
        perform("Ctrl+Z");
        sheetModel().choose("Quillbox_K1");
        perform("Ctrl+Y");
        QCOMPARE(picture(2), source.scaledToWidth(PictureRoom::of(*editor()).width));
        perform("Ctrl+End Left Shift+Left Ctrl+C Ctrl+End Ctrl+V");
        sheetModel().choose("Quillbox_K2");
        QCOMPARE(picture(3).width(), PictureRoom::of(*editor()).width); // the copy of one that fills
    }

    void picturesStandAlone_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("steps"); // the last one is undone and done again
        QTest::addColumn<QString>("expected");
        const auto row = [](const QString& html, const QString& steps, const QString& expected) {
            QTest::newRow(qPrintable(html + steps)) << html << steps << expected;
        };
        row("", "+", "#|");
        row("", "+ + +", "#|#|#|");
        row("", "'ab +", "ab|#|");
        row("", "'ab Home +", "#|ab");
        row("", "'abcd Left Left +", "ab|#|cd");
        row("", "'abcd Left Shift+Left +", "ab|#|d");
        row("", "+ Up 'a", "a|#|"); // text in front of a picture
        row("", "+ Up 'a 'b", "ab|#|");
        row("", "'ab + Backspace", "ab|#");
        row("<ul><li>one</li><li>two</li></ul>", "Ctrl+End +", "-one|-two|#|-");
        row("<ul><li>one</li><li>two</li></ul>", "Ctrl+End Left +", "-one|-tw|#|-o");
        row("<p style='margin-left:50px; line-height:10px'>ab</p>", "Ctrl+End +", "ab|#|");
        row("<img src='data:,P1 1 1 1'> ab", "Home +", "#|# ab"); // a small one stays in its line
        row("ab<img width=560 src='data:,P1 1 1 1'>cd", "Ctrl+End 'e", "ab|#|cde");
        row("<table><tr><td>ab</td><td>cd</td></tr></table>", "Right Right +", "|a|#|b|cd|");
    }

    /// The page is as high as its parts, which a picture in a line of text would tear apart.
    void picturesStandAlone()
    {
        QFETCH(QString, html);
        QFETCH(QString, steps);
        perform("'x");
        const qreal lineHeight = height();
        editor()->clear();
        m_window->slotsInsertImage(filled(9, 9));
        const qreal pictureHeight = height() - lineHeight;
        editor()->setHtml(html);
        perform(steps.section(' ', 0, -2));
        const QString before = paragraphs();
        perform(steps.section(' ', -1));
        QTEST(paragraphs(), "expected");
        if (html.isEmpty()) {
            const int pictures = paragraphs().count('#');
            QCOMPARE(height(), pictures * pictureHeight + (paragraphs().split('|').size() - pictures) * lineHeight);
        }
        perform("Ctrl+Z");
        QCOMPARE(paragraphs(), before);
        perform("Ctrl+Y");
        QTEST(paragraphs(), "expected");
    }

    void picturesOfOneSecond()
    {
        for (const auto& [second, colour] : {std::pair(1000, Qt::red), {1000, Qt::blue}, {1001, Qt::green}}) {
            QVERIFY(insertPicture(*editor(), filled(100, colour == Qt::blue ? 50 : 10, colour), second));
            perform("'x Return");
        }
        QCOMPARE(page(), QStringLiteral("#0000ff x20 #0000ff x20 #00ff00 x20 L"));
        QVERIFY(editor()->document()->size().height() >
                PictureRoom::of(*editor()).width * 1.1); // both have the later's height
    }

    void awkwardPictureNames()
    {
        const ushort codes[] = {0, '\n', ' ', '#', '%', '/', ':', '?', '&', '<', '"', 0xd800, 0xdfff, 0xffff};
        for (const ushort code : codes) {
            editor()->clear();
            const QColor colour = QColor::fromHsv(code % 359, 200, 200);
            QCOMPARE(pictureName(65536LL * 26000 + code), QStringLiteral("capture_image_") + QChar(code));
            QVERIFY(insertPicture(*editor(), filled(10, 2, colour), 65536LL * 26000 + code));
            const QImage screen = editor()->viewport()->grab().toImage();
            QCOMPARE(screen.pixelColor(screen.width() / 2, 20).name(), colour.name());
            perform("'tail Ctrl+Home Shift+Right Ctrl+X Ctrl+V Ctrl+A Ctrl+X Ctrl+V");
            QCOMPARE(page(), colour.name() + QStringLiteral(" tail20 L"));
        }
    }

    void pasteAndDrop_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<bool>("picture");
        QTest::addColumn<QList<QUrl>>("files");
        QTest::addColumn<QString>("expected");
        const QList<QUrl> none;
        const QList<QUrl> files{file("红 50%.png"), file("broken.png"), file("wide.bmp"), file("tall.png")};
        const QString link = "<img src='http://a.org/a.png'>";
        const QString local = "<img src=" + files[0].toEncoded() + "><img src=" + files[0].path().toUtf8() + ">";
        const QString behind = "<p style='background-image:url(" + files[2].toString() + ")'>words</p>";
        const QString wide = dataAddress(filled(2000, 100, Qt::blue));
        const QString tall = "<img src=" + dataAddress(filled(30, 33000));
        const QString rich = "<p style='background:#222; color:#eee; font-size:40px'>light <b>bold</b>" + link +
                             local + "<img width=2000 src=" + wide +
                             "><img src=" + dataAddress(filled(40, 10, Qt::red)) + ">" + tall + ">" + tall +
                             " width=2000>" + tall + " width=90 height=9>" + "<img height=10 src=" + wide + ">";
        QTest::newRow("picture") << QString() << true << none << "#000000 L";
        QTest::newRow("picture of a browser") << link << true << none << "#000000 L";
        QTest::newRow("picture of words") << behind << true << none << "words20 L";
        QTest::newRow("rich text of old") << "<qt>" + behind << false << none << "plain20 L";
        QTest::newRow("rich text") << rich << false << none
                                   << "light 28.8 bold28.8B #0000ff #ff0000x40 #000000x90 #0000ffx200 L";
        QString sizes;
        for (const char* size : {"1", "2", "4", "5", "6", "7", "99", "-9"})
            sizes += QString("<font size=%1>a</font><b>b</b>").arg(size);
        sizes += "<i style='font-size:999pt'>a</i><u style='font-size:0.1pt'>b</u>";
        QTest::newRow("sizes")
            << sizes << false << none
            << "a14 b20B a16 b20B a24 b20B a30 b20B a40 b20B a48 b20B a48 b20B a14 b20B a512I b1U UL";
        QTest::newRow("files") << QString() << false << files << "#ff0000 #0000ff L";
    }

    void pasteAndDrop()
    {
        QFETCH(bool, picture);
        QFETCH(QString, html);
        QFETCH(QList<QUrl>, files);
        auto* source = new QMimeData;
        if (!files.isEmpty())
            source->setUrls(files);
        if (html.startsWith("<qt>")) {
            source->setData("application/x-qrichtext", html.toUtf8());
            source->setText("plain");
        } else if (!html.isEmpty()) {
            source->setHtml(html);
        }
        if (picture)
            source->setImageData(filled(40, 10));
        QApplication::clipboard()->setMimeData(source);
        const OpenWatch watch(m_folder.path());
        QVERIFY(watch.canTell() || kOnWindows);
        perform("Ctrl+V");
        QTEST(page(), "expected");
        QVERIFY(!watch.canTell() || watch.hasSeen() != files.isEmpty()); // whatever the text names
        perform("Ctrl+Z");                                               // what came together goes together
        QCOMPARE(page(), QStringLiteral("L"));

        QDragEnterEvent enter({99, 99}, Qt::CopyAction, source, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(editor()->viewport(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPoint(99, 99), Qt::CopyAction, source, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(editor()->viewport(), &drop);
        QTEST(page(), "expected");
    }

    /// For other programs: the words, the text with what it shows, and a picture that is copied alone.
    void goesToTheClipboard()
    {
        perform("'ab + 'cd Ctrl+A Ctrl+C");
        const QClipboard& clipboard = *QApplication::clipboard();
        QCOMPARE(clipboard.text(), QString("ab\n\ncd"));
        QVERIFY(clipboard.mimeData()->html().contains(dataAddress(picture(1)).section(',', 0, 0)));
        QVERIFY(!clipboard.mimeData()->hasImage());
        perform("Ctrl+Home Down Shift+Right Ctrl+C");
        QCOMPARE(clipboard.image().size(), picture(1).size());
        QVERIFY(clipboard.text().isEmpty());
        perform("Ctrl+Home Shift+Right Ctrl+C");
        QVERIFY(clipboard.text() == "a" && !clipboard.mimeData()->hasImage());
    }

    void keysAndButtons_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected");
        const auto row = [](const QString& html, const QString& steps, const QString& expected) {
            QTest::newRow(qPrintable(steps)) << html << steps << expected;
        };
        for (const QString key : {"B", "I", "U"}) {
            const QString mixed = "Ctrl+" + key + " 'ab @Ctrl+" + key + " 'cd Ctrl+" + key + " 'ef Ctrl+A ";
            row("", mixed, "ab20" + key + " cd20 ef20" + key + " L");
            row("", mixed + "@Ctrl+" + key, "abcdef20" + key + " " + key + "L");
            row("", mixed + "@Ctrl+" + key + " Ctrl+" + key, "abcdef20 L");
        }
        const QString twoLines = "Ctrl+E 'one Return @Ctrl+R 'two ";
        row("", twoLines + "Up", "one20 two20 E");
        row("", twoLines + "Ctrl+A", "one20 two20 ");
        row("", twoLines + "Ctrl+A Ctrl+R @Ctrl+R", "one20 two20 R"); // choosing it again takes nothing away
        row("", twoLines + "Ctrl+A Ctrl+L", "one20 two20 L");
        const QString sizes = "<span style='font-size:96pt'>ab</span><i style='font-size:40px'>cd</i>"
                              "<b style='font-size:12pt'>ef</b><i style='font-size:6pt'>gh</i>";
        row(sizes, "End + Return Ctrl+A Ctrl+] Ctrl+End 'z", "ab96 cd32I ef14B gh7I #000000I z7I IL");
        row(sizes, "Ctrl+A @Ctrl+[", "ab72 cd28I ef11B gh6I L"); // 40 pixels are some 29 points
        row(sizes, "Ctrl+A Ctrl+] Ctrl+Z", "ab96 cd-1pxI ef12B gh6I L");
        row("", "Ctrl+] 'ab", "ab22 L");
        row("", "Ctrl+B 'ab + 'cd", "ab20B #000000B cd20B BL");
        row("", "Ctrl+B 'ab Ctrl+B + Ctrl+A", "ab20B #000000 BL");                // pictures have no weight
        row("<img src='data:,P1 1 1 1'>", "Ctrl+A Ctrl+X Ctrl+V", "#000000x1 L"); // keeps its size
        row("", "'ab Ctrl+A Ctrl+C End Return Ctrl+V Up 'x", "abx20 ab20 L");     // up from where the paste ended
        row("", "'abc Ctrl+P @Ctrl+Z @Ctrl+Z", "L"); // a print is nothing to be undone, and forgets nothing
        row("", "'a @Ctrl+Z @Ctrl+Y @Ctrl+Shift+Z 'b @Ctrl+Z Ctrl+Y", "ab20 L"); // the button has either key

        // What the box of the size shows stands behind "=".
        const QString two = "<span style='font-size:20pt'>ab</span><span style='font-size:40pt'>cd</span>";
        row(two, "Right", "ab20 cd40 L=20");
        row(two, "Ctrl+A", "ab20 cd40 L="); // mixed
        row(two, "Ctrl+A = '10.54 Return", "abcd10.5 L=10.5");
        row(two, "Ctrl+A = '33 Enter Ctrl+Z", "ab20 cd40 L=");
        row(two, "End = '33 Return 'x", "ab20 cd40 x33 L=33");
        row(two, "End = '12 Ctrl+Z Up Return 'x", "ab20 cd40 x48 L=48"); // undoes what was typed, not the page
        row(two, "End = '22 Up Up Down Return 'x", "ab20 cd40 x24 L=24");
        row(two, "End = '12 Up '8 Return 'x", "ab20 cd40 x8 L=8"); // what is typed next replaces the step
        row(two, "End = F4 Home Return 'x", "ab20 cd40 x6 L=6");   // of the list
        row(two, "End = '24 Esc 'x", "ab20 cdx40 L=40");
        row(two, "End = '24 . End 'x", "ab20 cdx40 L=40");
        row(two, "Ctrl+A = Return 'x", "x40 L=40");
        for (const QString wrong : {"0", "-8", "5.9", "200.1", "10000", "nan", "1e2x", "abc"})
            row(two, "End = '" + wrong + " Return", "ab20 cd40 L=40");
    }

    void keysAndButtons()
    {
        QFETCH(QString, html);
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        if (!html.isEmpty())
            editor()->setHtml(html);
        perform(steps);
        QCOMPARE(page() + (expected.contains("=") ? "=" + sizeBox()->currentText() : QString()), expected);
    }

    /// It turns the page, also beside it, and no size that the pointer passes over.
    void wheel()
    {
        editor()->setPlainText(QString(99, '\n'));
        for (QWidget* under : {static_cast<QWidget*>(sizeBox()), editor()->parentWidget()}) {
            QWheelEvent turn({9, 9}, under->mapToGlobal({9, 9}), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(under, &turn);
            QCOMPARE(editor()->verticalScrollBar()->value() > 0, under != sizeBox());
        }
        QCOMPARE(sizeBox()->currentText(), QString("20"));
        QCOMPARE(sizeBox()->maxVisibleItems(), sizeBox()->count());
    }

    void fontDialog()
    {
        perform("'abc Ctrl+A");
        const auto answer = [this](bool accept, int points) {
            qreal offered = 0;
            QTimer::singleShot(0, this, [&] {
                if (auto* dialog = qobject_cast<QFontDialog*>(QApplication::activeModalWidget())) {
                    offered = dialog->currentFont().pointSizeF();
                    QFont font(QStringLiteral("DejaVu Sans"), points);
                    font.setStyleName(QStringLiteral("Book"));
                    dialog->setCurrentFont(font);
                    accept ? dialog->accept() : dialog->reject();
                }
            });
            m_window->fontAction()->trigger();
            return offered;
        };
        QCOMPARE(answer(true, 33), 20.0);
        action(EditorActions::Bold)->trigger(); // no style name of the dialog's stands in the way
        QCOMPARE(answer(false, 44), 33.0);
        QCOMPARE(page(), QStringLiteral("abc33B BL"));
        QVERIFY(runs()[0].format.font().styleName().isEmpty());
    }

    void contextMenu()
    {
        QApplication::clipboard()->clear();
        std::unique_ptr<QMenu> menu(m_window->createContextMenu());
        QStringList keys;
        for (const QAction* each : m_window->actions())
            keys += QKeySequence::listToString(each->shortcuts()).split("; ", Qt::SkipEmptyParts);
        QCOMPARE(keys.removeDuplicates(), 0); // of two actions with one key neither would work
        for (QAction* each :
             {m_window->fontAction(), m_window->pictureAction(), m_window->captureAction(), m_window->printAction()})
            QVERIFY(menu->actions().contains(each));
        const auto all = menu->actions();
        QCOMPARE(std::count_if(all.begin(), all.end(), [](QAction* each) { return each->isSeparator(); }), 7);
        for (const auto id : {EditorActions::Undo, EditorActions::Copy, EditorActions::Paste})
            QVERIFY(menu->actions().contains(action(id)) && !action(id)->isEnabled());
        menu.reset();
        QVERIFY(action(EditorActions::Paste)->isEnabled()); // for what comes after the menu
        perform("'ab");
        using Id = EditorActions;
        for (const auto id : {Id::SelectAll, Id::Copy, Id::Paste, Id::Paste, Id::SelectAll, Id::Cut, Id::Paste})
            action(id)->trigger();
        QCOMPARE(page(), QStringLiteral("abab20 L"));
        QContextMenuEvent click(QContextMenuEvent::Mouse, {9, 9});
        QApplication::sendEvent(editor()->viewport(), &click);
        QVERIFY(QApplication::activePopupWidget()->inherits("QMenu") && QApplication::activePopupWidget()->close());
    }
};

QTEST_MAIN(EditMainWindowTest)
#include "tst_edit_main_window.moc"
