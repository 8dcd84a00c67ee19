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

/// The paper window over a printer that is driven as a client drives it.
class PaperWindowTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedPrinter> m_printer;
    std::unique_ptr<PaperWindow> m_window;
    PaperView* m_paper = nullptr;
    FrameLogView* m_log = nullptr;
    uint m_dots = 1; ///< state of the noise that is printed

    template <typename T = QAbstractButton>
    T* child(const char* name) const
    {
        return m_window->findChild<T*>(QString::fromLatin1(name));
    }
    void click(const char* name) const { QTest::mouseClick(child(name), Qt::LeftButton); }
    int rows() const { return m_log->model()->rowCount(); }
    QString cell(int row, int column) const { return m_log->model()->index(row, column).data().toString(); }

    void send(const QByteArray& frame) const
    {
        m_printer->receive(reinterpret_cast<const uchar*>(frame.constData()), frame.size());
    }
    void feed(int lines) const { send(sealedFrame(0x1A, 0, wireBytes16(quint16(lines)), m_printer->key())); }
    void print(int lines)
    {
        for (int i = 0; i < lines; ++i) {
            QByteArray line(SimulatedPrinter::headDots(m_printer->model()) / 8, '\0');
            for (char& dots : line)
                dots = char((m_dots = m_dots * 1103515245 + 12345) >> 16);
            send(sealedFrame(0x00, 1, line, m_printer->key()));
        }
    }
    bool shows(int lines) const { return m_paper->lineCount() == lines && rows() > 0; }

    /// Every dot in sight against the printer's own paper, `pixels` screen pixels a dot.
    void compareDots(int pixels)
    {
        const QImage screen = m_paper->viewport()->grab().toImage();
        const QImage paper = m_printer->paper(m_paper->firstLine());
        const QRect area = m_paper->dotArea();
        const QRect seen = area & m_paper->viewport()->rect();
        QVERIFY(seen.height() > 50 && seen.width() > 300);
        for (int y = seen.top(); y <= seen.bottom(); ++y) {
            for (int x = seen.left(); x <= seen.right(); ++x) {
                const QPoint dot((x - area.left()) / pixels, (y - area.top()) / pixels);
                if (screen.pixel(x, y) != paper.pixel(dot))
                    QFAIL(qPrintable(QStringLiteral("pixel %1, %2").arg(x).arg(y)));
            }
        }
    }

    void show()
    {
        m_window = std::make_unique<PaperWindow>(*m_printer);
        m_paper = child<PaperView>("paper");
        m_log = child<FrameLogView>("frameLog");
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
        QVERIFY(!child("save")->isEnabled() && !child("tearOff")->isEnabled());
        std::thread job([this] {
            print(700);
            feed(20);
        });
        QTRY_VERIFY(shows(720));
        job.join();
        QVERIFY(child("save")->isEnabled() && child("tearOff")->isEnabled());
        QCOMPARE(m_paper->picture(), m_printer->paper());
        compareDots(1);
        // The newest line is at the printer's slot; dots that were seen stay where they are once one scrolls away.
        const int newest = m_paper->dotArea().bottom();
        QVERIFY(m_paper->viewport()->rect().contains(m_paper->dotArea().center().x(), newest));
        print(30);
        QTRY_VERIFY(shows(750));
        QCOMPARE(m_paper->dotArea().bottom(), newest);
        QTest::keyClick(m_paper, Qt::Key_PageUp);
        const int top = m_paper->dotArea().top();
        print(30);
        QTRY_VERIFY(shows(780));
        QCOMPARE(m_paper->dotArea().top(), top);
        compareDots(1);
        QTest::keyClick(m_paper, Qt::Key_End);
        print(30);
        QTRY_VERIFY(shows(810));
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

    void zooms_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("percent");
        QTest::addColumn<int>("pixels"); // screen pixels a dot, 0 where it is less than one
        const QString in = "Ctrl++", out = "Ctrl+-", reset = "Ctrl+0";
        QTest::newRow("200") << QStringList{in} << "200 %" << 2;
        QTest::newRow("largest") << QStringList{"Ctrl+=", in, in, in} << "400 %" << 4;
        QTest::newRow("80") << QStringList{in, out, out} << "80 %" << 0;
        QTest::newRow("smallest") << QStringList{out, out, out, out, out, out} << "25 %" << 0;
        QTest::newRow("back") << QStringList{out, out, reset} << "100 %" << 1;
    }

    void zooms()
    {
        QFETCH(QStringList, keys);
        QFETCH(int, pixels);
        print(600);
        QTRY_VERIFY(shows(600));
        click("fitWidth"); // any other zoom ends it
        for (const QString& key : keys)
            QTest::keySequence(m_window.get(), QKeySequence(key));
        QTEST(child("zoomReset")->text(), "percent");
        QVERIFY(!child("fitWidth")->isChecked());
        QVERIFY(m_paper->followsNewest());
        if (pixels > 0)
            compareDots(pixels);
    }

    void zoomsWhereTheMouseIs()
    {
        print(900);
        QTRY_VERIFY(shows(900));
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
        print(300);
        QTRY_VERIFY(shows(300));
        click("fitWidth");
        for (const int width : {760, 1500}) {
            m_window->resize(width, 720);
            QCOMPARE(m_paper->zoom(), width == 760 ? 1.0 : 2.0); // whole pixels
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
        QTest::newRow("hard") << 3 << 2 << DotEdges::Hard;
        QTest::newRow("whole") << 2 << 1 << DotEdges::Soft;
    }

    /// Against the mean of samples on a grid that dots and pixels share; and a part is the same as in the whole.
    void dots()
    {
        QFETCH(int, pixels);
        QFETCH(int, perDots);
        QFETCH(DotEdges, edges);
        print(40);
        const QImage paper = m_printer->paper();
        const auto level = [&](int x, int y) {
            int black = 0;
            for (int i = 0; i < perDots * perDots; ++i) {
                const QPoint dot((x * perDots + i % perDots) / pixels, (y * perDots + i / perDots) / pixels);
                black += paper.valid(dot) && qGray(paper.pixel(dot)) == 0 ? 1 : 0;
            }
            return 255 - 255.0 * black / (perDots * perDots);
        };
        const qreal scale = qreal(pixels) / perDots;
        const QRect all(0, 0, 384 * pixels / perDots, 42 * pixels / perDots); // two lines more than there are
        const QImage whole = renderDots(paper, 0, scale, edges, all);
        for (int y = 0; y < all.height(); ++y) {
            for (int x = 0; x < all.width(); ++x) {
                if (edges == DotEdges::Soft)
                    QVERIFY(qAbs(qGray(whole.pixel(x, y)) - level(x, y)) <= 0.51);
                else
                    QCOMPARE(whole.pixel(x, y), y * 2 + 1 < 40 * 3 ? paper.pixel((2 * x + 1) / 3, (2 * y + 1) / 3)
                                                                   : qRgb(255, 255, 255));
            }
        }
        const QRect part(7, 8, 50, 5);
        QCOMPARE(renderDots(m_printer->paper(3), 3, scale, edges, part), whole.copy(part));
    }

    void tearsOff()
    {
        print(100);
        QTRY_VERIFY(shows(100));
        click("tearOff");
        QVERIFY(shows(0));
        QVERIFY(!child("save")->isEnabled());
        print(70);
        QTRY_VERIFY(shows(70));
        compareDots(1);
        click("tearOff");
        m_printer->reset();
        print(5);
        QTRY_VERIFY(shows(5)); // a new roll is shown from its beginning
    }

    void saves()
    {
#ifdef __SANITIZE_THREAD__
        QSKIP("Qt's file dialog reads folders on a thread of its own, which the sanitizer cannot follow");
#endif
        const QTemporaryDir folder;
        print(100);
        QTRY_VERIFY(shows(100));
        click("tearOff");
        print(70);
        feed(9);
        QTRY_VERIFY(shows(79));
        const auto answer = [this](const QString& file) {
            QTRY_VERIFY(m_window->findChild<QFileDialog*>());
            auto* dialog = m_window->findChild<QFileDialog*>();
            const QString today = QDate::currentDate().toString(QStringLiteral("yyyyMMdd"));
            QVERIFY(dialog->selectedFiles().value(0).contains(today));
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, "accept");
            QTRY_VERIFY(!m_window->findChild<QFileDialog*>());
        };
        QTest::keySequence(m_window.get(), QKeySequence::Save);
        answer(folder.filePath("纸.png"));
        const QImage saved(folder.filePath("纸.png"));
        QCOMPARE(saved.convertToFormat(QImage::Format_RGB32),
                 m_printer->paper(100).convertToFormat(QImage::Format_RGB32));
        QCOMPARE(saved.dotsPerMeterX(), 8000);
        QVERIFY(!writePaper(saved, folder.filePath("missing/x.png")).isEmpty());

        click("save");
        m_printer->reset(); // somebody takes the roll out while the question stands
        answer(folder.filePath("none.png"));
        QVERIFY(m_window->findChild<QMessageBox*>());
        QVERIFY(!QFile::exists(folder.filePath("none.png")));
        QTRY_VERIFY(!child("save")->isEnabled());
    }

    void controls()
    {
        std::thread([this] { m_printer->unplug(); }).join();
        QTRY_VERIFY(!child("pluggedIn")->isChecked());
        std::thread([this] { m_printer->plugIn(); }).join();
        QTRY_VERIFY(child("pluggedIn")->isChecked());
        std::thread([this] { m_printer->setCondition(Condition::CoverOpen); }).join();
        QTRY_VERIFY(child("conditionCoverOpen")->isChecked());
        click("conditionReady");
        print(10);
        QTRY_VERIFY(shows(10));
        click("modelK2");
        QCOMPARE(m_printer->model(), Model::K2);
        QTRY_VERIFY(shows(0));
        QTest::keyClick(child("pluggedIn"), Qt::Key_Space);
        QVERIFY(!m_printer->isPluggedIn());
        click("modelK2"); // is the one that is there
        QTest::qWait(0);
        QVERIFY(!m_printer->isPluggedIn());
        click("modelK1"); // is another one, and comes plugged in
        QVERIFY(m_printer->isPluggedIn() && m_printer->model() == Model::K1);
        QTRY_VERIFY(child("pluggedIn")->isChecked());
        click("conditionPaperOut");
        QCOMPARE(m_printer->condition(), Condition::PaperOut);
        click("conditionCoverOpen");
        QCOMPARE(m_printer->condition(), Condition::CoverOpen);

        m_printer->reset(Model::K2);
        QTRY_VERIFY(child("conditionReady")->isChecked() && child("pluggedIn")->isChecked());
        QVERIFY(child("modelK2")->isChecked());
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
        const QStringList expected[] = {{time, "0x1a", "走纸", "0", "2", "✗ 错误"},
                                        {cell(1, 0), "0x18", "设置密钥", "1", "4", "正确"},
                                        {cell(2, 0), "0x00", "打印数据", "1", "48", "正确"}};
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < FrameLogModel::ColumnCount; ++column)
                QCOMPARE(cell(row, column), expected[row][column]);
        }
        for (const auto& [label, text] : {std::pair("frameCount", "正确的帧 17"),
                                          {"crcErrors", "CRC 错误 1"},
                                          {"keyExchanges", "密钥交换 1"},
                                          {"paperLength", "纸长 16 点行 = 2.0 毫米"}})
            QCOMPARE(child<QLabel>(label)->text(), QString::fromUtf8(text));
        click("clearLog");
        QCOMPARE(rows(), 0);
        feed(0);
        QTRY_COMPARE(rows(), 1);
    }

    void logTakesEveryFrameOnce()
    {
        FrameLogModel log;
        const auto append = [&log](int first, int last) {
            QVector<FrameRecord> frames(last - first + 1);
            for (FrameRecord& frame : frames)
                frame.number = frame.length = quint16(first++);
            log.append(frames);
            return log.index(0, FrameLogModel::Length).data().toInt();
        };
        append(0, 9);
        append(5, 14);
        append(3, 12);
        QCOMPARE(log.rowCount(), 15);
        QCOMPARE(append(15, 5000), 5001 - FrameLogModel::kKeptRows);
        QCOMPARE(log.rowCount(), FrameLogModel::kKeptRows);
        QCOMPARE(log.nextNumber(), 5001);
    }

    void logKeepsTheNewest()
    {
        std::thread job([this] {
            for (int i = 0; i < 3 * FrameLogModel::kKeptRows; ++i)
                send(sealedFrame(0x1A, 0, QByteArray(i % 1000, '\0'), m_printer->key()));
        });
        QTRY_COMPARE(m_printer->frameCount(), 3 * FrameLogModel::kKeptRows);
        job.join();
        const int last = 3 * FrameLogModel::kKeptRows - 1;
        QTRY_COMPARE(cell(rows() - 1, FrameLogModel::Length), QString::number(last % 1000));
        QCOMPARE(rows(), FrameLogModel::kKeptRows);
        for (int row = 0; row < rows(); ++row)
            QCOMPARE(cell(row, FrameLogModel::Length), QString::number((last - rows() + 1 + row) % 1000));

        const auto atTop = [this] {
            return cell(m_log->rowAt(1), FrameLogModel::Length).toInt();
        };
        QVERIFY(m_log->rowAt(m_log->viewport()->height() - 1) == rows() - 1);
        QTest::keyClick(m_log, Qt::Key_PageUp);
        m_log->verticalScrollBar()->setValue(2000 * m_log->rowHeight(0));
        const int before = atTop();
        for (int i = 0; i < 100; ++i)
            feed(i);
        QTRY_COMPARE(cell(rows() - 100, FrameLogModel::Length), QString("2"));
        QCOMPARE(atTop(), before);
        QCOMPARE(cell(0, FrameLogModel::Length).toInt(), (last + 1 - rows() + 100) % 1000);
        m_log->verticalScrollBar()->setValue(m_log->verticalScrollBar()->maximum());
        m_window->resize(760, 600);
        feed(0);
        QTRY_COMPARE(m_log->rowAt(m_log->viewport()->height() - 1), rows() - 1);
    }

    void changesItsLanguage();
    void closingHides();
};

namespace {

/// Gives every text back without its Chinese.
class Latin : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override
    {
        QString text = QString::fromUtf8(source);
        for (QChar& letter : text)
            letter = letter.unicode() < 0x3000 ? letter : QChar('x');
        return text;
    }
};

bool isChinese(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.unicode() >= 0x3000; });
}

/// The texts that are Chinese of all that a widget says.
QStringList chineseTexts(const QWidget& window)
{
    QStringList found;
    QList<const QObject*> objects{&window};
    for (const QWidget* each : window.findChildren<QWidget*>())
        objects += each;
    for (const QObject* object : qAsConst(objects)) {
        for (const char* property : {"text", "toolTip", "accessibleName", "windowTitle"}) {
            const QString text = object->property(property).toString();
            if (isChinese(text))
                found += object->objectName() + QLatin1Char('.') + QLatin1String(property);
        }
    }
    return found;
}

} // namespace

void PaperWindowTest::changesItsLanguage()
{
    send(sealedFrame(0x1A, 0, wireBytes16(9), 0));
    QTRY_COMPARE(rows(), 1);
    click("modelK2");
    const int texts = chineseTexts(*m_window).size();
    QVERIFY(texts > 25);
    click("zoomIn");
    const auto hint = [this] {
        return m_paper->viewport()->grab(QRect(0, 0, 700, 250)).toImage();
    };
    const QImage chineseHint = hint();
    QSignalSpy log(m_log->model(), &QAbstractItemModel::dataChanged);
    {
        Latin latin;
        QCoreApplication::installTranslator(&latin);
        QCoreApplication::processEvents();
        QCOMPARE(chineseTexts(*m_window), QStringList());
        for (int column = 0; column < FrameLogModel::ColumnCount; ++column) {
            QVERIFY(!isChinese(cell(0, column)));
            QVERIFY(!isChinese(m_log->model()->headerData(column, Qt::Horizontal).toString()));
        }
        QVERIFY(hint() != chineseHint);
        QVERIFY(!log.isEmpty());
        QCOMPARE(child("zoomReset")->text(), QStringLiteral("200 %"));
    }
    QCoreApplication::processEvents();
    QCOMPARE(chineseTexts(*m_window).size(), texts);
}

void PaperWindowTest::closingHides()
{
    m_window->close();
    QVERIFY(m_window->isHidden());
    print(3);
    QTRY_VERIFY(shows(3));
    m_window->show();
    QWidget client;
    client.show();
    QTimer::singleShot(0, &client, &QWidget::close);
    QTimer::singleShot(10000, &client, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0); // ends although the paper is still in sight
}

QTEST_MAIN(PaperWindowTest)
#include "tst_paper_window.moc"
