#include "app/globals/model.h"

const QStringList g_modelNames = {QStringLiteral("Quillbox_K1"), QStringLiteral("Quillbox_K2")};
std::atomic<qint32> g_modelIndex{0};
std::atomic<bool> g_modelConfirmed{false};

namespace {
constexpr int kWiderHead = 1; // model index
constexpr int kHeadWidthK1 = 384;
constexpr int kHeadWidthK2 = 576;
} // namespace

bool takeReportedModel(const QString& name)
{
    if (name != modelName(kWiderHead))
        return false;
    g_modelConfirmed = true;
    g_modelIndex = kWiderHead;
    return true;
}

void forgetReportedModel()
{
    g_modelIndex = 0;
    g_modelConfirmed = false;
}

int headWidth(int index)
{
    return index == kWiderHead ? kHeadWidthK2 : kHeadWidthK1;
}

int printHeadWidth()
{
    return headWidth(g_modelIndex);
}

QString modelName(int index)
{
    return g_modelNames.value(index);
}

int modelIndex(const QString& name)
{
    return qMax(0, g_modelNames.indexOf(name));
}
