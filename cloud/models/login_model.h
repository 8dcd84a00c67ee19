#pragma once

#include "cloud/models/base_model.h"

#include <QString>

/// What a login sends.
class LoginModel : public BaseModel
{
public:
    void parse(const QJsonObject& object) override; ///< reads user name and password alone
    QJsonObject toJson() const override;

    /// Writes user name and password, which is a digest by then, to standard output, a line each.
    void dump() const;

    int userId = 0;
    QString userName;
    QString userPassWord; ///< MD5, 32 lower-case hexadecimal digits
    int version = 0;
    QString ip;
    int type = 0;
    QString remark;
    QString language; ///< code, as in the settings store
};
