#include "content/page_editor.h"
#include "content/page_renderer.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QtTest>

namespace {

const QString kSample = QStringLiteral("青竹书店 Bamboo Books, 二〇二六年十一月 receipt number forty-two, 谢谢惠顾 "
                                       "and a long line that has to be broken. ");

QTextEdit* shownPage(QWidget& window, const QString& text)
{
    window.resize(600, 360);
    auto* editor = new PageEditor;
    auto* holder = new PageHolder(editor, &window);
    holder->setGeometry(window.rect());
    QFont font = editor->font();
    font.setPixelSize(26);
    editor->setFont(font);
    editor->setPlainText(text);
    window.show();
    editor->setFocus();
    if (!QTest::qWaitForWindowExposed(&window))
        return nullptr;
    return editor;
}

/// Ends of all lines: where the page is broken.
QVector<int> lineBreaks(const QTextDocument& document)
{
    QVector<int> ends;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (int i = 0; i < block.layout()->lineCount(); ++i)
            ends << block.position() + block.layout()->lineAt(i).textStart() + block.layout()->lineAt(i).textLength();
    }
    return ends;
}

/// The page as the document paints itself at a width, without any widget.
QImage painted(const QTextEdit& editor, int width)
{
    QScopedPointer<QTextDocument> copy(editor.document()->clone());
    const QUrl wide(QStringLiteral("wide"));
    copy->addResource(QTextDocument::ImageResource, wide,
                      editor.document()->resource(QTextDocument::ImageResource, wide));
    copy->setTextWidth(width);
    const qreal ratio = editor.devicePixelRatioF();
    const QSizeF whole = copy->size(); // wider than the lines where a picture is
    const QSizeF shown(static_cast<int>(whole.width()), static_cast<int>(whole.height()));
    QImage image((shown * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = QPalette(Qt::black, Qt::white, Qt::white, Qt::black, Qt::gray, Qt::black, Qt::white);
    copy->documentLayout()->draw(&painter, context);
    painter.end();
    image.setDevicePixelRatio(1);
    return image;
}

bool isBlankRow(const QImage& image, int y)
{
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, y) != 0xffffffffu)
            return false;
    }
    return true;
}

int lastInkedRow(const QImage& image)
{
    int y = image.height() - 1;
    while (y >= 0 && isBlankRow(image, y))
        --y;
    return y;
}

} // namespace

class PageRendererTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void equalsTheBareDocument_data();
    void equalsTheBareDocument();
    void stateIsRestored();
    void coloursAroundDoNotPrint_data();
    void coloursAroundDoNotPrint();
    void noCaretNoSelectionNoPlaceholder();
    void wideContentKeepsLineBreaks();
    void stripsEqualPlainRoad();
    void tenThousandLines();
};

// Qt enlarges pictures by the screen's resolution over the application's; the test library sets 96 for the latter,
// the offscreen platform has 100.
void PageRendererTest::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
}

void PageRendererTest::equalsTheBareDocument_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("policy");
    QTest::addColumn<int>("dots");
    QTest::newRow("empty") << QString() << int(Qt::ScrollBarAlwaysOn) << 384;
    QTest::newRow("short") << kSample << int(Qt::ScrollBarAlwaysOn) << 384;
    QTest::newRow("longer than the window") << kSample.repeated(20) << int(Qt::ScrollBarAlwaysOn) << 384;
    QTest::newRow("wide head") << kSample.repeated(20) << int(Qt::ScrollBarAlwaysOn) << 576;
    QTest::newRow("bar on demand, hidden") << kSample << int(Qt::ScrollBarAsNeeded) << 384;
    QTest::newRow("bar on demand, shown") << kSample.repeated(20) << int(Qt::ScrollBarAsNeeded) << 384;
}

// Complete, without frame, scroll bar and caret, with the lines of the screen: all in one comparison.
void PageRendererTest::equalsTheBareDocument()
{
    QFETCH(QString, text);
    QFETCH(int, policy);
    QFETCH(int, dots);
    QWidget window;
    QTextEdit* editor = shownPage(window, text);
    QVERIFY(editor);
    editor->setVerticalScrollBarPolicy(static_cast<Qt::ScrollBarPolicy>(policy));
    QCoreApplication::processEvents();
    editor->document()->size(); // lays out what lies below the window
    const QVector<int> onScreen = lineBreaks(*editor->document());
    const QImage expected = painted(*editor, editor->viewport()->width()).scaledToWidth(dots);

    const QImage page = renderPage(*editor, dots);
    QCOMPARE(page.width(), dots);
    QCOMPARE(page.devicePixelRatio(), 1.0);
    QCOMPARE(page, expected);
    QCOMPARE(lineBreaks(*editor->document()), onScreen);
    QCOMPARE(lastInkedRow(page) > 0, !text.isEmpty());
}

void PageRendererTest::stateIsRestored()
{
    QWidget window;
    QTextEdit* editor = shownPage(window, kSample.repeated(9));
    QVERIFY(editor);
    editor->setCursorWidth(3);
    editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    editor->textCursor().insertText(QStringLiteral("undo me "));
    editor->selectAll();
    const QSize size = editor->size();
    QCOMPARE(editor->frameShape(), QFrame::NoFrame);

    bool posed = false;
    connect(editor, &QTextEdit::selectionChanged, editor, [&] { posed = editor->cursorWidth() == 0; });
    const QImage first = renderPage(*editor, 384);
    QVERIFY(posed);
    QCOMPARE(editor->size(), size);
    QCOMPARE(editor->minimumSize(), size); // the size stays fixed
    QCOMPARE(editor->maximumSize(), size);
    QCOMPARE(editor->cursorWidth(), 3);
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    QCOMPARE(editor->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    QCOMPARE(editor->lineWrapMode(), QTextEdit::WidgetWidth);
    QCOMPARE(editor->textInteractionFlags(), Qt::TextInteractionFlags(Qt::TextEditorInteraction));
    QCOMPARE(editor->textCursor().position(), 0);
    QVERIFY(!editor->textCursor().hasSelection());

    QCOMPARE(renderPage(*editor, 384), first);
    window.resize(40, 1); // as while the screen is captured
    window.resize(600, 360);
    QCoreApplication::processEvents();
    QCOMPARE(renderPage(*editor, 384), first);
    QVERIFY(editor->document()->isUndoAvailable());
    editor->undo();
    QVERIFY(!editor->toPlainText().contains(QLatin1String("undo me")));
}

void PageRendererTest::coloursAroundDoNotPrint_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::newRow("palette") << QString();
    QTest::newRow("everything") << QStringLiteral("* { background: black; color: red; border: 4px solid green; }");
    QTest::newRow("widgets") << QStringLiteral("QWidget { background: #333; color: #eee; padding: 9px; }");
    QTest::newRow("editors") << QStringLiteral(
        "QTextEdit { background: navy; color: yellow; margin: 5px; } QTextEdit:focus { border: 3px solid red; }");
}

void PageRendererTest::coloursAroundDoNotPrint()
{
    QFETCH(QString, sheet);
    QWidget light;
    QTextEdit* reference = shownPage(light, kSample.repeated(9));
    QVERIFY(reference);
    const QImage expected = renderPage(*reference, 384);

    const QPalette before = QApplication::palette();
    QPalette dark(QColor(50, 50, 50), QColor(40, 40, 40));
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    {
        QWidget window;
        window.setStyleSheet(sheet);
        QTextEdit* editor = shownPage(window, kSample.repeated(9));
        QVERIFY(editor);
        const QImage page = renderPage(*editor, 384);
        QCOMPARE(page, expected);
        editor->setEnabled(false);
        QCOMPARE(renderPage(*editor, 384), expected);
    }
    QApplication::setPalette(before);
}

void PageRendererTest::noCaretNoSelectionNoPlaceholder()
{
    // Text that runs both ways gives the caret a direction mark besides its bar.
    const QString bothWays = QStringLiteral("\u05e9\u05dc\u05d5\u05dd hello \u05e2\u05d5\u05dc\u05dd");
    QWidget window;
    QTextEdit* editor = shownPage(window, bothWays);
    QVERIFY(editor);
    QTRY_VERIFY(editor->hasFocus());
    editor->selectAll();
    const QImage expected = painted(*editor, editor->viewport()->width()).scaledToWidth(576);
    QCOMPARE(renderPage(*editor, 576), expected);

    editor->clear();
    editor->setPlaceholderText(kSample);
    QCOMPARE(lastInkedRow(renderPage(*editor, 576)), -1);
    QCOMPARE(editor->placeholderText(), kSample);
}

void PageRendererTest::wideContentKeepsLineBreaks()
{
    QWidget window;
    QTextEdit* editor = shownPage(window, kSample.repeated(9) + QLatin1Char('\n'));
    QVERIFY(editor);
    QImage wide(900, 40, QImage::Format_RGB32);
    wide.fill(Qt::black);
    editor->document()->addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("wide")), wide);
    editor->moveCursor(QTextCursor::End);
    editor->textCursor().insertImage(QStringLiteral("wide"));
    editor->document()->size();
    const QVector<int> onScreen = lineBreaks(*editor->document());

    const QImage expected = painted(*editor, editor->viewport()->width()).scaledToWidth(576);

    const QImage page = renderPage(*editor, 576);
    QCOMPARE(page, expected);
    QCOMPARE(lineBreaks(*editor->document()), onScreen);
    QCOMPARE(page.pixel(570, lastInkedRow(page) - 10), 0xff000000u); // no part of the picture is cut off
}

void PageRendererTest::stripsEqualPlainRoad()
{
    QWidget window;
    QTextEdit* editor = shownPage(window, kSample.repeated(60));
    QVERIFY(editor);
    for (const int dots : {384, 576}) {
        const QImage plain = renderPage(*editor, dots);
        for (const int rows : {50, 333, 1024})
            QCOMPARE(renderPage(*editor, dots, rows), plain);
    }
}

void PageRendererTest::tenThousandLines()
{
    QStringList lines;
    for (int i = 1; i <= 10'000; ++i)
        lines << QStringLiteral("第%1行 line").arg(i);
    QWidget window;
    QTextEdit* editor = shownPage(window, lines.join(QLatin1Char('\n')));
    QVERIFY(editor);
    const QImage page = renderPage(*editor, 384);

    const qreal factor = 384.0 / editor->viewport()->width();
    const qreal height = static_cast<int>(editor->document()->size().height());
    QVERIFY2(qAbs(page.height() - height * factor) <= 1, qPrintable(QString::number(page.height())));
    QVERIFY(height * factor * editor->devicePixelRatioF() > 5.0 * kPaintableRows);
    // Every line has its ink, and between two lines there is paper: no strip is missing, doubled or black.
    int inked = 0;
    for (int y = 1; y < page.height(); ++y)
        inked += isBlankRow(page, y - 1) && !isBlankRow(page, y);
    QCOMPARE(inked, 10'000);
    // The last line is where the document has it.
    const QRectF last = editor->document()->documentLayout()->blockBoundingRect(editor->document()->lastBlock());
    const int ink = lastInkedRow(page);
    QVERIFY2(ink > last.top() * factor && ink < last.bottom() * factor, qPrintable(QString::number(ink)));
}

QTEST_MAIN(PageRendererTest)
#include "tst_page_renderer.moc"
