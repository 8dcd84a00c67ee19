#include "content/page/page_editor.h"
#include "content/page/page_renderer.h"
#include "tests/system.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QtTest>

#include <memory>

class PageRendererTest : public QObject
{
    Q_OBJECT

    /// Under wine two dots of 231,552 differ at 1.5: the faint fringe of a glyph, which one of the two cuts off.
    static constexpr int kFringe = kOnWindows ? 4 : 0;

    static int differentDots(const QImage& one, const QImage& other)
    {
        int count = 0;
        for (int i = 0; i < one.width() * one.height(); ++i) {
            const QPoint dot(i % one.width(), i / one.width());
            count += one.pixel(dot) != other.pixel(dot) ? 1 : 0;
        }
        return count;
    }

    const QString m_sample =
        QStringLiteral("青竹书店 Bamboo Books, 二〇二六年十一月 receipt number forty-two, 谢谢惠顾 "
                       "and a long line that has to be broken. ");
    std::unique_ptr<QWidget> m_window;
    PageEditor* m_editor = nullptr;

    void open(const QString& text, int sheet = 576)
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(600, 360);
        m_editor = new PageEditor;
        (new PageHolder(m_editor, m_window.get()))->setGeometry(m_window->rect());
        QFont font = m_editor->font();
        font.setPixelSize(26);
        m_editor->setFont(font);
        m_editor->setPlainText(text);
        m_editor->setSheetWidth(sheet);
        m_window->show();
        m_editor->setFocus();
        QTRY_VERIFY(m_editor->hasFocus());
    }

    /// The page as the document paints itself between the edges of the screen's lines, without any widget.
    QImage painted() const
    {
        const std::unique_ptr<QTextDocument> copy(m_editor->document()->clone());
        copy->setTextWidth(m_editor->viewport()->width());
        const qreal ratio = m_editor->devicePixelRatioF();
        const QSizeF whole = copy->size(); // wider than the lines where a picture is
        const QSizeF shown(static_cast<int>(whole.width()), static_cast<int>(whole.height()));
        QImage image((shown * ratio).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        QPainter painter(&image);
        QAbstractTextDocumentLayout::PaintContext ink;
        ink.palette.setColor(QPalette::Text, Qt::black);
        copy->documentLayout()->draw(&painter, ink);
        painter.end();
        image.setDevicePixelRatio(1);
        return image;
    }

    static QImage numbered(QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < size.width(); ++x)
                line[x] = 0xff000000u | static_cast<uint>(y % 4096 << 12) | static_cast<uint>(x);
        }
        return image;
    }

private slots:
    // The test library sets another screen resolution than that of the screen, and pictures would change their size.
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false); }

    void equalsTheBareDocument_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("style");
        const QString all = "* { background: black; color: red; border: 4px solid green; }";
        const QString edits = "QTextEdit { background: navy; color: yellow; margin: 5px; padding: 9px; }"
                              "QTextEdit:focus { border: 3px solid red; }";
        QTest::newRow("empty") << QString() << QString();
        // Text that runs both ways gives the caret a direction mark besides its bar.
        QTest::newRow("both ways") << QStringLiteral("\u05e9\u05dc\u05d5\u05dd hello \u05e2\u05d5") << edits;
        QTest::newRow("longer than the window") << m_sample.repeated(20) << all;
        QTest::newRow("wider than the window")
            << m_sample.repeated(9) + "<p><img width='900' height='40' src='data:,P1 1 1 1'></p>" << edits;
    }

    // Complete, lines broken as on the screen, no frame, bars, caret, selection, placeholder, and none of the colours
    // around: all in one comparison. In strips it is the same.
    void equalsTheBareDocument()
    {
        QFETCH(QString, html);
        QFETCH(QString, style);
        QPalette dark(QColor(50, 50, 50), QColor(40, 40, 40));
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
        qApp->setStyleSheet(style);
        for (const int sheet : {384, 576}) {
            open(QString(), sheet);
            m_editor->setHtml(html);
            m_editor->setPlaceholderText(m_sample);
            m_editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
            m_editor->selectAll();
            QCOMPARE(m_editor->viewport()->width(), sheet);
            // A pixel a dot, but for the table or picture that is wider than the sheet.
            QVERIFY(painted().width() == qRound(sheet * m_editor->devicePixelRatioF()) || html.contains("900"));
            for (const int dots : {384, 576}) {
                const QImage expected = painted().scaledToWidth(dots);
                for (const int plainRows : {kPaintableRows, 333, 50}) {
                    const QImage page = renderPage(*m_editor, dots, plainRows);
                    QCOMPARE(page.devicePixelRatio(), 1.0);
                    QCOMPARE(page.size(), expected.size());
                    QVERIFY(differentDots(page, expected) <= kFringe);
                }
            }
        }
        qApp->setStyleSheet(QString());
        QApplication::setPalette(QPalette());
    }

    void stateIsRestored()
    {
        open(m_sample.repeated(9));
        m_editor->setCursorWidth(3);
        m_editor->setPlaceholderText(m_sample);
        m_editor->textCursor().insertText(QStringLiteral("undo me "));
        m_editor->selectAll();
        const auto state = [this] {
            return std::make_tuple(m_editor->size(), m_editor->cursorWidth(), m_editor->placeholderText(),
                                   m_editor->horizontalScrollBarPolicy(), m_editor->verticalScrollBarPolicy(),
                                   m_editor->lineWrapMode(), m_editor->textInteractionFlags());
        };
        const auto before = state();
        const QImage first = renderPage(*m_editor, 384);
        QVERIFY(state() == before);
        QVERIFY(m_editor->minimumSize() == m_editor->maximumSize()); // the size stays fixed
        QVERIFY(m_editor->textCursor().position() == 0 && !m_editor->textCursor().hasSelection());

        m_window->resize(40, 1); // as while the screen is captured
        m_window->resize(600, 360);
        QCoreApplication::processEvents();
        QCOMPARE(renderPage(*m_editor, 384), first);
        m_editor->undo();
        QCOMPARE(m_editor->toPlainText(), m_sample.repeated(9));
    }

    void tallAndUnscalablePictures()
    {
        const QImage scaled = scaleToWidth(numbered({41, 150'000}), 37);
        QCOMPARE(scaled.height(), 135'366);
        for (int y = 0; y < scaled.height(); ++y) {
            const int row = static_cast<int>(scaled.pixel(7, y) >> 12 & 0xfff);
            QVERIFY2((((2 * y + 1) * 41 / 74 - row) & 0xfff) <= 1, qPrintable(QString::number(y)));
        }
        const QImage large = numbered({640, 54'000}); // 138 MB
        const qint64 before = peakMegabytes();
        QCOMPARE(scaleToWidth(large, 384).pixel(0, 32'399) >> 12 & 0xfff, 53'998u % 4096);
        QVERIFY(peakMegabytes() - before < (50 + 80) * LIMIT_FACTOR); // the result and some strips
        QVERIFY(scaleToWidth(QImage(), 384).isNull());
        QVERIFY(scaleToWidth(numbered({4000, 1}), 384).isNull());
        const auto oneRowShort = [](int, int count, int&) { return QImage(10, count - 1, QImage::Format_RGB32); };
        QVERIFY(scaleInStrips({10, 10}, 20, 4, oneRowShort).isNull());
    }

    /// Every line has its ink, and between two lines there is paper: no strip is missing, doubled or black.
    void higherThanQtPaints()
    {
        constexpr int kLines = 1300;
        open(QStringLiteral("第N行 line\n").repeated(kLines - 1) + QStringLiteral("last"));
        const QImage page = renderPage(*m_editor, 576);
        QVERIFY(page.height() > kPaintableRows);
        const QByteArray white(page.bytesPerLine(), '\xff');
        int lines = 0;
        bool blankAbove = true;
        for (int y = 0; y < page.height(); ++y) {
            const auto* row = reinterpret_cast<const char*>(page.constScanLine(y));
            const bool blank = white == QByteArray::fromRawData(row, white.size());
            lines += blankAbove && !blank ? 1 : 0;
            blankAbove = blank;
        }
        QCOMPARE(lines, kLines);
    }
};

QTEST_MAIN(PageRendererTest)
#include "tst_page_renderer.moc"
