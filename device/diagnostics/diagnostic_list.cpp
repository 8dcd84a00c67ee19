#include "device/diagnostics/diagnostic_list.h"

#include "device/diagnostics/diagnostic_item.h"

void addDiagnosticItem(QListWidget* list)
{
    auto* widget = new TestMainItem;
    auto* item = new QListWidgetItem(list);
    list->setItemWidget(item, widget); // owned by the list from here on
    item->setSizeHint(widget->sizeHint());
}

TestMainItem* diagnosticItem(const QListWidget* list, int row)
{
    return static_cast<TestMainItem*>(list->itemWidget(list->item(row)));
}
