#include "cloud/models/json_fields.h"

void readField(const QJsonObject& object, const QString& key, QString* field)
{
    const QJsonValue value = object.value(key);
    if (value.isString())
        *field = value.toString();
}

void readField(const QJsonObject& object, const QString& key, bool* field)
{
    const QJsonValue value = object.value(key);
    if (value.isBool())
        *field = value.toBool(false);
}

void readField(const QJsonObject& object, const QString& key, int* field)
{
    const QJsonValue value = object.value(key);
    if (value.isDouble())
        *field = value.toInt(0);
}
