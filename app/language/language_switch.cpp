#include "app/language/language_switch.h"

#include "app/globals/settings.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTranslator>

namespace {
const QString kTranslationEnglish = QStringLiteral(":/com/quillbox/language/quillbox_en_WW.qm");
} // namespace

void switchLanguage(const QString& code)
{
    auto* translator = new QTranslator; // the newest is asked first, so the older ones stay installed
    translator->load(code == kLanguageEnglish ? kTranslationEnglish : kTranslationChinese);
    QCoreApplication::installTranslator(translator);
    QSettings(kOrganization, kApplication).setValue(kLanguageKey, code);
}

QString shownLanguage()
{
    return QCoreApplication::translate("LanguageSwitch", "zh_CN"); // each translation names itself
}
