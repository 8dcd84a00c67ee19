#include "demo/paper_style.h"

#include <QLabel>
#include <QStyle>
#include <QVariant>

namespace {

const char kStyle[] = R"(
QFrame[bar="true"] { background: #fdffff; border: none; border-bottom: 1px solid #dfdfdf; }
#statusBar { background: #f6f8f9; border: none; border-top: 1px solid #dfdfdf; }
#statusBar QLabel { color: #555c66; }
#statusBar QLabel[alarm="true"] { color: #b42318; font-weight: bold; }
#printerBar QLabel { color: #555c66; }
#logBar { border-top: 1px solid #dfdfdf; }
#logTitle { font-weight: bold; }
QSplitter::handle { background: #e8ecf0; }
QSplitter::handle:hover { background: #c6dcf5; }
QToolButton { background: #fdffff; border: 1px solid #cfd5dc; border-radius: 4px; padding: 3px 9px;
              min-height: 19px; }
#zoomIn, #zoomOut { padding: 3px 5px; min-width: 19px; }
QToolButton[segment="first"] { border-top-right-radius: 0; border-bottom-right-radius: 0; }
QToolButton[segment="middle"] { border-radius: 0; border-left: none; }
QToolButton[segment="last"] { border-top-left-radius: 0; border-bottom-left-radius: 0; border-left: none; }
QToolButton:hover:enabled { background: #eef3f8; }
QToolButton:checked { background: #d9e8fa; color: #123d6e; }
QToolButton:pressed { background: #c6dcf5; }
QToolButton:focus { border: 1px solid #4a8ad4; }
QToolButton:disabled { color: #b6bbc2; border-color: #e3e7eb; }
PaperView { border: 1px solid transparent; background: #e8ecf0; }
PaperView:focus { border-color: #a8c8ec; }
QAbstractScrollArea::corner { background: transparent; border: none; }
QTableView { background: white; border: none; selection-background-color: #d9e8fa; selection-color: black; }
QTableView::item { border: none; padding: 0 6px; }
QHeaderView { background: #f6f8f9; border: none; }
QHeaderView::section { background: #f6f8f9; color: #555c66; border: none; border-bottom: 1px solid #dfdfdf;
                       padding: 3px 9px; }
QScrollBar { background: transparent; border: none; margin: 0; }
QScrollBar:vertical { width: 12px; }
QScrollBar:horizontal { height: 12px; }
QScrollBar::handle { background: #c3c9d1; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: #a9b1bb; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

} // namespace

QString paperStyle()
{
    return QString::fromLatin1(kStyle);
}

QColor lampColour(bool pluggedIn, bool ready)
{
    if (!pluggedIn)
        return {0x8a, 0x93, 0x9e};
    return ready ? QColor(0x4c, 0xc3, 0x6a) : QColor(0xf2, 0xa5, 0x3a);
}

void setAlarm(QLabel* label, bool alarm)
{
    if (label->property("alarm").toBool() == alarm)
        return;
    label->setProperty("alarm", alarm);
    label->style()->unpolish(label); // style sheets look at properties only when a widget is polished
    label->style()->polish(label);
}
