#include "app/system_font.h"

#include <QApplication>
#include <QFont>

/// Left alone, Qt takes the stock font of the nineties, which is smaller and in Chinese has the thin strokes of Song.
void useSystemFont()
{
    const QFont font = QApplication::font("QMessageBox");
    // Where that has no Chinese, Qt would ask a Japanese font first and mix the shapes of two countries.
    QFont::insertSubstitutions(font.family(),
                               {"Microsoft YaHei UI", "Microsoft YaHei", "Noto Sans CJK SC", "SimSun"});
    QApplication::setFont(font);
}
