#include "demo/paper_style.h"

namespace {

const char kStyle[] = R"(
#printerBar, #paperBar, #logBar { background: #fdffff; border: none; border-bottom: 1px solid #dfdfdf;
                                  padding: 5px 10px; }
#logBar { border-top: 1px solid #dfdfdf; }
#statusBar { background: #f6f8f9; border: none; border-top: 1px solid #dfdfdf; padding: 4px 10px; }
#statusBar QLabel, #printerBar QLabel { color: #555c66; }
#logTitle { font-weight: bold; }
QSplitter::handle { background: #e8ecf0; }
QSplitter::handle:hover { background: #c6dcf5; }
QToolButton { color: black; background: #fdffff; border: 1px solid #cfd5dc; border-radius: 4px; padding: 3px 9px;
              min-height: 19px; }
#zoomIn, #zoomOut { padding: 3px 5px; min-width: 19px; }
#modelK1, #conditionReady { border-top-right-radius: 0; border-bottom-right-radius: 0; }
#conditionPaperOut { border-radius: 0; border-left: none; }
#modelK2, #conditionCoverOpen { border-top-left-radius: 0; border-bottom-left-radius: 0; border-left: none; }
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
