#include "demo/frame_log_model.h"
#include "demo/paper_view.h"
#include "demo/paper_window.h"
#include "demo/side_by_side.h"
#include "simulator/wire_frame.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QScrollBar>
#include <QTranslator>
#include <QtTest>

#include <future>

/// The paper window over a printer that is driven as a client drives it.
class PaperWindowTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedPrinter> m_printer;
    std::unique_ptr<PaperWindow> m_window;
    PaperView* m_paper = nullptr;
    FrameLogModel* m_log = nullptr;

    QAbstractButton* button(const char* name) const { return m_window->findChild<QAbstractButton*>(name); }
    void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    QString row(int number) const
    {
        QStringList cells;
        for (int column = FrameLogModel::Code; column < FrameLogModel::ColumnCount; ++column)
            cells += m_log->index(number, column).data().toString();
        return cells.join(' ');
    }
    /// Prints noise from another thread, each line another one, until so many lines are shown.
    void printUpTo(int lines) const
    {
        const auto job = std::async(std::launch::async, [this, lines, printed = m_paper->lineCount()] {
            for (int i = printed; i < lines; ++i) {
                QByteArray line(384 / 8, '\0');
                QRandomGenerator(static_cast<quint32>(i)).generate(line.begin(), line.end());
                const QByteArray frame = sealedFrame(0x00, 1, line, m_printer->report().key);
                m_printer->receive(reinterpret_cast<const uchar*>(frame.constData()), frame.size());
            }
        });
        QTRY_COMPARE(m_paper->lineCount(), lines);
    }
    /// Every dot in sight against the printer's own paper, scaled as a whole.
    void compareDots() const
    {
        const QRect area = m_paper->dotArea();
        const QRect seen = area & m_paper->viewport()->rect();
        const auto mode = m_paper->zoom() < 1 ? Qt::SmoothTransformation : Qt::FastTransformation;
        const QImage paper = m_printer->paper(m_paper->firstLine()).convertToFormat(QImage::Format_RGB32);
        const QImage dots = paper.scaled(area.size(), Qt::IgnoreAspectRatio, mode);
        QVERIFY(seen.height() > 50 && seen.width() > 150);
        QCOMPARE(m_paper->viewport()->grab(seen).toImage().convertToFormat(QImage::Format_RGB32),
                 dots.copy(seen.translated(-area.topLeft())));
    }

private slots:
    void init()
    {
        m_window.reset();
        m_printer = std::make_unique<SimulatedPrinter>();
        m_window = std::make_unique<PaperWindow>(*m_printer);
        m_paper = m_window->findChild<PaperView*>();
        m_log = m_window->findChild<FrameLogModel*>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void followsUnlessScrolledAway()
    {
        printUpTo(700);
        const int newest = m_paper->dotArea().bottom(); // at the printer's slot
        QVERIFY(m_paper->viewport()->rect().contains(m_paper->dotArea().center().x(), newest));
        QTest::keyClick(m_paper, Qt::Key_PageUp);
        const int top = m_paper->dotArea().top();
        printUpTo(780);
        QCOMPARE(m_paper->dotArea().top(), top);
        QTest::keyClick(m_paper, Qt::Key_End);
        printUpTo(810);
        QCOMPARE(m_paper->dotArea().bottom(), newest);
    }

    void zooms()
    {
        printUpTo(900);
        click("fitWidth");
        QCOMPARE(m_paper->viewport()->width() - qRound((384 + 64) * m_paper->zoom()), 48); // the margins beside it
        QStringList percents;
        for (const char* key : {"+", "0", "+", "=", "+", "+", "0", "-", "-", "-", "-", "-", "-"}) {
            QTest::keySequence(m_window.get(), QKeySequence(QString("Ctrl+") + key));
            percents += button("zoomReset")->text().remove(" %");
            QVERIFY(m_paper->followsNewest() && !button("fitWidth")->isChecked());
            if (m_paper->zoom() >= 1 || m_paper->zoom() == 0.5)
                compareDots();
        }
        QCOMPARE(percents.join(' '), QString("200 100 200 300 400 400 100 80 67 50 33 25 25"));
    }

    /// Beside the client on a small screen; with a scroll bar and without.
    void fitsWidth()
    {
        const auto fits = [this] { // with the desk and room for a scroll bar beside it
            const int spare = m_paper->viewport()->width() - qRound((384 + 64) * m_paper->zoom());
            return m_paper->horizontalScrollBar()->maximum() == 0 && spare >= 48 && spare <= 48 + 12;
        };
        m_window->makeRoom({352, 500});
        QTRY_COMPARE(m_window->size(), QSize(352, 500));
        for (const auto* each : m_window->findChildren<QAbstractButton*>())
            QVERIFY2(!each->isVisible() || each->visibleRegion() == each->rect(), qPrintable(each->objectName()));
        for (const int lines : {0, 900}) {
            printUpTo(lines);
            for (const int width : {352, 1500}) {
                m_window->resize(width, 500);
                QTRY_VERIFY(m_window->width() == width && fits());
            }
        }
    }

    void standsBesideTheClient()
    {
        const QMargins frame(2, 32, 2, 6);
        for (const auto& [room, paper, apart] : {std::tuple(QRect(0, 0, 1440, 900), QSize(760, 720), true),
                                                 {QRect(0, 30, 960, 510), QSize(352, 472), true}, // dense 1920 x 1080
                                                 {QRect(70, 0, 800, 570), QSize(330, 532), false}}) {
            const SideBySide places = placeSideBySide(room, {600, 460}, {760, 720}, {330, 300}, frame);
            const QRect clientFrame(places.client, QSize(600, 460).grownBy(frame));
            const QRect paperFrame(places.paper, places.paperSize.grownBy(frame));
            QCOMPARE(places.paperSize, paper);
            QVERIFY(room.contains(clientFrame | paperFrame) && clientFrame.intersects(paperFrame) != apart);
        }
    }

    void tearsOffAndSaves()
    {
        printUpTo(100);
        click("tearOff");
        QVERIFY(m_paper->lineCount() == 0 && !button("save")->isEnabled());
        printUpTo(70);
        compareDots();
#ifdef __SANITIZE_THREAD__
        QSKIP("Qt's file dialog reads folders on a thread of its own, which the sanitizer cannot follow");
#endif
        const QTemporaryDir folder;
        click("save");
        auto* dialog = m_window->findChild<QFileDialog*>();
        emit dialog->fileSelected(folder.filePath("纸.png"));
        const QImage saved(folder.filePath("纸.png"));
        QVERIFY(saved == m_printer->paper(100) && saved.dotsPerMeterX() == 8000);
        emit dialog->fileSelected(folder.filePath("missing/纸.png"));
        QVERIFY(m_window->findChild<QMessageBox*>()); // says why there is no such file
        m_printer->reset();
        QTRY_COMPARE(m_paper->lineCount(), 0);
        printUpTo(5); // a new roll is shown from its beginning
    }

    void controls()
    {
        QVERIFY(button("pluggedIn")->isChecked());
        m_printer->reset(SimulatedPrinter::Model::K2);
        m_printer->unplug();
        m_printer->setCondition(SimulatedPrinter::Condition::CoverOpen);
        QTRY_VERIFY(button("conditionCoverOpen")->isChecked() && !button("pluggedIn")->isChecked());
        click("conditionPaperOut");
        QCOMPARE(m_printer->report().condition, SimulatedPrinter::Condition::PaperOut);
        QTest::keyClick(button("pluggedIn"), Qt::Key_Space);
        QVERIFY(m_printer->report().pluggedIn);
        click("modelK1"); // is another one, and comes plugged in
        QVERIFY(m_printer->report().pluggedIn && m_printer->report().model == SimulatedPrinter::Model::K1);
    }

    void framesInBothLanguages()
    {
        m_printer->receive(reinterpret_cast<const uchar*>("\x02\x1a\x00\x02\x00\x10\x00zzzz\x03"), 12);
        printUpTo(16);
        QCOMPARE(row(0), QString("0x1a 走纸 0 2 ✗ 错误"));
        QCOMPARE(row(1), QString("0x00 打印数据 1 48 正确"));
        QStringList counts;
        for (const char* label : {"frameCount", "crcErrors", "paperLength"})
            counts += m_window->findChild<QLabel*>(label)->text();
        QCOMPARE(counts.join(' '),
                 QString("正确的帧 16 <b style='color:#b42318'>CRC 错误 1</b> 纸长 16 点行 = 2.0 毫米"));
        click("tearOff");
        QTranslator english;
        QVERIFY(english.load(":/com/quillbox/language/quillbox_en_WW.qm"));
        QCoreApplication::installTranslator(&english);
        QCoreApplication::processEvents();
        QCOMPARE(m_log->rowCount(), 17);
        QCOMPARE(row(0), QString("0x1a Feed paper 0 2 ✗ Bad"));
        QCOMPARE(m_log->headerData(FrameLogModel::Meaning, Qt::Horizontal).toString(), QString("Meaning"));
    }

    void keepsNoProgramAlive()
    {
        QWidget client;
        client.show();
        QTimer::singleShot(0, &client, &QWidget::close);
        QTimer::singleShot(10000, &client, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0); // although the paper is still in sight
    }
};

QTEST_MAIN(PaperWindowTest)
#include "tst_paper_window.moc"
