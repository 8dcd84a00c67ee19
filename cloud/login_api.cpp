#include "cloud/login_api.h"

#include "app/globals/settings.h"
#include "cloud/digests.h"
#include "cloud/models/login_model.h"
#include "cloud/request_log.h"

#include <QSettings>
#include <QtDebug>

void LoginApi::login(const QString& userName, const QString& password, const Callback& callback)
{
    m_callback = callback;
    LoginModel parameters;
    parameters.userName = userName;
    parameters.userPassWord = md5Text(password);
    parameters.language = storedLanguage(QSettings(kOrganization, kApplication));
    parameters.dump();
    sendRequest(QStringLiteral("login"), parameters.toJson());
}

void LoginApi::onSuccess(int httpStatus, const QJsonObject& content)
{
    Q_UNUSED(httpStatus)
    qDebug() << "onSuccess";
    UserModel user;
    user.parse(content);
    logRequestText(QString::fromUtf8(QJsonDocument(user.toJson()).toJson(QJsonDocument::Compact)));
    m_callback(user);
}
