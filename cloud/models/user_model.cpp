#include "cloud/models/user_model.h"

#include "cloud/models/json_fields.h"

namespace {

struct TextField
{
    QString key;
    QString UserModel::*field;
};

struct NumberField
{
    QString key;
    int UserModel::*field;
};

const NumberField kNumbers[] = {
    {QStringLiteral("loginRecordId"), &UserModel::loginRecordId},
    {QStringLiteral("userId"), &UserModel::userId},
    {QStringLiteral("openType"), &UserModel::openType},
    {QStringLiteral("friendVerssion"), &UserModel::friendVerssion},
};

const TextField kTexts[] = {
    {QStringLiteral("userPassWord"), &UserModel::userPassWord},
    {QStringLiteral("userAge"), &UserModel::userAge},
    {QStringLiteral("sex"), &UserModel::sex},
    {QStringLiteral("userName"), &UserModel::userName},
    {QStringLiteral("nickName"), &UserModel::nickName},
    {QStringLiteral("email"), &UserModel::email},
    {QStringLiteral("pic"), &UserModel::pic},
    {QStringLiteral("mobile"), &UserModel::mobile},
    {QStringLiteral("cityID"), &UserModel::cityID},
    {QStringLiteral("cityName"), &UserModel::cityName},
    {QStringLiteral("openId"), &UserModel::openId},
    {QStringLiteral("unionID"), &UserModel::unionID},
    {QStringLiteral("personalSign"), &UserModel::personalSign},
    {QStringLiteral("token"), &UserModel::token},
    {QStringLiteral("country"), &UserModel::country},
    {QStringLiteral("countryNumber"), &UserModel::countryNumber},
    {QStringLiteral("protocolIds"), &UserModel::protocolIds},
};

} // namespace

void UserModel::parse(const QJsonObject& object)
{
    for (const NumberField& number : kNumbers)
        readField(object, number.key, &(this->*number.field));
    for (const TextField& text : kTexts)
        readField(object, text.key, &(this->*text.field));
}

QJsonObject UserModel::toJson() const
{
    QJsonObject object;
    for (const NumberField& number : kNumbers)
        object.insert(number.key, this->*number.field);
    for (const TextField& text : kTexts)
        object.insert(text.key, this->*text.field);
    return object;
}
