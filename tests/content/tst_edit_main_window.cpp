#include "app/globals/model.h"
#include "content/edit_main_window.h"
#include "content/editor_actions.h"
#include "content/pasted_page.h"
#include "content/picture_insertion.h"
#include "content/text_runs.h"

#include <QAction>
#include <QBuffer>
#include <QClipboard>
#include <QDropEvent>
#include <QFontDialog>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

namespace {

QImage filled(int width, int height, QColor colour = Qt::black)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

QStringList pictureNames(const QTextDocument& document)
{
    QStringList names;
    for (const TextRun& run : textRuns(document)) {
        for (int i = run.begin; run.format.isImageFormat() && i < run.end; ++i)
            names << run.format.toImageFormat().name();
    }
    return names;
}

QImage resource(const QTextDocument& document, const QString& name)
{
    return document.resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
}

QString dataAddress(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

} // namespace

class EditMainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void metaObjectOrder();
    void printTypeAndWidth_data();
    void printTypeAndWidth();
    void unshownWindowPrints();
    void insertedPicture_data();
    void insertedPicture();
    void emptyPicturesAreRefused();
    void picturesOfOneSecond();
    void everyPictureNameIsFound();
    void textBehindPictureKeepsItsFormat();
    void pictureOnlyClipboard_data();
    void pictureOnlyClipboard();
    void pastedFiles();
    void droppedFile();
    void pastedHtml();
    void cutAndPasteKeepsPictures();
    void formats_data();
    void formats();
    void formatsFollowTheCursor();
    void alignments();
    void sizeSteps_data();
    void sizeSteps();
    void sizeStepsOfMixedSelection();
    void undoAndRedo();
    void fontDialog();
    void contextMenu();

private:
    QTextEdit* editor() const { return m_window->editor(); }
    QAction* action(EditorActions::Id id) const { return m_window->textActions()->action(id); }
    void click(EditorActions::Id id);
    void select(int begin, int end);
    void paste(QMimeData* source);

    QScopedPointer<EditMainWindow> m_window;
    QTemporaryDir m_folder;
};

// Qt enlarges pictures by the screen's resolution over the application's; the test library sets 96 for the latter,
// the offscreen platform has 100.
void EditMainWindowTest::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
}

void EditMainWindowTest::init()
{
    g_modelIndex = 0;
    m_window.reset(new EditMainWindow);
    m_window->resize(600, 380);
    m_window->initFont();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    editor()->setFocus();
}

void EditMainWindowTest::cleanup()
{
    m_window.reset();
    g_modelIndex = 0;
}

void EditMainWindowTest::click(EditorActions::Id id)
{
    for (auto* button : m_window->findChildren<QToolButton*>()) {
        if (button->defaultAction() == action(id))
            return QTest::mouseClick(button, Qt::LeftButton);
    }
    QFAIL("no button for the action");
}

void EditMainWindowTest::select(int begin, int end)
{
    QTextCursor cursor = editor()->textCursor();
    cursor.setPosition(begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    editor()->setTextCursor(cursor);
}

void EditMainWindowTest::paste(QMimeData* source)
{
    QApplication::clipboard()->setMimeData(source);
    QTest::keySequence(editor(), QKeySequence::Paste);
}

void EditMainWindowTest::metaObjectOrder()
{
    const QMetaObject& meta = EditMainWindow::staticMetaObject;
    const int first = meta.methodOffset();
    QCOMPARE(meta.method(first).methodSignature(), QByteArray("signDoPrint(QImage,int)"));
    QCOMPARE(meta.method(first + 1).methodSignature(), QByteArray("slotsInsertPixmap(QPixmap)"));
    QCOMPARE(meta.method(first + 2).methodSignature(), QByteArray("slotsInsertImage(QImage)"));
}

void EditMainWindowTest::printTypeAndWidth_data()
{
    QTest::addColumn<bool>("picture");
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("dots");
    QTest::newRow("text, first model") << false << 0 << 1 << 384;
    QTest::newRow("text, second model") << false << 1 << 1 << 576;
    QTest::newRow("picture, first model") << true << 0 << 0 << 384;
    QTest::newRow("picture, second model") << true << 1 << 0 << 576;
    QTest::newRow("text, unknown model") << false << 7 << 1 << 384;
}

void EditMainWindowTest::printTypeAndWidth()
{
    QFETCH(bool, picture);
    QFETCH(int, model);
    g_modelIndex = model;
    editor()->insertPlainText(QStringLiteral("<img src=\"typed\">"));
    if (picture)
        m_window->slotsInsertImage(filled(30, 20));
    QSignalSpy spy(m_window.data(), &EditMainWindow::signDoPrint);
    QTest::keySequence(editor(), QKeySequence::Print);
    QCOMPARE(spy.count(), 1);
    QTEST(spy[0][0].value<QImage>().width(), "dots");
    QTEST(spy[0][1].toInt(), "type");
}

void EditMainWindowTest::unshownWindowPrints()
{
    m_window->editor()->setPlainText(QStringLiteral("一行 line"));
    EditMainWindow hidden;
    hidden.resize(m_window->size());
    hidden.initFont();
    hidden.editor()->setPlainText(QStringLiteral("一行 line"));
    QSignalSpy shownSpy(m_window.data(), &EditMainWindow::signDoPrint);
    QSignalSpy hiddenSpy(&hidden, &EditMainWindow::signDoPrint);
    m_window->printPage();
    hidden.printPage();
    const QImage page = hiddenSpy[0][0].value<QImage>();
    QCOMPARE(page.width(), 384);
    QCOMPARE(page.height(), shownSpy[0][0].value<QImage>().height());
    QCOMPARE(hidden.size(), m_window->size());
}

void EditMainWindowTest::insertedPicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("wider") << QSize(1200, 600) << 1.0;
    QTest::newRow("narrower") << QSize(57, 20) << 1.0;
    QTest::newRow("from a dense screen") << QSize(300, 100) << 2.0;
}

void EditMainWindowTest::insertedPicture()
{
    QFETCH(QSize, size);
    QFETCH(qreal, ratio);
    QImage source = filled(size.width(), size.height());
    source.setDevicePixelRatio(ratio);
    const int width = editor()->viewport()->width() - editor()->verticalScrollBar()->widthMM();
    for (const bool asPixmap : {false, true}) {
        editor()->clear();
        if (asPixmap)
            m_window->slotsInsertPixmap(QPixmap::fromImage(source));
        else
            m_window->slotsInsertImage(source);
        const QStringList names = pictureNames(*editor()->document());
        QCOMPARE(names.size(), 1);
        QVERIFY(names[0].startsWith(QLatin1String("capture_image_")) && names[0].size() == 15);
        const QImage inserted = resource(*editor()->document(), names[0]);
        QCOMPARE(inserted.width(), width);
        QCOMPARE(inserted.height(), source.scaledToWidth(width).height());
        QCOMPARE(inserted.devicePixelRatio(), 1.0);
    }
    QCOMPARE(editor()->horizontalScrollBar()->maximum(), 0); // it fits the page
}

void EditMainWindowTest::emptyPicturesAreRefused()
{
    m_window->slotsInsertImage(QImage());
    m_window->slotsInsertPixmap(QPixmap());
    m_window->slotsInsertImage(filled(6000, 1)); // nothing is left of its height
    QCOMPARE(editor()->toPlainText(), QString());
    QVERIFY(!editor()->document()->isUndoAvailable());
}

void EditMainWindowTest::picturesOfOneSecond()
{
    QVERIFY(insertPicture(*editor(), filled(100, 10, Qt::red), 1000));
    editor()->insertPlainText(QStringLiteral("\n"));
    QVERIFY(insertPicture(*editor(), filled(100, 50, Qt::blue), 1000));
    editor()->insertPlainText(QStringLiteral("\n"));
    QVERIFY(insertPicture(*editor(), filled(100, 10, Qt::green), 1001));
    const QStringList names = pictureNames(*editor()->document());
    QCOMPARE(names.size(), 3);
    QCOMPARE(names[1], names[0]);
    QVERIFY(names[2] != names[0]);
    QCOMPARE(resource(*editor()->document(), names[0]).pixelColor(0, 0), QColor(Qt::blue));
    // Both show the second picture at its full height.
    const int width = pictureWidth(*editor());
    QVERIFY(editor()->document()->size().height() > width * 1.1);
}

void EditMainWindowTest::everyPictureNameIsFound()
{
    QTextDocument document;
    document.setDocumentMargin(0);
    QTextCursor cursor(&document);
    const QVector<ushort> painted = {0,   9,   10,  13,  32,  '#',    '%',    '/',
                                     ':', '?', '&', '<', '"', 0xd800, 0xdfff, 0xffff};
    for (int code = 0; code < 65536; ++code) {
        const QString name = pictureName(65536LL * 26000 + code);
        QCOMPARE(name, QStringLiteral("capture_image_") + QChar(code));
        document.addResource(QTextDocument::ImageResource, QUrl(name), code);
    }
    for (int code = 0; code < 65536; ++code)
        QCOMPARE(document.resource(QTextDocument::ImageResource, QUrl(pictureName(code))).toInt(), code);

    for (const ushort code : painted) {
        editor()->clear();
        const QColor colour = QColor::fromHsv(code % 359, 200, 200);
        QVERIFY(insertPicture(*editor(), filled(10, 2, colour), 65536LL * 26000 + code));
        const QImage screen = editor()->viewport()->grab().toImage();
        QVERIFY2(screen.pixelColor(screen.width() / 2, 20) == colour.rgb(), qPrintable(QString::number(code)));
        QVERIFY(editor()->toHtml().contains(QLatin1String("<img src")));
    }
}

void EditMainWindowTest::textBehindPictureKeepsItsFormat()
{
    action(EditorActions::Bold)->trigger();
    QTest::keyClicks(editor(), QStringLiteral("ab"));
    m_window->slotsInsertImage(filled(10, 2));
    QTest::keyClicks(editor(), QStringLiteral("cd"));
    const QTextCharFormat format = editor()->textCursor().charFormat();
    QCOMPARE(format.fontWeight(), int(QFont::Bold));
    QCOMPARE(format.fontPointSize(), 20.0);
}

void EditMainWindowTest::pictureOnlyClipboard_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("html");
    QTest::addColumn<int>("pictures");
    QTest::addColumn<QString>("words");
    QTest::newRow("picture alone") << QString() << QString() << 1 << QString();
    QTest::newRow("from a browser") << QString() << "<img src='https://example.org/a.png'>" << 1 << QString();
    QTest::newRow("picture of formatted words") << QString() << "<p>words</p>" << 0 << "words";
    QTest::newRow("picture of words") << "words"
                                      << "<p>words</p>" << 0 << "words";
}

void EditMainWindowTest::pictureOnlyClipboard()
{
    QFETCH(QString, text);
    QFETCH(QString, html);
    QFETCH(QString, words);
    auto* source = new QMimeData;
    source->setImageData(filled(40, 10));
    if (!text.isEmpty())
        source->setText(text);
    if (!html.isEmpty())
        source->setHtml(html);
    paste(source);
    QTEST(int(pictureNames(*editor()->document()).size()), "pictures");
    QCOMPARE(editor()->toPlainText().remove(QChar::ObjectReplacementCharacter), words);
}

void EditMainWindowTest::pastedFiles()
{
    const QString red = m_folder.filePath(QStringLiteral("红 50%.png"));
    const QString blue = m_folder.filePath(QStringLiteral("blue.bmp"));
    const QString broken = m_folder.filePath(QStringLiteral("broken.png"));
    QVERIFY(filled(40, 10, Qt::red).save(red));
    QVERIFY(filled(40, 10, Qt::blue).save(blue));
    QFile file(broken);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\x89PNG no more") > 0);
    file.close();

    auto* source = new QMimeData;
    source->setUrls({QUrl::fromLocalFile(red), QUrl::fromLocalFile(broken), QUrl::fromLocalFile(blue)});
    paste(source);
    const QStringList names = pictureNames(*editor()->document());
    QCOMPARE(names.size(), 2);
    QCOMPARE(editor()->toPlainText().size(), 2);
    QCOMPARE(resource(*editor()->document(), names[0]).pixelColor(1, 1), QColor(Qt::red));
    QCOMPARE(resource(*editor()->document(), names[1]).pixelColor(1, 1), QColor(Qt::blue));
    QCOMPARE(resource(*editor()->document(), names[1]).width(), pictureWidth(*editor()));
    editor()->undo(); // files that came together go together
    QCOMPARE(editor()->toPlainText(), QString());
}

void EditMainWindowTest::droppedFile()
{
    const QString path = m_folder.filePath(QStringLiteral("dropped.png"));
    QVERIFY(filled(40, 10).save(path));
    editor()->setPlainText(QStringLiteral("first\nsecond"));
    QMimeData source;
    source.setUrls({QUrl::fromLocalFile(path)});
    const QPoint spot = editor()->cursorRect(QTextCursor(editor()->document()->lastBlock())).center();
    QDragEnterEvent enter(spot, Qt::CopyAction, &source, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor()->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(spot, Qt::CopyAction, &source, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor()->viewport(), &drop);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("first\n\ufffcsecond"));
}

void EditMainWindowTest::pastedHtml()
{
    auto* source = new QMimeData;
    source->setHtml(QStringLiteral("<body style='background:#222'><p style='color:#eee; font-size:40px'>light <b>bold"
                                   "</b><img src='https://example.org/x.png'><img src='%1'><img src='%2'></p></body>")
                        .arg(dataAddress(filled(2000, 100)), dataAddress(filled(16, 16))));
    paste(source);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("light bold\ufffc\ufffc"));
    const QStringList names = pictureNames(*editor()->document());
    QCOMPARE(resource(*editor()->document(), names[0]).width(), pictureWidth(*editor()));
    QCOMPARE(resource(*editor()->document(), names[1]).size(), QSize(16, 16));
    const QVector<TextRun> runs = textRuns(*editor()->document());
    QVERIFY(!runs[0].format.hasProperty(QTextFormat::ForegroundBrush));
    QCOMPARE(runs[0].format.fontPointSize(), 40 * 72.0 / m_window->logicalDpiY());
    QVERIFY(runs[1].format.fontWeight() > QFont::Medium);
    select(11, 12); // a picture copied from the page keeps its size
    QTest::keySequence(editor(), QKeySequence::Cut);
    QTest::keySequence(editor(), QKeySequence::Paste);
    QCOMPARE(resource(*editor()->document(), pictureNames(*editor()->document())[1]).size(), QSize(16, 16));
}

void EditMainWindowTest::cutAndPasteKeepsPictures()
{
    QVERIFY(insertPicture(*editor(), filled(40, 10, Qt::red), 65536LL + 0xd834)); // not a character by itself
    editor()->insertPlainText(QStringLiteral(" tail"));
    const QSize size = resource(*editor()->document(), pictureNames(*editor()->document())[0]).size();
    for (const int end : {1, 4}) { // the picture alone, and with text
        select(0, end);
        QTest::keySequence(editor(), QKeySequence::Cut);
        QCOMPARE(pictureNames(*editor()->document()).size(), 0);
        QTest::keySequence(editor(), QKeySequence::Paste);
        QCOMPARE(editor()->toPlainText(), QStringLiteral("\ufffc tail"));
        const QImage pasted = resource(*editor()->document(), pictureNames(*editor()->document())[0]);
        QCOMPARE(pasted.size(), size);
        QCOMPARE(pasted.pixelColor(3, 3), QColor(Qt::red));
    }
}

void EditMainWindowTest::formats_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("key");
    QTest::newRow("bold") << int(EditorActions::Bold) << int(Qt::Key_B);
    QTest::newRow("italic") << int(EditorActions::Italic) << int(Qt::Key_I);
    QTest::newRow("underline") << int(EditorActions::Underline) << int(Qt::Key_U);
}

void EditMainWindowTest::formats()
{
    QFETCH(int, id);
    QFETCH(int, key);
    const auto which = static_cast<EditorActions::Id>(id);
    const auto is = [id](const QTextCharFormat& format) {
        const QFont font = format.font();
        return id == EditorActions::Bold     ? font.bold()
               : id == EditorActions::Italic ? font.italic()
                                             : font.underline();
    };
    const auto formatAt = [this](int position) {
        QTextCursor cursor(editor()->document());
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    };
    QTest::keyClick(editor(), static_cast<Qt::Key>(key), Qt::ControlModifier);
    QTest::keyClicks(editor(), QStringLiteral("ab"));
    click(which);
    QTest::keyClicks(editor(), QStringLiteral("cd"));
    QVERIFY(is(formatAt(1)) && !is(formatAt(2)));

    select(0, 4); // mixed: on everywhere, then off everywhere
    QVERIFY(!action(which)->isChecked());
    click(which);
    QVERIFY(is(formatAt(0)) && is(formatAt(3)) && action(which)->isChecked());
    QTest::keyClick(editor(), static_cast<Qt::Key>(key), Qt::ControlModifier);
    QVERIFY(!is(formatAt(0)) && !is(formatAt(3)) && !action(which)->isChecked());
    QCOMPARE(editor()->toPlainText(), QStringLiteral("abcd"));
    QVERIFY(action(which)->toolTip().endsWith(QStringLiteral(" (Ctrl+%1)").arg(QChar(key))));
}

void EditMainWindowTest::formatsFollowTheCursor()
{
    editor()->setHtml(QStringLiteral("<p>ab<b>cd</b></p><p align=right><i>ef</i></p>"));
    select(4, 4);
    QVERIFY(action(EditorActions::Bold)->isChecked());
    QVERIFY(action(EditorActions::AlignLeft)->isChecked());
    select(7, 7);
    QVERIFY(!action(EditorActions::Bold)->isChecked());
    QVERIFY(action(EditorActions::Italic)->isChecked());
    QVERIFY(action(EditorActions::AlignRight)->isChecked());
    editor()->setHtml(QStringLiteral("<p>ab</p><p align=right>cd</p>"));
    QTest::keyClick(editor(), Qt::Key_Down);
    QVERIFY(action(EditorActions::AlignRight)->isChecked());
}

void EditMainWindowTest::alignments()
{
    editor()->setPlainText(QStringLiteral("one\ntwo"));
    const auto alignmentOf = [this](int block) {
        return editor()->document()->findBlockByNumber(block).blockFormat().alignment() & Qt::AlignHorizontal_Mask;
    };
    QTest::keyClick(editor(), Qt::Key_E, Qt::ControlModifier);
    QVERIFY(alignmentOf(0) == Qt::AlignHCenter && action(EditorActions::AlignCenter)->isChecked());
    editor()->selectAll();
    QVERIFY(!action(EditorActions::AlignCenter)->isChecked() && !action(EditorActions::AlignLeft)->isChecked());
    QTest::keyClick(editor(), Qt::Key_R, Qt::ControlModifier);
    QVERIFY(alignmentOf(0).testFlag(Qt::AlignRight) && alignmentOf(1).testFlag(Qt::AlignRight));
    click(EditorActions::AlignRight); // an alignment is not taken away by choosing it again
    QVERIFY(action(EditorActions::AlignRight)->isChecked());
    QTest::keyClick(editor(), Qt::Key_L, Qt::ControlModifier);
    QVERIFY(alignmentOf(1).testFlag(Qt::AlignLeft));
}

void EditMainWindowTest::sizeSteps_data()
{
    QTest::addColumn<qreal>("from");
    QTest::addColumn<int>("direction");
    QTest::addColumn<qreal>("to");
    QTest::newRow("up") << 12.0 << 1 << 14.0;
    QTest::newRow("down") << 14.0 << -1 << 12.0;
    QTest::newRow("between, up") << 13.0 << 1 << 14.0;
    QTest::newRow("between, down") << 13.5 << -1 << 12.0;
    QTest::newRow("largest") << 96.0 << 1 << 96.0;
    QTest::newRow("smallest") << 6.0 << -1 << 6.0;
    QTest::newRow("beyond") << 200.0 << -1 << 96.0;
}

void EditMainWindowTest::sizeSteps()
{
    QFETCH(qreal, from);
    QFETCH(int, direction);
    QTEST(nextPointSize(from, direction), "to");
}

void EditMainWindowTest::sizeStepsOfMixedSelection()
{
    editor()->setHtml(QStringLiteral("<span style='font-size:12pt'>ab</span><span style='font-size:40px'>cd</span>"));
    QTest::keyClick(editor(), Qt::Key_End);
    QTest::keyClick(editor(), Qt::Key_Return);
    m_window->slotsInsertImage(filled(10, 2));
    editor()->selectAll();
    QTest::keyClick(editor(), Qt::Key_BracketRight, Qt::ControlModifier);
    const QVector<TextRun> runs = textRuns(*editor()->document());
    QCOMPARE(runs[0].format.fontPointSize(), 14.0);
    QCOMPARE(runs[1].format.font().pointSizeF(), 32.0); // 40 pixels are some 30 points
    QVERIFY(!runs[1].format.hasProperty(QTextFormat::FontPixelSize));
    QVERIFY(runs[2].format.isImageFormat());
    editor()->undo();
    QCOMPARE(textRuns(*editor()->document())[0].format.fontPointSize(), 12.0);
    editor()->selectAll();
    click(EditorActions::Smaller);
    QCOMPARE(textRuns(*editor()->document())[0].format.fontPointSize(), 11.0);
}

void EditMainWindowTest::undoAndRedo()
{
    QVERIFY(!action(EditorActions::Undo)->isEnabled());
    QTest::keyClicks(editor(), QStringLiteral("abc"));
    m_window->printPage(); // a print does not forget what can be undone
    click(EditorActions::Undo);
    QCOMPARE(editor()->toPlainText(), QString());
    QVERIFY(!action(EditorActions::Undo)->isEnabled() && action(EditorActions::Redo)->isEnabled());
    QTest::keyClick(editor(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("abc"));
}

void EditMainWindowTest::fontDialog()
{
    editor()->setPlainText(QStringLiteral("abc"));
    editor()->selectAll();
    const auto answer = [this](bool accept, int points) {
        qreal offered = 0;
        QTimer::singleShot(0, this, [&] {
            auto* dialog = qobject_cast<QFontDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            offered = dialog->currentFont().pointSizeF();
            QFont font(QStringLiteral("DejaVu Sans"), points);
            font.setStyleName(QStringLiteral("Book"));
            dialog->setCurrentFont(font);
            accept ? dialog->accept() : dialog->reject();
        });
        m_window->fontAction()->trigger();
        return offered;
    };
    QCOMPARE(answer(true, 33), 20.0);
    QCOMPARE(textRuns(*editor()->document())[0].format.fontPointSize(), 33.0);
    QCOMPARE(answer(false, 44), 33.0);
    QCOMPARE(textRuns(*editor()->document())[0].format.fontPointSize(), 33.0);
    QVERIFY(textRuns(*editor()->document())[0].format.property(QTextFormat::FontStyleName).toString().isEmpty());
    action(EditorActions::Bold)->trigger(); // no style name of the dialog's stands in the way
    QVERIFY(QFontInfo(textRuns(*editor()->document())[0].format.font()).bold());
}

void EditMainWindowTest::contextMenu()
{
    QApplication::clipboard()->setText(QStringLiteral("x"));
    QScopedPointer<QMenu> menu(m_window->createContextMenu());
    QVERIFY(menu->actions().contains(action(EditorActions::SelectAll)));
    QVERIFY(menu->actions().contains(m_window->fontAction()));
    QVERIFY(!action(EditorActions::Copy)->isEnabled() && action(EditorActions::Paste)->isEnabled());
    for (const bool picture : {false, true}) {
        QApplication::clipboard()->clear();
        if (picture)
            QApplication::clipboard()->setImage(filled(2, 2));
        menu.reset();
        menu.reset(m_window->createContextMenu());
        QCOMPARE(action(EditorActions::Paste)->isEnabled(), picture);
    }
    QApplication::clipboard()->clear();
    menu.reset(m_window->createContextMenu());
    menu.reset();
    QVERIFY(action(EditorActions::Paste)->isEnabled()); // the key works on what comes later
    editor()->setPlainText(QStringLiteral("ab"));
    action(EditorActions::SelectAll)->trigger();
    QVERIFY(action(EditorActions::Copy)->isEnabled());
    action(EditorActions::Cut)->trigger();
    action(EditorActions::Paste)->trigger();
    action(EditorActions::Paste)->trigger();
    QCOMPARE(editor()->toPlainText(), QStringLiteral("abab"));
}

QTEST_MAIN(EditMainWindowTest)
#include "tst_edit_main_window.moc"
