#pragma once

#include <QJsonObject>
#include <QString>

// One field of a record at a time. A value of another JSON type leaves the field alone.

void readField(const QJsonObject& object, const QString& key, QString* field);
void readField(const QJsonObject& object, const QString& key, bool* field);
/// A number that is no int gives 0.
void readField(const QJsonObject& object, const QString& key, int* field);
