#pragma once

#include "cloud/models/base_model.h"

#include <QString>

/// The newest version of the client, as the service reports it.
class GetSWVersionModel : public BaseModel
{
public:
    void parse(const QJsonObject& object) override;
    QJsonObject toJson() const override;

    QString swCategory;
    QString swPath;      ///< address of the installer
    QString versionCode; ///< decimal text, compared as a number
    QString versionName; ///< for people
    QString remark;      ///< release notes, plain text
    bool mustUpdate = false;
};
