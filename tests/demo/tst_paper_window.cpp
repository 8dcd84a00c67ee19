#include "demo/frame_log_model.h"
#include "demo/frame_log_view.h"
#include "demo/paper_dots.h"
#include "demo/paper_file.h"
#include "demo/paper_view.h"
#include "demo/paper_window.h"
#include "simulator/wire_frame.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QScrollBar>
#include <QTranslator>
#include <QtTest>

#include <thread>

using Model = SimulatedPrinter::Model;
using Condition = SimulatedPrinter::Condition;
Q_DECLARE_METATYPE(DotEdges)

const QRegularExpression kChinese("[\\x{3000}-\\x{ffff}]");

/// The paper window over a printer that is driven as a client drives it.
class PaperWindowTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedPrinter> m_printer;
    std::unique_ptr<PaperWindow> m_window;
    PaperView* m_paper = nullptr;
    FrameLogView* m_log = nullptr;
    uint m_dots = 1; ///< state of the noise that is printed

    QAbstractButton* button(const char* name) const { return m_window->findChild<QAbstractButton*>(name); }
    void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    int rows() const { return m_log->model()->rowCount(); }
    QString cell(int row, int column) const { return m_log->model()->index(row, column).data().toString(); }
    int length(int row) const { return cell(row, FrameLogModel::Length).toInt(); }
    QString row(int number) const
    {
        QStringList cells;
        for (int column = 0; column < FrameLogModel::ColumnCount; ++column)
            cells += cell(number, column);
        return cells.join(" ");
    }

    void send(const QByteArray& frame) const
    {
        m_printer->receive(reinterpret_cast<const uchar*>(frame.constData()), frame.size());
    }
    void feed(int lines) const { send(sealedFrame(0x1A, 0, wireBytes16(quint16(lines)), m_printer->report().key)); }
    void print(int lines)
    {
        for (int i = 0; i < lines; ++i) {
            QByteArray line(SimulatedPrinter::headDots(m_printer->report().model) / 8, '\0');
            for (char& dots : line)
                dots = char((m_dots = m_dots * 1103515245 + 12345) >> 16);
            send(sealedFrame(0x00, 1, line, m_printer->report().key));
        }
    }
    /// Waits until the window shows so many lines, of which those that are missing are printed.
    void printUpTo(int lines)
    {
        print(lines - m_paper->lineCount());
        QTRY_COMPARE(m_paper->lineCount(), lines);
    }

    /// Every dot in sight against the printer's own paper, `pixels` screen pixels a dot.
    void compareDots(int pixels)
    {
        const QImage screen = m_paper->viewport()->grab().toImage();
        const QImage paper = m_printer->paper(m_paper->firstLine());
        const QRect area = m_paper->dotArea();
        const QRect seen = area & m_paper->viewport()->rect();
        QVERIFY(seen.height() > 50 && seen.width() > 300);
        for (int y = seen.top(); y <= seen.bottom(); ++y) {
            for (int x = seen.left(); x <= seen.right(); ++x)
                QCOMPARE(screen.pixel(x, y), paper.pixel((x - area.left()) / pixels, (y - area.top()) / pixels));
        }
    }

    /// The properties of the window's widgets that are Chinese texts.
    QStringList chineseTexts() const
    {
        QStringList found;
        const QList<QWidget*> widgets = m_window->findChildren<QWidget*>() << m_window.get();
        for (const QWidget* widget : widgets) {
            for (const char* property : {"text", "toolTip", "accessibleName", "windowTitle"}) {
                if (widget->property(property).toString().contains(kChinese))
                    found += widget->objectName() + "." + property;
            }
        }
        return found;
    }

    void show()
    {
        m_window = std::make_unique<PaperWindow>(*m_printer);
        m_paper = m_window->findChild<PaperView*>();
        m_log = m_window->findChild<FrameLogView*>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

private slots:
    void init()
    {
        m_window.reset();
        m_printer = std::make_unique<SimulatedPrinter>();
        show();
    }

    void growsAndFollows()
    {
        QVERIFY(!button("save")->isEnabled() && !button("tearOff")->isEnabled());
        std::thread job([this] {
            print(700);
            feed(20);
        });
        QTRY_COMPARE(m_paper->lineCount(), 720);
        job.join();
        QVERIFY(button("save")->isEnabled() && button("tearOff")->isEnabled());
        compareDots(1);
        // The newest line is at the printer's slot; dots that were seen stay where they are once one scrolls away.
        const int newest = m_paper->dotArea().bottom();
        QVERIFY(m_paper->viewport()->rect().contains(m_paper->dotArea().center().x(), newest));
        printUpTo(750);
        QCOMPARE(m_paper->dotArea().bottom(), newest);
        QTest::keyClick(m_paper, Qt::Key_PageUp);
        const int top = m_paper->dotArea().top();
        printUpTo(780);
        QCOMPARE(m_paper->dotArea().top(), top);
        compareDots(1);
        QTest::keyClick(m_paper, Qt::Key_End);
        printUpTo(810);
        QCOMPARE(m_paper->dotArea().bottom(), newest);
    }

    /// The roll gives up its oldest lines; what is looked at stays in sight, and only lines that are there are shown.
    void staysWhileOldLinesGo()
    {
        for (int lines = PaperRoll::kKeptLines; lines > 0; lines -= 50000)
            feed(50000);
        print(200);
        QTRY_COMPARE(int(m_paper->firstLine()), 200);
        m_paper->verticalScrollBar()->setValue(m_paper->verticalScrollBar()->maximum() - 100);
        const int place = m_paper->dotArea().bottom();
        feed(5000);
        QTRY_COMPARE(int(m_paper->firstLine()), 5200);
        QCOMPARE(m_paper->dotArea().bottom(), place + 5000);
        QCOMPARE(m_paper->lineCount(), int(PaperRoll::kKeptLines));
        compareDots(1);
    }

    void zooms()
    {
        printUpTo(600);
        click("fitWidth"); // any other zoom ends it
        const std::pair<const char*, const char*> steps[] = {
            {"Ctrl++", "200 %"}, {"Ctrl+=", "300 %"}, {"Ctrl++", "400 %"}, {"Ctrl++", "400 %"},
            {"Ctrl+0", "100 %"}, {"Ctrl+-", "80 %"},  {"Ctrl+-", "67 %"},  {"Ctrl+-", "50 %"},
            {"Ctrl+-", "33 %"},  {"Ctrl+-", "25 %"},  {"Ctrl+-", "25 %"},  {"Ctrl+0", "100 %"}};
        for (const auto& [key, percent] : steps) {
            QTest::keySequence(m_window.get(), QKeySequence(key));
            QCOMPARE(button("zoomReset")->text(), QString(percent));
            QVERIFY(m_paper->followsNewest() && !button("fitWidth")->isChecked());
            if (m_paper->zoom() >= 1)
                compareDots(int(m_paper->zoom()));
        }
    }

    void zoomsWhereTheMouseIs()
    {
        printUpTo(900);
        m_paper->verticalScrollBar()->setValue(300);
        const QPoint mouse(300, 100);
        const QPoint dot = mouse - m_paper->dotArea().topLeft();
        QWheelEvent turn(mouse, m_paper->viewport()->mapToGlobal(mouse), {}, {0, 120}, Qt::NoButton,
                         Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_paper->viewport(), &turn);
        QCOMPARE(m_paper->zoom(), 2.0);
        QCOMPARE(m_paper->dotArea().topLeft() + dot * 2, mouse);
        compareDots(2);
    }

    void fitsToWidth()
    {
        click("modelK2");
        printUpTo(300);
        click("fitWidth");
        for (const auto& [width, zoom] : {std::pair(760, 1.0), {1500, 2.0}}) { // whole pixels
            m_window->resize(width, 720);
            QCOMPARE(m_paper->zoom(), zoom);
            QCOMPARE(m_paper->horizontalScrollBar()->maximum(), 0);
        }
    }

    void dots_data()
    {
        QTest::addColumn<int>("pixels"); // so many pixels for so many dots
        QTest::addColumn<int>("perDots");
        QTest::addColumn<DotEdges>("edges");
        QTest::newRow("a third") << 1 << 3 << DotEdges::Soft;
        QTest::newRow("80 %") << 4 << 5 << DotEdges::Soft;
        QTest::newRow("80 % of a dense screen") << 8 << 5 << DotEdges::Soft;
        QTest::newRow("hard") << 4 << 3 << DotEdges::Hard;
        QTest::newRow("whole") << 2 << 1 << DotEdges::Soft;
    }

    /// Against samples on a grid that dots and pixels share, for hard edges the one in the middle of the pixel. A
    /// part is the same as in the whole.
    void dots()
    {
        QFETCH(int, pixels);
        QFETCH(int, perDots);
        QFETCH(DotEdges, edges);
        print(40);
        const QImage paper = m_printer->paper();
        const int grid = perDots * perDots;
        const int first = edges == DotEdges::Hard ? grid / 2 : 0;
        const int end = edges == DotEdges::Hard ? first + 1 : grid;
        const auto level = [&](int x, int y) {
            int black = 0;
            for (int i = first; i < end; ++i) {
                const QPoint dot((x * perDots + i % perDots) / pixels, (y * perDots + i / perDots) / pixels);
                black += paper.valid(dot) && qGray(paper.pixel(dot)) == 0 ? 1 : 0;
            }
            return 255 - 255.0 * black / (end - first);
        };
        const qreal scale = qreal(pixels) / perDots;
        const QRect all(0, 0, 384 * pixels / perDots, 42 * pixels / perDots); // two lines more than there are
        const QImage whole = renderDots(paper, 0, scale, edges, all);
        for (int y = 0; y < all.height(); ++y) {
            for (int x = 0; x < all.width(); ++x)
                QVERIFY(qAbs(qGray(whole.pixel(x, y)) - level(x, y)) <= 0.51);
        }
        const QRect part(7, 8, 50, 5);
        QCOMPARE(renderDots(m_printer->paper(3), 3, scale, edges, part), whole.copy(part));
    }

    void tearsOffAndSaves()
    {
        printUpTo(100);
        click("tearOff");
        QCOMPARE(m_paper->lineCount(), 0);
        QVERIFY(!button("save")->isEnabled());
        printUpTo(70);
        feed(9);
        QTRY_COMPARE(m_paper->lineCount(), 79);
        compareDots(1);
#ifdef __SANITIZE_THREAD__
        QSKIP("Qt's file dialog reads folders on a thread of its own, which the sanitizer cannot follow");
#endif
        const QTemporaryDir folder;
        const auto answer = [this](const QString& file) {
            QTRY_VERIFY(m_window->findChild<QFileDialog*>());
            auto* dialog = m_window->findChild<QFileDialog*>();
            QVERIFY(dialog->selectedFiles().value(0).contains(QDate::currentDate().toString("yyyyMMdd")));
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, "accept");
            QTRY_VERIFY(!m_window->findChild<QFileDialog*>());
        };
        QTest::keySequence(m_window.get(), QKeySequence::Save);
        answer(folder.filePath("纸.png"));
        const QImage saved(folder.filePath("纸.png"));
        QCOMPARE(saved, m_printer->paper(100));
        QCOMPARE(saved.dotsPerMeterX(), 8000);
        QVERIFY(!writePaper(saved, folder.filePath("missing/x.png")).isEmpty());

        click("save");
        m_printer->reset(); // somebody takes the roll out while the question stands
        answer(folder.filePath("none.png"));
        QVERIFY(m_window->findChild<QMessageBox*>());
        QVERIFY(!QFile::exists(folder.filePath("none.png")));
        QTRY_VERIFY(!button("save")->isEnabled());
        print(5);
        QTRY_COMPARE(m_paper->lineCount(), 5); // a new roll is shown from its beginning
    }

    void controls()
    {
        std::thread([this] { m_printer->unplug(); }).join();
        QTRY_VERIFY(!button("pluggedIn")->isChecked());
        m_printer->setCondition(Condition::CoverOpen);
        QTRY_VERIFY(button("conditionCoverOpen")->isChecked());
        m_printer->reset(Model::K2);
        QTRY_VERIFY(button("conditionReady")->isChecked() && button("pluggedIn")->isChecked());
        QVERIFY(button("modelK2")->isChecked());

        printUpTo(10);
        click("conditionPaperOut");
        QCOMPARE(m_printer->report().condition, Condition::PaperOut);
        click("conditionCoverOpen");
        QCOMPARE(m_printer->report().condition, Condition::CoverOpen);
        QTest::keyClick(button("pluggedIn"), Qt::Key_Space);
        click("modelK2"); // is the one that is there
        QTest::qWait(0);
        QVERIFY(!m_printer->report().pluggedIn);
        click("modelK1"); // is another one, and comes plugged in
        QVERIFY(m_printer->report().pluggedIn && m_printer->report().model == Model::K1);
        QTRY_COMPARE(m_paper->lineCount(), 0);
    }

    void framesAndCounts()
    {
        m_printer->receive(reinterpret_cast<const uchar*>("\x02\x1a\x00\x02\x00\x10\x00zzzz\x03"), 12);
        send(sealedFrame(0x18, 1, wireBytes32(0x77073096U ^ kKeyMask), kKeyMask));
        show(); // knows what was before it
        QCOMPARE(rows(), 2);
        std::thread([this] { print(16); }).join();
        QTRY_COMPARE(rows(), 18);
        const QString time = QDateTime::fromMSecsSinceEpoch(m_printer->frames().value(0).msSinceEpoch)
                                 .toString(QStringLiteral("hh:mm:ss.zzz"));
        QCOMPARE(row(0), time + " 0x1a 走纸 0 2 ✗ 错误");
        QVERIFY(row(1).endsWith(" 0x18 设置密钥 1 4 正确"));
        QVERIFY(row(2).endsWith(" 0x00 打印数据 1 48 正确"));
        QStringList counts;
        for (const char* label : {"frameCount", "crcErrors", "keyExchanges", "paperLength"})
            counts += m_window->findChild<QLabel*>(label)->text();
        QCOMPARE(counts.join("; "), QString("正确的帧 17; CRC 错误 1; 密钥交换 1; 纸长 16 点行 = 2.0 毫米"));
        click("clearLog");
        QCOMPARE(rows(), 0);
        feed(0);
        QTRY_COMPARE(rows(), 1);
    }

    void logTakesEveryFrameOnce()
    {
        FrameLogModel log;
        QVector<FrameRecord> frames(5001);
        for (int i = 0; i < frames.size(); ++i)
            frames[i].number = frames[i].length = quint16(i);
        for (const int first : {0, 5, 3})
            log.append(frames.mid(first, 10));
        QCOMPARE(log.rowCount(), 15);
        log.append(frames);
        QCOMPARE(log.index(FrameLogModel::kKeptRows - 1, FrameLogModel::Length).data().toInt(), 5000);
    }

    void logKeepsTheNewest()
    {
        const int sent = 3 * FrameLogModel::kKeptRows;
        std::thread job([this, sent] {
            for (int i = 0; i < sent; ++i)
                send(sealedFrame(0x1A, 0, QByteArray(i % 1000, '\0'), m_printer->report().key));
        });
        QTRY_COMPARE(m_printer->report().frames, sent);
        job.join();
        QTRY_COMPARE(length(rows() - 1), (sent - 1) % 1000);
        QCOMPARE(rows(), FrameLogModel::kKeptRows);
        QCOMPARE(m_log->rowAt(m_log->viewport()->height() - 1), rows() - 1);

        QTest::keyClick(m_log, Qt::Key_PageUp);
        m_log->verticalScrollBar()->setValue(2000 * m_log->rowHeight(0));
        const int seen = length(m_log->rowAt(1));
        for (int i = 0; i < 100; ++i)
            feed(i);
        QTRY_COMPARE(length(rows() - 100), 2);
        QCOMPARE(length(m_log->rowAt(1)), seen);
        QCOMPARE(length(0), (sent + 100 - rows()) % 1000);
        m_log->verticalScrollBar()->setValue(m_log->verticalScrollBar()->maximum());
        m_window->resize(760, 600);
        feed(0);
        QTRY_COMPARE(m_log->rowAt(m_log->viewport()->height() - 1), rows() - 1);
    }

    void changesItsLanguage()
    {
        send(sealedFrame(0x1A, 0, wireBytes16(9), 0));
        QTRY_COMPARE(rows(), 1);
        click("modelK2");
        click("zoomIn");
        const int texts = chineseTexts().size();
        QVERIFY(texts > 25);
        const QRect hint(0, 0, 700, 250);
        const QImage chineseHint = m_paper->viewport()->grab(hint).toImage();
        QSignalSpy log(m_log->model(), &QAbstractItemModel::dataChanged);
        {
            QTranslator english;
            QVERIFY(english.load(":/com/quillbox/language/quillbox_en_WW.qm"));
            QCoreApplication::installTranslator(&english);
            QCoreApplication::processEvents();
            QCOMPARE(chineseTexts(), QStringList());
            QVERIFY(!row(0).contains(kChinese));
            for (int column = 0; column < FrameLogModel::ColumnCount; ++column)
                QVERIFY(!m_log->model()->headerData(column, Qt::Horizontal).toString().contains(kChinese));
            QVERIFY(m_paper->viewport()->grab(hint).toImage() != chineseHint);
            QVERIFY(!log.isEmpty());
            QCOMPARE(button("zoomReset")->text(), QStringLiteral("200 %"));
        }
        QCoreApplication::processEvents();
        QCOMPARE(chineseTexts().size(), texts);
    }

    void closingHides()
    {
        m_window->close();
        QVERIFY(m_window->isHidden());
        printUpTo(3);
        m_window->show();
        QWidget client;
        client.show();
        QTimer::singleShot(0, &client, &QWidget::close);
        QTimer::singleShot(10000, &client, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0); // ends although the paper is still in sight
    }
};

QTEST_MAIN(PaperWindowTest)
#include "tst_paper_window.moc"
