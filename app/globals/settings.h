#pragma once

#include <QString>

class QSettings;

extern const QString kOrganization;       ///< organisation of the settings store
extern const QString kApplication;        ///< application of the settings store
extern const QString kLanguageKey;        ///< settings key of the language code
extern const QString kDefaultLanguage;    ///< language code when none is stored
extern const QString kLanguageChinese;    ///< language code
extern const QString kLanguageEnglish;    ///< language code
extern const QString kTranslationChinese; ///< resource of the Chinese translation
/// Nobody loads it and no such resource exists; the language switch names the English file itself
/// (docs/architecture.md, "Kept behaviour").
extern const QString kTranslationEnglishAlt;
/// Settings key of the installation identifier. The T is how existing installations spell it.
extern const QString kUuidKey;
/// Identifier of this installation, a braced UUID of 38 characters; empty until loadInstallationId().
extern QString g_uuid;
extern const QString kApiGetSubscriptionCategory; ///< name of a cloud call

/// Reads the identifier of this installation into g_uuid; the first start makes one and writes it. An identifier that
/// was once written is never replaced. GUI thread, at start-up.
/// @param settings  the store (kOrganization, kApplication), owned by the caller
void loadInstallationId(QSettings& settings);

/// The language code that the person chose last, or kDefaultLanguage.
QString storedLanguage(const QSettings& settings);
