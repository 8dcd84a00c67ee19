#include "app/globals/sheet_model.h"

#include "app/globals/model.h"
#include "app/globals/settings.h"

#include <QSettings>

namespace {
const QString kSheetModelKey = QStringLiteral("sheetModel");
}

void SheetModel::load(const QSettings& settings)
{
    m_index = modelIndex(settings.value(kSheetModelKey).toString());
    emit changed();
}

void SheetModel::choose(const QString& name)
{
    const int index = g_modelNames.indexOf(name);
    if (index < 0 || index == m_index)
        return;
    m_index = index;
    QSettings(kOrganization, kApplication).setValue(kSheetModelKey, name);
    emit changed();
}

int SheetModel::widthDots() const
{
    return headWidth(m_index);
}

SheetModel& sheetModel()
{
    static SheetModel model;
    return model;
}
