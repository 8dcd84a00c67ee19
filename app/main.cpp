#include "app/globals/settings.h"
#include "app/main_window.h"
#include "app/start_up.h"

#include <QApplication>
#include <QSettings>

int main(int argc, char** argv)
{
    setUpHighDpi();
    QApplication app(argc, argv);
    QSettings settings(kOrganization, kApplication);
    startUp(settings);

    MainWindow window;
    window.show();
    const int result = QApplication::exec();
    window.stopThreads();
    return result;
}
