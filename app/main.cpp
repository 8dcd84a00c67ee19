#include "app/close_request.h"
#include "app/globals/settings.h"
#include "app/main_window.h"
#include "app/start_up.h"
#include "device/port_log.h"

#include <QApplication>
#include <QSettings>
#include <QtDebug>

namespace {

int run(int argc, char** argv, bool* threadsEnded)
{
    setUpHighDpi();
    QApplication app(argc, argv);
    QSettings settings(kOrganization, kApplication);
    startUp(settings);
    setPortLog([](const char* line) { qDebug().noquote() << QString::fromUtf8(line); });

    MainWindow window;
    window.keepDrafts(draftsFolder());
    heedCloseRequests(window);
    window.show();
    const int result = QApplication::exec();
    *threadsEnded = window.stopThreads();
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    bool threadsEnded = true;
    const int result = run(argc, argv, &threadsEnded);
    return leaveMain(result, threadsEnded);
}
