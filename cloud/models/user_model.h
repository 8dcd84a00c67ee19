#pragma once

#include "cloud/models/base_model.h"

#include <QString>

/// A user's account. The spellings of the members are the service's own.
class UserModel : public BaseModel
{
public:
    void parse(const QJsonObject& object) override;
    QJsonObject toJson() const override;

    int loginRecordId = 0;
    QString userPassWord;
    int userId = 0;
    QString userAge;
    QString sex;
    QString userName;
    QString nickName;
    QString email;
    QString pic;
    QString mobile;
    QString cityID;
    QString cityName;
    QString openId;
    QString unionID;
    int openType = 0;
    int friendVerssion = 0;
    QString personalSign;
    QString token;
    QString country;
    QString countryNumber;
    QString protocolIds;
};
