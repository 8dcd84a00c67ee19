#include "device/diagnostics/diagnostic_list.h"

#include "device/diagnostics/diagnostic_item.h"

namespace {

// Rows are widgets of their own, whose text does not turn light with a dark selection.
const char kListStyle[] = R"(
QListWidget { background: white; }
QListWidget::item:selected { background: #c6dcf5; }
QLabel { background: transparent; color: black; }
)";

} // namespace

void makeDiagnosticItems(QListWidget* list, int count)
{
    list->setStyleSheet(QString::fromLatin1(kListStyle));
    for (int row = 0; row < count; ++row)
        list->setItemWidget(new QListWidgetItem(list), new TestMainItem); // owned by the list from here on
}

void fitDiagnosticItems(QListWidget* list)
{
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setSizeHint(list->itemWidget(list->item(row))->sizeHint());
}

TestMainItem* diagnosticItem(const QListWidget* list, int row)
{
    return static_cast<TestMainItem*>(list->itemWidget(list->item(row)));
}
