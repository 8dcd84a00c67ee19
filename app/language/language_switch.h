#pragma once

#include <QString>

// The language of the running program. GUI thread.

/// Shows a language in every window, by one more translator that lives as long as the process, and stores it.
/// @param code  kLanguageChinese or kLanguageEnglish
void switchLanguage(const QString& code);

/// Code of the language that the windows show: of the translator that was installed last, whoever did it.
QString shownLanguage();
