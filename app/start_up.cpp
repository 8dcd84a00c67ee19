#include "app/start_up.h"

#include "app/globals/settings.h"
#include "app/globals/sheet_model.h"
#include "app/globals/trace.h"
#include "app/process_end.h"
#include "app/system_font.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QStandardPaths>
#include <QTranslator>

#include <cstdio>

namespace {

/// Every start begins in Chinese, and another language shows once the user switches to it: the stored one is read and
/// not heeded (docs/architecture.md, "Kept behaviour"). The translator lives as long as the process.
void installChinese(const QString& storedLanguage)
{
    Q_UNUSED(storedLanguage)
    auto* translator = new QTranslator;
    translator->load(kTranslationChinese, QString(), QString(), QString());
    QCoreApplication::installTranslator(translator);
}

} // namespace

void setUpHighDpi()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    // No widget draws by OpenGL, whose libraries take as much memory as all else and half as long again to start.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
}

void startUp(QSettings& settings)
{
    useSystemFont();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/new/src/images/logo.png")));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.quillbox.Quillbox"));
    loadInstallationId(settings);
    trace(QStringLiteral("UUID") + g_uuid);
    installChinese(storedLanguage(settings));
    sheetModel().load(settings);
}

int leaveMain(int result, bool threadsEnded)
{
    if (!threadsEnded) {
        std::fflush(nullptr);
        endProcess(result);
    }
    return result;
}

/// The application has no name of its own, for its settings are opened by theirs; so this is no AppDataLocation.
QString draftsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') + kOrganization +
           QStringLiteral("/drafts");
}
