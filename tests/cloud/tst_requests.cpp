#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/globals/settings.h"
#include "cloud/digests.h"
#include "cloud/get_sw_version_api.h"
#include "cloud/login_api.h"
#include "cloud/service_address.h"
#include "cloud/text_cipher.h"
#include "simulator/cloud/raw_server.h"
#include "simulator/cloud/service_crypto.h"
#include "simulator/cloud/simulated_service.h"
#include "tests/shown_window.h"
#include "update/upgrade_app_window.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(ServiceReply)

namespace {

/// Notes which handler was called with what.
class Call : public BaseApi
{
public:
    QStringList handlers;
    QSignalSpy over{this, &BaseApi::signalReceived};

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

QString s_log;

void note(QtMsgType, const QMessageLogContext&, const QString& text)
{
    s_log += text;
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
const QString kVersionCall = "GetSWVerssion";
const QJsonObject kVersionAsked{
    {"swType", "com.quillbox.featherbox.win.app"}, {"isFullPath", true}, {"version", 100}};

ServiceReply silence()
{
    ServiceReply reply;
    reply.silent = true;
    return reply;
}

} // namespace

/// What a call sends and what becomes of each reply, over real sockets; the service checks with another cipher.
class RequestsTest : public QObject
{
    Q_OBJECT

    SimulatedService m_service;

private slots:
    void init()
    {
        s_log.clear();
        QSettings(kOrganization, kApplication).clear();
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        serviceAddress() = m_service.address();
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
        m_service.setReply(kCall, ServiceReply::plain(ServiceReply::success({})));
        // Lengths over more than a block, and characters of every length in UTF-8.
        for (const QString& text : {QString(), QString("plain+/="), QString::fromUtf8("é小票🖨\n\"\\")}) {
            const QJsonObject parameters{{"text", text}, {"list", QJsonArray{1, 2.5, true}}};
            Call call;
            call.sendRequest(kCall, parameters);
            QVERIFY(call.over.wait());
            const ServiceRequest request = m_service.requests().last();
            QCOMPARE(request.faults, QStringList());
            QCOMPARE(request.parameters, parameters);
            QCOMPARE(request.headers.value("userid"), QByteArray("4711"));
            QCOMPARE(request.headers.value("uuid"), g_uuid.toLatin1());
        }
        Call list;
        list.sendRequest(kCall, QJsonArray{"a"});
        QVERIFY(list.over.wait());
        QCOMPARE(m_service.requests().last().parameterText, QByteArray("[\n    \"a\"\n]\n"));
    }

    /// The worked example, which was made by another program.
    void protocolDocument()
    {
        QFile document(PROTOCOL_DOCUMENT);
        QVERIFY(document.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(document.readAll());
        const QString cipher = encryptTextUrlSafe(QJsonDocument(kVersionAsked).toJson());
        const QString message = "{\n    \"parameter\": \"" + cipher + "\"\n}\n";
        QVERIFY(text.contains(message.section('\n', 1, 1).trimmed()));
        QVERIFY(text.contains(requestSignature("0", message, "1767225600")));
    }

    void replies_data()
    {
        QTest::addColumn<ServiceReply>("reply");
        QTest::addColumn<QStringList>("handlers");
        const auto row = [](const char* name, const ServiceReply& reply, const QStringList& handlers) {
            QTest::newRow(name) << reply << handlers;
        };
        const QStringList nothing;
        const QStringList unparsed{"failed 200 json_parse_error"};
        const QStringList unknown{"failed 200 known error"};
        const QByteArray good = R"({"code":1,"result":"","content":{"a":1}})";
        row("success", {200, good}, {R"(success 200 {"a":1})"});
        row("behind a zero", {200, good + QByteArray("\0]", 2)}, {R"(success 200 {"a":1})"});
        row("Chinese, plain", {200, R"({"code":0,"result":"错"})"}, {"failed 200 " + QString::fromLatin1("错")});
        row("Chinese, enciphered", {200, inData(R"({"code":1,"result":"","content":{"错":1}})")},
            {R"(success 200 {"错":1})"});
        row("no result", {200, R"({"code":1,"content":{}})"}, unknown);
        row("result is a number", {200, R"({"code":1,"result":1,"content":{}})"}, unknown);
        row("content is a list", {200, R"({"code":1,"result":"ok","content":[1]})"}, nothing);
        row("no content", {200, R"({"code":1,"result":"ok"})"}, nothing);
        row("failure", {200, R"({"code":0,"result":"bad","content":{}})"}, {"failed 200 bad"});
        row("failure without result", {200, R"({"code":2})"}, {R"(failed 200 {"code":2})"});
        row("inner failure without result", {200, inData(R"({"code":2})")}, {R"(failed 200 {"code":2})"});
        row("code is no whole number", {200, R"({"code":1.5,"result":"bad"})"}, {"failed 200 bad"});
        row("code is a text", {200, R"({"code":"1","result":"bad"})"}, nothing);
        row("no code", {200, R"({"result":"x"})"}, nothing);
        row("a list", {200, "[1]"}, nothing);
        row("data is a number", {200, R"({"data":5,"code":0,"result":"bad"})"}, {"failed 200 bad"});
        row("data is empty", {200, R"({"data":"","code":0})"}, nothing);
        row("data is another cipher's", {200, R"({"data":"AAAAAAAAAAAAAAAAAAAAAA==","code":0})"}, nothing);
        row("empty", {200, ""}, unparsed);
        row("null", {200, "null"}, unparsed);
        row("noise", {200, QByteArray::fromHex("ff007f80c3")}, unparsed);
        row("nested too deep", {200, nested(100000)}, unparsed);
        row("inner nested too deep", {200, inData(nested(100000))}, nothing);
        row("compressed", {200, good, "application/json"}, unparsed);
        row("1 MiB", {200, QByteArray(1 << 20, 'x')}, unparsed);
        row("too long", {200, QByteArray((1 << 20) + 1, 'x')}, {"failed 200 "});
        const QString controls = QString::fromUtf8("\x1b[2J\r\u202e\u2028\u009b");
        const QJsonObject bad{{"code", 0}, {"result", controls}};
        row("controls", ServiceReply::enciphered(bad), {"failed 200 " + controls});
        row("controls, unparsed", {200, "\x1b[2J\r\x9b"}, unparsed);
        row("created", {201, good}, {R"(success 201 {"a":1})"});
        row("redirected", {302, "", "text/plain", "Other?%E2%80%A8"}, {R"(success 200 {"b":2})"});
        row("redirect to nowhere", {302, good}, {"failed 302 "});
        row("304", {304, good}, {"failed 304 json_parse_error"});
        row("404", {404, good}, {"failed 404 " + good});
        row("500", {500, good}, {"failed 500 " + good});
    }

    void replies()
    {
        QFETCH(ServiceReply, reply);
        m_service.setReply("some/Other", ServiceReply::plain(ServiceReply::success({{"b", 2}})));
        m_service.setReply(kCall, reply);
        qInstallMessageHandler(note);
        Call call;
        call.sendRequest(kCall, QJsonObject());
        QVERIFY(shown<ProgressCatRunningDialog>());
        QVERIFY(call.over.wait(60000));
        QVERIFY(!shown<ProgressCatRunningDialog>());
        QTEST(call.handlers, "handlers");
        QVERIFY(!s_log.contains(QRegularExpression("[\\p{Cc}\\p{Cf}\\p{Zl}\\p{Zp}]")));
    }

    void noConnection()
    {
        serviceAddress() = "http://127.0.0.1:1/";
        Call gone;
        gone.sendRequest(kCall, QJsonObject());
        const QStringList lost{"failed -1 请检查网络链接是否正常"};
        QVERIFY(gone.over.wait());
        QCOMPARE(gone.handlers, lost);

        serviceAddress() = m_service.address();
        m_service.setReply(kCall, silence());
        for (const auto limit : {&BaseApi::setSilenceLimitMs, &BaseApi::setTimeLimitMs}) {
            Call unheard;
            (unheard.*limit)(100);
            unheard.sendRequest(kCall, QJsonObject());
            QVERIFY(unheard.over.wait() && !shown<ProgressCatRunningDialog>());
            QCOMPARE(unheard.handlers, lost);
        }
    }

    void busyOnlyWhileACallIsOnItsWay()
    {
        m_service.setReply(kCall, silence());
        auto call = std::make_unique<Call>();
        call->doGet(kCall);
        QVERIFY(!shown<ProgressCatRunningDialog>());
        call->sendRequest(kCall, QJsonObject());
        QVERIFY(shown<ProgressCatRunningDialog>());
        call.reset();
        QVERIFY(!shown<ProgressCatRunningDialog>());
    }

    /// Headers without end, which Qt's thread reads as long as they come.
    void isGivenUpAtOnce()
    {
        RawServer server("HTTP/1.1 200 OK\r\n", "X: " + QByteArray(65536, 'a') + "\r\n", -1);
        serviceAddress() = server.address();
        auto call = std::make_unique<Call>();
        call->doGet(kCall);
        QTRY_VERIFY(server.sent() > 1000000);
        QElapsedTimer clock;
        clock.start();
        call.reset();
        QVERIFY(clock.elapsed() < 1000);
    }

    void login()
    {
        m_service.setUser("小明", "s3cret 密", {{"userId", 9}});
        qInstallMessageHandler(note);
        LoginApi api;
        int id = 0;
        api.login("小明", "s3cret 密", [&id](const UserModel& user) { id = user.userId; });
        QTRY_COMPARE(id, 9);
        QVERIFY(s_log.contains("userPassWord") && !s_log.contains("s3cret"));
        QVERIFY(s_log.contains(R"({"code":1,"content":{"userId":9})")); // as it was deciphered
        QCOMPARE(m_service.requests().last().parameters.size(), 8);
        QCOMPARE(m_service.requests().last().parameters["language"], QJsonValue("zh_CN"));

        QSettings(kOrganization, kApplication).setValue(kLanguageKey, kLanguageEnglish);
        api.login("小明", "wrong", [](const UserModel&) { QFAIL("logged in"); });
        QTRY_VERIFY(shown<QXMessageDialog>());
        QCOMPARE(shown<QXMessageDialog>()->findChild<QLabel*>("label")->text(),
                 QString("code:200 \n msg:user name or password is wrong"));
        QCOMPARE(m_service.requests().last().parameters["language"], QJsonValue("en_WW"));
    }

    void versionCheck()
    {
        for (const QJsonValue& code : {QJsonValue("101"), QJsonValue("100"), QJsonValue(101), QJsonValue("1000.2")}) {
            const ServiceReply reply =
                ServiceReply::enciphered(ServiceReply::success({{"versionCode", code}, {"mustUpdate", true}}));
            m_service.setReply(kVersionCall, reply);
            GetSWVersionApi api;
            QSignalSpy over(&api, &BaseApi::signalReceived);
            qInstallMessageHandler(note);
            int calls = 0;
            api.checkVersion([&](const GetSWVersionModel& model) {
                ++calls;
                QVERIFY(model.mustUpdate);
                QCOMPARE(shown<UpgradeAppWindow>() != nullptr, code == QJsonValue("101"));
            });
            QVERIFY(over.wait() && calls == 1);
            const QString asItCame = QJsonDocument(QJsonArray{code}).toJson(QJsonDocument::Compact).mid(1).chopped(1);
            QVERIFY(s_log.contains("mandatory update: {\"mustUpdate\":true,\"versionCode\":" + asItCame + "}"));
            QCOMPARE(m_service.requests().last().parameters, kVersionAsked);
            cleanup();
        }
        m_service.setReply(kVersionCall, {500, ""}); // of which nobody is told
        GetSWVersionApi api;
        api.checkVersion([](const GetSWVersionModel&) { QFAIL("called"); });
        QVERIFY(QSignalSpy(&api, &BaseApi::signalReceived).wait() && !shown<QWidget>());
    }
};

QTEST_MAIN(RequestsTest)
#include "tst_requests.moc"
