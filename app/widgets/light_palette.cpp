#include "app/widgets/light_palette.h"

QPalette lightPalette()
{
    QPalette palette(QColor(0xf0, 0xf2, 0xf4), QColor(0xfd, 0xff, 0xff));
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(role, QColor(0x2b, 0x2f, 0x36));
        palette.setColor(QPalette::Disabled, role, QColor(0xb6, 0xbb, 0xc2));
    }
    palette.setColor(QPalette::Highlight, QColor(0xd9, 0xe8, 0xfa));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}
