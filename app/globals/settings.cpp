#include "app/globals/settings.h"

#include <QSettings>
#include <QUuid>

const QString kOrganization = QStringLiteral("Quillbox");
const QString kApplication = QStringLiteral("App_Start");
const QString kLanguageKey = QStringLiteral("language");
const QString kDefaultLanguage = QStringLiteral("zh_CN");
const QString kLanguageChinese = QStringLiteral("zh_CN");
const QString kLanguageEnglish = QStringLiteral("en_WW");
const QString kTranslationChinese = QStringLiteral(":/com/quillbox/language/quillbox_zh_CN.qm");
const QString kTranslationEnglishAlt = QStringLiteral(":/com/quillbox/language/quillbox_zh_WW.qm");
const QString kUuidKey = QStringLiteral("SETTINT_UUID");
QString g_uuid;
const QString kApiGetSubscriptionCategory = QStringLiteral("GetSubscriptionCategory");

void loadInstallationId(QSettings& settings)
{
    g_uuid = settings.value(kUuidKey, QString()).toString();
    if (!g_uuid.isEmpty())
        return;
    g_uuid = QUuid::createUuid().toString();
    settings.setValue(kUuidKey, g_uuid);
}

QString storedLanguage(const QSettings& settings)
{
    return settings.value(kLanguageKey, kDefaultLanguage).toString();
}
