#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class ProgressCatRunningDialog;
class QNetworkAccessManager;
class QNetworkReply;

/// One call to the cloud service: enciphers and signs its parameters, posts them, and hands the reply to one of its
/// handlers, or to none. A busy dialog shows meanwhile. GUI thread; nothing blocks.
///
/// Both handlers get the HTTP status, never the service's own code. Each object carries one call at a time. Its owner
/// deletes it, within a handler by deleteLater(); a call that is still on its way is given up then.
class BaseApi : public QObject
{
    Q_OBJECT

public:
    /// A longer reply is given up and counts as a network error. So is the text within "data" limited, since cipher
    /// and base64 make no text shorter, and what Qt makes of it: some 30 MB at worst, read in a tenth of a second.
    static constexpr qint64 kLongestReplyBytes = qint64{1024} * 1024;

    explicit BaseApi(QObject* parent = nullptr);
    ~BaseApi() override;

    /// @param apiName  name of the call, appended to the service's address
    void sendRequest(const QString& apiName, const QJsonDocument& parameters);
    void sendRequest(const QString& apiName, const QJsonObject& parameters);
    void sendRequest(const QString& apiName, const QJsonArray& parameters);
    /// @param body  of the form, sent as it is
    void doPost(const QString& apiName, const QByteArray& body);
    void doGet(const QString& apiName);

    void setShowProgress(bool show); ///< whether doPost() shows the busy dialog; it does unless told otherwise
    /// How long the service may say nothing before the call fails as without a connection.
    void setSilenceLimitMs(int ms);
    /// How long a call may take from its start to the last byte of its reply, 30 s unless told otherwise. Then it
    /// fails, with the reply's status where it has come, else as without a connection.
    void setTimeLimitMs(int ms);

signals:
    // What travels, for whoever watches the calls; the client itself needs neither.

    /// sendRequest() has begun.
    /// @param plainText   the parameters as JSON
    /// @param cipherText  what is sent instead of them
    void signalSent(QString apiName, QString plainText, QString cipherText);
    /// The call is over; comes after its handler, also where none was called.
    /// @param httpStatus  -1: there was no connection
    /// @param plainText   the reply, deciphered where it came enciphered; without a connection a text that says so
    /// @param cipherText  the reply as it came enciphered; empty for one that came plain
    void signalReceived(int httpStatus, QString plainText, QString cipherText);

protected:
    /// Reserved for replies whose content is an array, which are dropped today: nothing calls it.
    virtual void onArray(int httpStatus, const QJsonArray& content);
    virtual void onSuccess(int httpStatus, const QJsonObject& content);
    /// Shows code and message in a dialog of its own.
    /// @param httpStatus  -1: there was no connection
    virtual void onFailed(int httpStatus, const QString& message);

private slots:
    void onRequestFinished(QNetworkReply* reply);

private:
    enum Method { Get, Post };

    void setConstantHeaders();
    void start(QNetworkReply* reply);
    void showBusy();
    void closeBusy();
    void handleText(int httpStatus, const QString& text);

    QPointer<ProgressCatRunningDialog> m_progressDialog; ///< null until doPost(); closed, not deleted
    bool m_showProgress = true;
    QNetworkRequest m_request;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    int m_timeLimitMs = 30000;
    int m_userId = 0;      ///< of the settings store; 0: nobody has logged in
    Method m_method = Get; ///< of the last call, for the debugger
};
