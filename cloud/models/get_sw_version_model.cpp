#include "cloud/models/get_sw_version_model.h"

#include "cloud/models/json_fields.h"

void GetSWVersionModel::parse(const QJsonObject& object)
{
    readField(object, QStringLiteral("swCategory"), &swCategory);
    readField(object, QStringLiteral("swPath"), &swPath);
    readField(object, QStringLiteral("versionCode"), &versionCode);
    readField(object, QStringLiteral("versionName"), &versionName);
    readField(object, QStringLiteral("remark"), &remark);
    readField(object, QStringLiteral("mustUpdate"), &mustUpdate);
}

QJsonObject GetSWVersionModel::toJson() const
{
    return {
        {QStringLiteral("swCategory"), swCategory},   {QStringLiteral("swPath"), swPath},
        {QStringLiteral("versionCode"), versionCode}, {QStringLiteral("versionName"), versionName},
        {QStringLiteral("remark"), remark},           {QStringLiteral("mustUpdate"), mustUpdate},
    };
}
