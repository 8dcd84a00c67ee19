#pragma once

#include "cloud/base_api.h"
#include "cloud/models/user_model.h"

#include <functional>

/// Signs a user in. A failure shows a dialog. Nothing is kept of the account: that is for the callback.
class LoginApi : public BaseApi
{
    Q_OBJECT

public:
    using Callback = std::function<void(UserModel)>;

    using BaseApi::BaseApi;

    /// @param password  as typed; only its MD5 digest leaves this function
    /// @param callback  called with the account; must not be empty: nothing looks before the call
    void login(const QString& userName, const QString& password, const Callback& callback);

protected:
    void onSuccess(int httpStatus, const QJsonObject& content) override;

private:
    Callback m_callback;
};
