#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/globals/settings.h"
#include "cloud/digests.h"
#include "cloud/get_sw_version_api.h"
#include "cloud/login_api.h"
#include "cloud/service_address.h"
#include "cloud/text_cipher.h"
#include "simulator/cloud/service_crypto.h"
#include "simulator/cloud/simulated_service.h"
#include "tests/shown_window.h"
#include "update/upgrade_app_window.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QtTest>

namespace {

/// Notes which handler was called with what.
class Call : public BaseApi
{
public:
    QStringList handlers;

protected:
    void onSuccess(int status, const QJsonObject& content) override
    {
        handlers << QString("success %1 ").arg(status) + QJsonDocument(content).toJson(QJsonDocument::Compact);
    }
    void onFailed(int status, const QString& message) override
    {
        handlers << QString("failed %1 ").arg(status) + message;
    }
};

QByteArray s_log;

void noteLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    s_log += text.toUtf8() + '\n';
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

QByteArray inData(const QByteArray& inner)
{
    return "{\"data\":\"" + serviceEncipher(inner) + "\"}";
}

const QString kCall = "some/Call";

} // namespace

/// What a call sends and what becomes of each reply, over real sockets; the service checks with another cipher.
class RequestsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedService> m_service;

    /// The handlers that were called when a call had come back.
    QStringList handlersOf(const ServiceReply& reply)
    {
        m_service->setReply(kCall, reply);
        Call call;
        call.sendRequest(kCall, QJsonObject());
        const auto* busy = shown<ProgressCatRunningDialog>();
        if (!busy || !QTest::qWaitFor([busy] { return !busy->isVisible(); }, 60000))
            return {"no answer"};
        QCoreApplication::processEvents();
        return call.handlers;
    }

private slots:
    void init()
    {
        QSettings(kOrganization, kApplication).clear();
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        m_service = std::make_unique<SimulatedService>();
        serviceAddress() = m_service->address();
    }

    void cleanup()
    {
        qInstallMessageHandler(nullptr);
        for (QWidget* widget : QApplication::topLevelWidgets())
            delete widget;
    }

    void sends()
    {
        QSettings(kOrganization, kApplication).setValue("userId", 4711);
        m_service->setReply(kCall, ServiceReply::plain(ServiceReply::success({})));
        // Lengths over more than a block, and characters of every length in UTF-8.
        for (const QString& text : {QString(), QString("plain+/="), QString::fromUtf8("é小票🖨\n\"\\")}) {
            const QJsonObject parameters{{"text", text}, {"list", QJsonArray{1, 2.5, true}}};
            Call call;
            call.sendRequest(kCall, parameters);
            QTRY_COMPARE(call.handlers.size(), 1);
            const ServiceRequest request = m_service->requests().last();
            QCOMPARE(request.faults, QStringList());
            QCOMPARE(request.parameters, parameters);
            QCOMPARE(request.headers.value("userid"), QByteArray("4711"));
            QCOMPARE(request.headers.value("uuid"), g_uuid.toLatin1());
        }
        Call list;
        list.sendRequest(kCall, QJsonArray{"a"});
        QTRY_COMPARE(m_service->requests().size(), 4);
        QCOMPARE(m_service->requests().last().parameterText, QByteArray("[\n    \"a\"\n]\n"));
    }

    /// The worked example, which was made by another program.
    void protocolDocument()
    {
        QFile document(PROTOCOL_DOCUMENT);
        QVERIFY(document.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(document.readAll());
        const QJsonObject asked{
            {"swType", "com.quillbox.featherbox.win.app"}, {"isFullPath", true}, {"version", 100}};
        const QString cipher = encryptTextUrlSafe(QJsonDocument(asked).toJson());
        QVERIFY(text.contains("\"parameter\": \"" + cipher + '"'));
        const QString message = "{\n    \"parameter\": \"" + cipher + "\"\n}\n";
        QVERIFY(text.contains(requestSignature("0", message, "1767225600")));
    }

    void replies_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QStringList>("handlers");
        const QStringList nothing;
        const QStringList unparsed{"failed 200 json_parse_error"};
        const QStringList unknown{"failed 200 known error"};
        const auto row = [](const char* name, const QByteArray& body, const QStringList& handlers) {
            QTest::newRow(name) << body << handlers;
        };
        row("success", R"({"code":1,"result":"","content":{"a":1}})", {R"(success 200 {"a":1})"});
        row("behind a zero", QByteArray("{\"code\":1,\"result\":\"ok\",\"content\":{}}\0]", 39), {"success 200 {}"});
        row("Chinese, plain", R"({"code":0,"result":"错"})", {QString("failed 200 ") + QString::fromLatin1("错")});
        row("Chinese, enciphered", inData(R"({"code":1,"result":"","content":{"错":1}})"),
            {R"(success 200 {"错":1})"});
        row("no result", R"({"code":1,"content":{}})", unknown);
        row("result is a number", R"({"code":1,"result":1,"content":{}})", unknown);
        row("content is a list", R"({"code":1,"result":"ok","content":[1]})", nothing);
        row("no content", R"({"code":1,"result":"ok"})", nothing);
        row("failure", R"({"code":0,"result":"bad","content":{}})", {"failed 200 bad"});
        row("failure without result", R"({"code":2})", {R"(failed 200 {"code":2})"});
        row("inner failure without result", inData(R"({"code":2})"), {R"(failed 200 {"code":2})"});
        row("code is no whole number", R"({"code":1.5,"result":"bad"})", {"failed 200 bad"});
        row("code beyond int", R"({"code":4294967297,"result":"bad"})", {"failed 200 bad"});
        row("code is a text", R"({"code":"1","result":"bad"})", nothing);
        row("no code", R"({"result":"x"})", nothing);
        row("a list", R"([1])", nothing);
        row("data is a number", R"({"data":5,"code":0,"result":"bad"})", {"failed 200 bad"});
        row("data is empty", R"({"data":"","code":0})", nothing);
        row("data is noise", R"({"data":"%&/","code":0})", nothing);
        row("data is another cipher's", R"({"data":"AAAAAAAAAAAAAAAAAAAAAA==","code":0})", nothing);
        row("data in data", inData(inData(R"({"code":0})")), nothing);
        row("empty", "", unparsed);
        row("null", "null", unparsed);
        row("noise", QByteArray::fromHex("ff007f80c3"), unparsed);
        row("nested too deep", nested(100000), unparsed);
        row("inner nested too deep", inData(nested(100000)), nothing);
        row("64 MiB", "{\"code\":0,\"result\":\"bad\",\"x\":\"" + QByteArray((64 << 20) - 40, 'x') + "\"}",
            {"failed 200 bad"});
        row("too long", QByteArray((64 << 20) + (1 << 20), 'x'), {"failed 200 "});
    }

    void replies()
    {
        QFETCH(QByteArray, body);
        QFETCH(QStringList, handlers);
        ServiceReply reply;
        reply.body = body;
        QCOMPARE(handlersOf(reply), handlers);
    }

    void compressedReplies()
    {
        ServiceReply reply = ServiceReply::plain(ServiceReply::success({}));
        reply.contentType = "application/json";
        QCOMPARE(handlersOf(reply), QStringList{"failed 200 json_parse_error"});
    }

    void statuses_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<QStringList>("handlers");
        const QStringList followed{"success 200 {}"};
        QTest::newRow("created") << 201 << QByteArray() << QStringList{"success 201 {}"};
        for (const int status : {301, 302, 303, 307, 308})
            QTest::addRow("%d", status) << status << QByteArray("Other") << followed;
        QTest::newRow("redirect to nowhere") << 302 << QByteArray() << QStringList{"failed 302 "};
        QTest::newRow("304") << 304 << QByteArray() << QStringList{"failed 304 json_parse_error"};
        for (const int status : {400, 401, 404, 500, 503})
            QTest::addRow("%d", status) << status << QByteArray() << QStringList{"failed %1 {\"code\":1}"};
    }

    void statuses()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, location);
        QFETCH(QStringList, handlers);
        m_service->setReply("some/Other", ServiceReply::plain(ServiceReply::success({})));
        ServiceReply reply = ServiceReply::plain(ServiceReply::success({}));
        if (status >= 300)
            reply.body = R"({"code":1})";
        reply.status = status;
        reply.location = location;
        QCOMPARE(handlersOf(reply), handlers.replaceInStrings("%1", QString::number(status)));
    }

    void noConnection()
    {
        serviceAddress() = "http://127.0.0.1:1/";
        Call gone;
        gone.sendRequest(kCall, QJsonObject());
        const QStringList lost{QString("failed -1 ") + QString::fromUtf8("请检查网络链接是否正常")};
        QTRY_COMPARE(gone.handlers, lost);

        serviceAddress() = m_service->address();
        ServiceReply silence;
        silence.silent = true;
        m_service->setReply(kCall, silence);
        Call unheard;
        unheard.setSilenceLimitMs(300);
        unheard.sendRequest(kCall, QJsonObject());
        QVERIFY(shown<ProgressCatRunningDialog>());
        QTRY_COMPARE(unheard.handlers, lost);
        QVERIFY(!shown<ProgressCatRunningDialog>());
    }

    void busyOnlyWhileACallIsOnItsWay()
    {
        ServiceReply silence;
        silence.silent = true;
        m_service->setReply(kCall, silence);
        auto call = std::make_unique<Call>();
        call->setShowProgress(false);
        call->sendRequest(kCall, QJsonObject());
        call->doGet(kCall);
        QVERIFY(!shown<ProgressCatRunningDialog>());
        call->setShowProgress(true);
        call->sendRequest(kCall, QJsonObject());
        QVERIFY(shown<ProgressCatRunningDialog>());
        call.reset();
        QVERIFY(!shown<ProgressCatRunningDialog>());
    }

    void login()
    {
        const QJsonObject record{{"userId", 9}, {"nickName", QString::fromUtf8("墨")}, {"cityID", 5}};
        m_service->setUser(QString::fromUtf8("小明"), QString::fromUtf8("s3cret 密"), record);
        qInstallMessageHandler(noteLog);
        LoginApi api;
        UserModel user;
        api.login(QString::fromUtf8("小明"), QString::fromUtf8("s3cret 密"),
                  [&user](UserModel model) { user = model; });
        QTRY_COMPARE(user.userId, 9);
        QCOMPARE(user.nickName, QString::fromUtf8("墨"));
        QCOMPARE(user.cityID, QString());
        QVERIFY(s_log.contains("userPassWord"));
        QVERIFY(!s_log.contains("s3cret"));

        const QJsonObject parameters = m_service->requests().last().parameters;
        QCOMPARE(parameters.keys(),
                 QStringList({"ip", "language", "remark", "type", "userId", "userName", "userPassWord", "version"}));
        QCOMPARE(parameters.value("language").toString(), QString("zh_CN"));
        QCOMPARE(parameters.value("version").toDouble(-1), 0.0);

        QSettings(kOrganization, kApplication).setValue(kLanguageKey, kLanguageEnglish);
        api.login(QString::fromUtf8("小明"), "wrong", [](UserModel) { QFAIL("logged in"); });
        QTRY_VERIFY(shown<QXMessageDialog>());
        QCOMPARE(shown<QXMessageDialog>()->findChild<QLabel*>("label")->text(),
                 QString("code:200 \n msg:user name or password is wrong"));
        QCOMPARE(m_service->requests().last().parameters.value("language").toString(), QString("en_WW"));
    }

    void versionCheck_data()
    {
        QTest::addColumn<QJsonValue>("versionCode");
        QTest::addColumn<bool>("offered");
        QTest::newRow("newer") << QJsonValue("101") << true;
        QTest::newRow("the same") << QJsonValue("100") << false;
        QTest::newRow("a number, no text") << QJsonValue(101) << false;
        QTest::newRow("no whole number") << QJsonValue("1000.2") << false;
        QTest::newRow("empty") << QJsonValue("") << false;
        QTest::newRow("beyond int") << QJsonValue("2147483648") << false;
    }

    void versionCheck()
    {
        QFETCH(QJsonValue, versionCode);
        QFETCH(bool, offered);
        const QJsonObject content{{"versionCode", versionCode}, {"mustUpdate", true}};
        m_service->setReply("GetSWVerssion", ServiceReply::enciphered(ServiceReply::success(content)));
        GetSWVersionApi api;
        int calls = 0;
        api.checkVersion([&](GetSWVersionModel model) {
            ++calls;
            QVERIFY(model.mustUpdate);
            QCOMPARE(shown<UpgradeAppWindow>() != nullptr, offered);
        });
        QTRY_COMPARE(calls, 1);
        const QJsonObject asked{
            {"swType", "com.quillbox.featherbox.win.app"}, {"isFullPath", true}, {"version", 100}};
        QCOMPARE(m_service->requests().last().parameters, asked);
    }

    void failedVersionCheckIsSilent()
    {
        GetSWVersionApi api;
        api.checkVersion([](GetSWVersionModel) { QFAIL("called"); });
        QTRY_COMPARE(m_service->requests().size(), 1);
        QTRY_VERIFY(!shown<ProgressCatRunningDialog>());
        QVERIFY(!shown<QWidget>());
    }
};

QTEST_MAIN(RequestsTest)
#include "tst_requests.moc"
