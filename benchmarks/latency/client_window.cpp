#include "client_window.h"

#include "figures.h"
#include "first_frame_port.h"

#include "app/main_window.h"
#include "cloud/service_address.h"
#include "content/page/edit_main_window.h"
#include "demo/landscape.h"
#include "simulator/simulated_port.h"

#include <QPushButton>
#include <QTextCursor>
#include <QTextEdit>

namespace {

constexpr int kLimitMs = 20000;
constexpr int kSettleMs = 300; ///< what the last page has left to be painted
constexpr int kScreenLines = 9;
constexpr int kPhotos = 5;
constexpr int kLinesBetween = 60; ///< with five photos 300
constexpr QSize kPhotoSize(1600, 1200);
constexpr char kLine[] = "羽毛盒 prints receipts, labels and lists";
constexpr char kParagraph[] =
    "羽毛盒 prints receipts, labels, lists and recipes: what a person writes in a longer paragraph";

class ClientWindow
{
public:
    ClientWindow()
    {
        serviceAddress() = QStringLiteral("http://127.0.0.1:1/"); // where nothing listens
        simulatedPrinter().reset(SimulatedPrinter::Model::K2);
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_button = m_window->findChild<QPushButton*>(QStringLiteral("printButton"));
        waitUntil([this] { return !m_button->isEnabled(); }, kLimitMs); // the connecting phase has begun
        waitUntilReady();
    }
    ~ClientWindow()
    {
        m_window->close();
        m_window->stopThreads();
    }
    Q_DISABLE_COPY_MOVE(ClientWindow)

    void waitUntilReady()
    {
        waitUntil([this] { return m_button->isEnabled(); }, kLimitMs);
    }

    void print() { m_button->click(); }
    EditMainWindow& page() { return *m_window->page(); }

private:
    std::unique_ptr<MainWindow> m_window;
    QPushButton* m_button;
};

void writeLines(QTextEdit& editor, int count, const char* text)
{
    for (int i = 0; i < count; ++i) {
        editor.insertPlainText(QString::number(i + 1) + QLatin1Char(' ') + QString::fromUtf8(text) +
                               QLatin1Char('\n'));
        editor.moveCursor(QTextCursor::End);
    }
}

void writePhotos(EditMainWindow& page, const char* text)
{
    const QImage photo = landscapePicture(kPhotoSize);
    for (int i = 0; i < kPhotos; ++i) {
        page.slotsInsertImage(photo);
        page.editor()->moveCursor(QTextCursor::End);
        writeLines(*page.editor(), kLinesBetween, text);
        waitFor(1100); // pictures of one second share their name
    }
}

struct Page
{
    const char* name;
    double wantedMs;
    void (*write)(EditMainWindow& page);
};

constexpr Page kPages[] = {
    {"one screen", 15, [](EditMainWindow& page) { writeLines(*page.editor(), kScreenLines, kLine); }},
    {"5 photos, 300 lines", 100, [](EditMainWindow& page) { writePhotos(page, kLine); }},
    {"5 photos, 300 long paragraphs", 100, [](EditMainWindow& page) { writePhotos(page, kParagraph); }},
};

void measure(ClientWindow& client, const Page& page, int runs)
{
    const QString name = QString::fromLatin1(page.name);
    Figures first{QStringLiteral("click -> first frame, ") + name, QStringLiteral("ms"), {}, page.wantedMs};
    Figures blocked{QStringLiteral("  window blocked, ") + name, QStringLiteral("ms"), {}, page.wantedMs};
    page.write(client.page());
    for (int run = 0; run < runs; ++run) {
        waitFor(kSettleMs);
        forgetFirstFrame();
        const qint64 begin = steadyNs();
        client.print();
        const qint64 end = steadyNs();
        waitUntil([] { return firstFrameAt() != 0; }, kLimitMs);
        client.waitUntilReady();
        first.runs += static_cast<double>(firstFrameAt() - begin) / 1e6;
        blocked.runs += static_cast<double>(end - begin) / 1e6;
    }
    print(first);
    print(blocked);
    client.page().editor()->clear();
}

} // namespace

void measureClicks(int runs)
{
    ClientWindow client;
    for (const Page& page : kPages)
        measure(client, page, runs);
}

void measureIdleWindow(int seconds)
{
    const ClientWindow client;
    print(idleShare(QStringLiteral("idle, plugged in, no bus"), CLOCK_PROCESS_CPUTIME_ID, seconds));
}
