#include "cloud/get_sw_version_api.h"

#include "cloud/client_identity.h"
#include "cloud/request_log.h"
#include "update/upgrade_app_window.h"

namespace {

/// What closes the client has a line of its own, with the members as they came: a code that is no text counts as none.
void logMandatory(const QJsonObject& content)
{
    QJsonObject reply;
    for (const QString& name : {QStringLiteral("versionCode"), QStringLiteral("mustUpdate")})
        reply.insert(name, content.value(name));
    const QByteArray json = QJsonDocument(reply).toJson(QJsonDocument::Compact);
    logRequestText(QStringLiteral("mandatory update: ") + QString::fromUtf8(json));
}

} // namespace

void GetSWVersionApi::checkVersion(const Callback& callback)
{
    m_callback = callback;
    const QJsonObject parameters{
        {QStringLiteral("swType"), QLatin1String(kClientIdentity)},
        {QStringLiteral("isFullPath"), true},
        {QStringLiteral("version"), kClientVersionCode},
    };
    sendRequest(QStringLiteral("GetSWVerssion"), parameters); // spelt as the service spells it
}

void GetSWVersionApi::onSuccess(int httpStatus, const QJsonObject& content)
{
    Q_UNUSED(httpStatus)
    GetSWVersionModel model;
    model.parse(content);
    if (model.mustUpdate)
        logMandatory(content);
    if (model.versionCode.toInt() > kClientVersionCode) {
        auto* window = new UpgradeAppWindow;
        window->setModel(model);
        window->show();
    }
    if (m_callback)
        m_callback(model);
}

void GetSWVersionApi::onFailed(int httpStatus, const QString& message)
{
    Q_UNUSED(httpStatus)
    Q_UNUSED(message)
}
