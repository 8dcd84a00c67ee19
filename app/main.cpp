#include "app/globals/settings.h"
#include "app/globals/trace.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QSettings>
#include <QTranslator>

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QApplication app(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/new/src/images/logo.png")));

    QSettings settings(kOrganization, kApplication);
    loadInstallationId(settings);
    trace(QStringLiteral("UUID") + g_uuid);

    // The stored language is read and not heeded: every start begins in Chinese, and another language shows once the
    // user switches to it. The translator lives as long as the process.
    const QString language = storedLanguage(settings);
    Q_UNUSED(language)
    auto* translator = new QTranslator;
    translator->load(kTranslationChinese, QString(), QString(), QString());
    QCoreApplication::installTranslator(translator);

    // Stands in for the main window, which is not part of the client yet.
    QLabel window(QCoreApplication::translate("main", "羽毛盒"));
    window.setAlignment(Qt::AlignCenter);
    window.setFixedSize(600, 460);
    window.show();
    return QApplication::exec();
}
