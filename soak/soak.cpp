#ifdef ON_USB_BUS
#include "device/port_log.h"
#include "simulator/usb/virtual_usb_printer.h"
#endif

#include "app/language/language_switch.h"
#include "app/print_progress.h"
#include "app/start_up.h"
#include "content/capture/capture_screen.h"
#include "content/page/page_editor.h"
#include "content/page/page_renderer.h"
#include "device/printer.h"
#include "simulator/cloud/simulated_service.h"
#include "soak/flatness.h"
#include "soak/killed_draft.h"
#include "tests/app/shell_fixture.h"
#include "tests/device/imaged_dots.h"

#include <QAction>
#include <QDir>
#include <QMessageBox>
#include <QSettings>

#include <cmath>

using Model = SimulatedPrinter::Model;

QMap<QString, int> s_counts; // of jobs, of the results that the window was told, of all that happens

/// The window logs a result once the person has read it.
void countResults(QtMsgType, const QMessageLogContext& context, const QString& line)
{
    if (QByteArray(context.function).contains("MainWindow::slotsHandlePrintResult"))
        ++s_counts[line == "\"send success\"" ? "sent" : line == "\"canceled\"" ? "cancelled" : "failed"];
}

int results()
{
    return s_counts["sent"] + s_counts["cancelled"] + s_counts["failed"];
}

bool isReported()
{
    return results() >= s_counts["jobs"];
}

void tell(const QString& what)
{
    QString line = what + ':';
    for (const QString& name : s_counts.keys())
        line += QString(" %1 %2,").arg(name).arg(s_counts[name]);
    std::puts(qPrintable(line.chopped(1)));
    std::fflush(stdout);
}

/// A person at the client, and all that happens to the printer, the service and the process. What the window was told of
/// a page is held against the paper.
class Soak : public QObject
{
    SimulatedPrinter& m_printer = simulatedPrinter();
    QRandomGenerator m_random;
    Flatness m_flatness; ///< before there is a client
    QTimer m_reader;
    std::unique_ptr<SimulatedService> m_service;
    std::unique_ptr<Client> m_client;
    QByteArray m_dots; ///< of the page that was printed last
    QSize m_size;      ///< likewise
    bool m_replugs = false;

    int random(int from, int to) { return m_random.bounded(from, to + 1); }
    bool chance(int percent) { return random(1, 100) <= percent; }
    EditMainWindow& page() { return *m_client->window().page(); }

    static void check(bool good, const QString& what)
    {
        if (!good && ++s_counts["LOST"])
            tell("LOST, " + what);
    }
    template <class Condition>
    static void await(Condition condition, const char* what)
    {
        check(QTest::qWaitFor(condition, 60000), what);
    }

    void startClient()
    {
        m_client.reset();
        if (auto* dialog = shown<ProgressCatRunningDialog>())
            dialog->close(); // it waits for a timer of the window
        m_client = std::make_unique<Client>(serviceAddress());
        page().keepDrafts(draftsFolder());
        connect(&page(), &EditMainWindow::signDoPrint, this, &Soak::takePage);
    }

    /// The box of a failed job holds everything else up; other windows are only in the way.
    static void readBoxes()
    {
        for (QWidget* box : QApplication::topLevelWidgets()) {
            if (box->isVisible() && (box->inherits("QMessageBox") || box->inherits("UpgradeAppWindow"))) {
                s_counts["boxes"] += box->isModal() ? 1 : 0;
                box->close();
            }
        }
    }

    /// Plugged in and known. Nobody waits 8 s for a K1, which will not tell more.
    bool isReady()
    {
        m_printer.plugIn();
        const bool isK1 = m_printer.report().model == Model::K1;
        if (isK1 && g_printerReady)
            m_client->window().onDeviceInitTimeout();
        return page().printAction()->isEnabled() && g_printerReady && (isK1 || g_modelConfirmed);
    }

    void rest()
    {
        m_service = std::make_unique<SimulatedService>();
        page().editor()->clear();
        page().writeDraft();
        m_dots.clear();
        m_printer.reset(m_printer.report().model); // a new roll, and nothing counted
        await([this] { return isReady() && !shown<ProgressCatRunningDialog>(); }, "never at rest");
        m_flatness.measure(s_counts["languages"]);
    }

    void disturb()
    {
        if (chance(8)) {
            ++s_counts["models"];
            m_printer.unplug();
            m_printer.plugIn(m_printer.report().model == Model::K1 ? Model::K2 : Model::K1);
        }
        if (chance(10))
            turnLanguage();
        if (chance(8))
            askForUpdate();
        if (chance(3))
            killDraft();
    }

    static void turnLanguage()
    {
        ++s_counts["languages"];
        switchLanguage(shownLanguage() == kLanguageEnglish ? kLanguageChinese : kLanguageEnglish);
    }

    /// The service is well, dead, silent, or dies with the call.
    void askForUpdate()
    {
        ++s_counts["services"];
        m_service.reset();
        if (chance(75)) {
            m_service = std::make_unique<SimulatedService>();
            serviceAddress() = m_service->address();
            const QJsonObject version{{"versionCode", chance(50) ? "100" : "101"}, {"versionName", "V9"}};
            const auto answer = ServiceReply::enciphered(ServiceReply::success(version));
            m_service->setReply("GetSWVerssion", chance(30) ? ServiceReply{200, {}, {}, {}, true} : answer);
        }
        m_client->window().slotsAskForUpdate();
    }

    void killDraft()
    {
        ++s_counts["killed drafts"];
        page().editor()->clear();
        page().writeDraft(); // there is none of an empty page
        const int told = killDraftWriter(draftsFolder(), random(0, 200));
        startClient();
        check(isDraft(page().editor()->toPlainText(), told), "the draft is not whole");
        check(QDir(draftsFolder()).entryList({"*.unreadable*"}).isEmpty(), "a draft was put aside");
    }

    void capture()
    {
        page().captureAction()->trigger();
        const auto isBack = [this] { return m_client->window().width() == 600 && !shown<CaptureScreen>(); };
        await([&] { return shown<CaptureScreen>() || isBack(); }, "no capture");
        if (auto* overlay = shown<CaptureScreen>()) { // not on a platform without a screen
            ++s_counts["captures"];
            QTest::mousePress(overlay, Qt::LeftButton, {}, {random(0, 600), random(0, 500)});
            QTest::mouseRelease(overlay, Qt::LeftButton, {}, {random(601, 999), random(501, 999)});
            QTest::keyClick(overlay, chance(75) ? Qt::Key_Return : Qt::Key_Escape);
        }
        await(isBack, "the capture never ends");
    }

    void compose()
    {
        QTextEdit& editor = *page().editor();
        editor.clear();
        const int rows = static_cast<int>(std::pow(20000, m_random.generateDouble()));
        const QStringList words{"Quillbox ", "羽毛盒 ", "illicit ", "0123 ", "\n", "W"};
        while (editor.document()->size().height() < rows) {
            editor.setFontPointSize(9 * random(1, 4));
            for (int word = std::min(1 + rows / 10, 200); word > 0; --word)
                editor.insertPlainText(words[random(0, 5)]);
        }
        for (int pictures = chance(30) ? random(1, 3) : 0; pictures > 0; --pictures)
            emit m_client->window().signalsPickImage(noise(m_random, random(1, 700), random(1, 700)));
        if (chance(10))
            capture();
    }

    /// What is to stand on the paper: the page, rendered a second time.
    void takePage(const QImage& image, int printType)
    {
        ++s_counts["jobs"];
        s_counts["lines"] += image.height();
        check(renderPage(static_cast<PageEditor&>(*page().editor()), image.width()) == image, "rendered otherwise");
        m_dots = dotsOf(image, printType);
        m_size = image.size();
    }

    void printPage()
    {
        compose();
        // Whoever prints on a K2 before it has told its name gets a page for a K1, which is kept.
        if (chance(60) || m_printer.report().model == Model::K2)
            await([this] { return isReady(); }, "never ready");
        if (!page().printAction()->isEnabled()) // the client is connecting
            return;
        const qreal bytes = page().editor()->document()->size().height() * printHeadWidth() / 8 * 1.02 + 100;
        const auto atByte = static_cast<qint64>(bytes * m_random.generateDouble());
        const QByteArray fault =
            QByteArray("pulls,pulls,paper out,paper out,cancels,no,no,no,no,no").split(',')[random(0, 9)];
        ++s_counts[fault];
        m_replugs = chance(50);
        if (fault != "no")
            m_printer.fault([&](auto& faults) {
                (fault == "pulls" ? faults.bytesUntilGone : faults.bytesUntilHolding) = atByte;
            });
        const PrinterReport before = m_printer.report();
        const int sentBefore = s_counts["sent"];
        page().printAction()->trigger();
        if (chance(5))
            turnLanguage();
        if (fault == "paper out" || fault == "cancels") {
            await([&] { return isReported() || m_printer.report().faults.bytesUntilHolding == 0; },
                  "no paper runs out");
            if (fault == "cancels")
                emit m_client->window().findChild<PrintProgress*>()->cancelRequested();
            else // now and then for so long that the job gives up
                std::ignore = QTest::qWaitFor(isReported, chance(5) ? 15000 : random(1, 600));
            m_printer.fault([](auto& faults) { faults.bytesUntilHolding = -1; });
        }
        await(isReported, "a job is not reported");
        checkPaper(before, s_counts["sent"] > sentBefore, fault);
    }

    /// The page and the feed, or whole lines of its beginning. The feed alone may go with a cable that is pulled.
    void checkPaper(const PrinterReport& before, bool wasSent, const QByteArray& fault)
    {
        const QImage paper = m_printer.paper(before.paperLines);
        const QByteArray burnt(reinterpret_cast<const char*>(paper.constBits()),
                               static_cast<int>(paper.sizeInBytes()));
        const bool isWhole = burnt == m_dots + QByteArray(300 * SimulatedPrinter::headDots(before.model) / 8, '\0');
        const bool mayLoseFeed = before.faults.bytesUntilGone >= 0 && burnt == m_dots;
        const QString facts = "fault %1, sent %2, page %3 × %4, paper %5 × %6";
        check(wasSent ? isWhole || mayLoseFeed : m_dots.startsWith(burnt), facts.arg(fault.data())
                                                                               .arg(wasSent)
                                                                               .arg(m_size.width())
                                                                               .arg(m_size.height())
                                                                               .arg(paper.width())
                                                                               .arg(paper.height()));
        check(results() == s_counts["jobs"] && s_counts["boxes"] == s_counts["failed"],
              "not reported once; fault: " + fault);
    }

public:
    explicit Soak(quint32 seed)
        : m_random(seed)
    {
        m_reader.callOnTimeout(&Soak::readBoxes);
        m_reader.start(20);
        const auto replug = [this](bool isIn) { return isIn || !m_replugs ? void() : m_printer.plugIn(); };
        connect(&m_printer, &SimulatedPrinter::pluggedInChanged, this, replug, Qt::QueuedConnection);
        startClient();
    }

    /// @return  whether nothing was lost
    bool run(int ms)
    {
        QDeadlineTimer end(ms), told(10000), measured(0);
        for (; !end.hasExpired(); printPage()) {
            if (measured.hasExpired()) {
                rest();
                measured.setRemainingTime(std::max(5000, ms / 40));
            }
            if (told.hasExpired()) {
                tell(QString("%1 s left").arg(end.remainingTime() / 1000));
                told.setRemainingTime(10000);
            }
            disturb();
        }
        rest();
        m_client.reset();
        QTest::qWait(100); // for a result too many
        check(results() == s_counts["jobs"], "reported twice");
        check(m_flatness.isFlat(), "handles, threads or memory");
        return s_counts["LOST"] == 0;
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    qInstallMessageHandler(countResults);
    QSettings settings(kOrganization, kApplication);
    startUp(settings);
    if (arguments[1] == "--write-drafts")
        writeDrafts(arguments[2]);
    const quint32 seed = arguments.size() > 2 ? arguments[2].toUInt() : QRandomGenerator::global()->generate();
    std::printf("seed %u\n", seed);
#ifdef ON_USB_BUS
    setPortLog([](const char*) {});
    static VirtualUsbPrinter bus(simulatedPrinter()); // until the port has let go of it
#endif
    serviceAddress() = kNoService;
    const bool isGood = Soak(seed).run(static_cast<int>(arguments[1].toDouble() * 60000));
    tell(QString("seed %1, %2").arg(seed).arg(isGood ? "nothing lost" : "LOST"));
    return isGood ? 0 : 1;
}
