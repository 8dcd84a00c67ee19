#include "cloud/models/get_sw_version_model.h"
#include "cloud/models/login_model.h"
#include "cloud/models/subscription_category_model.h"
#include "cloud/models/user_model.h"

#include <QJsonDocument>
#include <QtTest>

/// The records against the names and types that the service uses.
class ModelsTest : public QObject
{
    Q_OBJECT

    static QJsonObject json(const char* text) { return QJsonDocument::fromJson(text).object(); }

    /// A record that has read one text after another, as JSON.
    template <class Model>
    static QJsonObject read(std::initializer_list<const char*> texts)
    {
        Model model;
        for (const char* text : texts)
            model.parse(json(text));
        return model.toJson();
    }

private slots:
    void namesAndTypes()
    {
        const char version[] = R"({"swCategory": "a", "swPath": "b", "versionCode": "101", "versionName": "c",
                                   "remark": "d", "mustUpdate": true})";
        QCOMPARE(read<GetSWVersionModel>({version}), json(version));
        const char user[] = R"({"loginRecordId": 1, "userId": 2, "openType": 3, "friendVerssion": 4,
            "userPassWord": "a", "userAge": "b", "sex": "c", "userName": "d", "nickName": "e", "email": "f",
            "pic": "g", "mobile": "h", "cityID": "i", "cityName": "j", "openId": "k", "unionID": "l",
            "personalSign": "m", "token": "n", "country": "o", "countryNumber": "p", "protocolIds": "q"})";
        QCOMPARE(read<UserModel>({user}), json(user));
        QCOMPARE(read<LoginModel>({R"({"userName": "a", "userPassWord": "b", "version": 4, "ip": "c"})"}),
                 json(R"({"userId": 0, "userName": "a", "userPassWord": "b", "version": 0, "ip": "", "type": 0,
                          "remark": "", "language": ""})"));
    }

    void otherTypesLeaveTheFieldAlone()
    {
        const char version[] = R"({"swCategory": "", "swPath": "", "versionCode": "101", "versionName": "",
                                   "remark": "notes", "mustUpdate": true})";
        QCOMPARE(read<GetSWVersionModel>({version, R"({"versionCode": 102, "mustUpdate": 0, "remark": null})"}),
                 json(version));
        using Category = SubscriptionCategoryModel;
        QCOMPARE(read<Category>({}), json(R"({"categoryId": 0, "name": ""})"));
        QCOMPARE(read<Category>({R"({"categoryId": 7, "name": "a"})", R"({"categoryId": "8"})"}),
                 json(R"({"categoryId": 7, "name": "a"})"));
        QCOMPARE(read<Category>({R"({"categoryId": 7})", R"({"categoryId": 1.5})"}),
                 json(R"({"categoryId": 0, "name": ""})"));
    }
};

QTEST_APPLESS_MAIN(ModelsTest)
#include "tst_models.moc"
