#pragma once

#include "cloud/base_api.h"
#include "cloud/models/get_sw_version_model.h"

#include <functional>

/// Asks for the newest version of the client, and opens an UpgradeAppWindow when it is newer than this one. A failure
/// shows nothing and calls nobody.
class GetSWVersionApi : public BaseApi
{
    Q_OBJECT

public:
    using Callback = std::function<void(GetSWVersionModel)>;

    using BaseApi::BaseApi;

    /// @param callback  called with each version that the service reports, after the window is shown; may be empty
    void checkVersion(const Callback& callback);

protected:
    void onSuccess(int httpStatus, const QJsonObject& content) override;
    void onFailed(int httpStatus, const QString& message) override;

private:
    Callback m_callback;
};
