#include "cloud/models/subscription_category_model.h"

#include "cloud/models/json_fields.h"

#include <QTextStream>

void SubscriptionCategoryModel::parse(const QJsonObject& object)
{
    readField(object, QStringLiteral("categoryId"), &categoryId);
    readField(object, QStringLiteral("name"), &name);
}

QJsonObject SubscriptionCategoryModel::toJson() const
{
    return {{QStringLiteral("categoryId"), categoryId}, {QStringLiteral("name"), name}};
}

void SubscriptionCategoryModel::dump() const
{
    QTextStream(stdout) << "categoryId:\t" << categoryId << "\nname:\t" << name << Qt::endl;
}
