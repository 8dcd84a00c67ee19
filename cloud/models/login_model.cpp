#include "cloud/models/login_model.h"

#include "cloud/models/json_fields.h"

#include <QTextStream>

namespace {
const QString kUserName = QStringLiteral("userName");
const QString kUserPassWord = QStringLiteral("userPassWord");
} // namespace

void LoginModel::parse(const QJsonObject& object)
{
    readField(object, kUserName, &userName);
    readField(object, kUserPassWord, &userPassWord);
}

QJsonObject LoginModel::toJson() const
{
    return {
        {QStringLiteral("userId"), userId}, {kUserName, userName},
        {kUserPassWord, userPassWord},      {QStringLiteral("version"), version},
        {QStringLiteral("ip"), ip},         {QStringLiteral("type"), type},
        {QStringLiteral("remark"), remark}, {QStringLiteral("language"), language},
    };
}

void LoginModel::dump() const
{
    QTextStream(stdout) << "userName:\t" << userName << "\npassword:\t" << userPassWord << Qt::endl;
}
