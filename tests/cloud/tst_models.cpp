#include "cloud/models/get_sw_version_model.h"
#include "cloud/models/login_model.h"
#include "cloud/models/subscription_category_model.h"
#include "cloud/models/user_model.h"

#include <QtTest>

/// The records against the names and types that the service uses.
class ModelsTest : public QObject
{
    Q_OBJECT

    /// Every named member with a value of its own: 1, 2, … and "text 1", "text 2", …
    static QJsonObject object(const QStringList& numbers, const QStringList& texts, const QStringList& flags = {})
    {
        QJsonObject object;
        for (const QString& name : numbers)
            object.insert(name, object.size() + 1);
        for (const QString& name : texts)
            object.insert(name, QString("text %1").arg(object.size() + 1));
        for (const QString& name : flags)
            object.insert(name, true);
        return object;
    }

    template <class Model>
    static QJsonObject through(const QJsonObject& object)
    {
        Model model;
        model.parse(object);
        return model.toJson();
    }

private slots:
    void roundTrips()
    {
        const QJsonObject version =
            object({}, {"swCategory", "swPath", "versionCode", "versionName", "remark"}, {"mustUpdate"});
        QCOMPARE(through<GetSWVersionModel>(version), version);
        const QJsonObject category = object({"categoryId"}, {"name"});
        QCOMPARE(through<SubscriptionCategoryModel>(category), category);
        const QJsonObject user = object({"loginRecordId", "userId", "openType", "friendVerssion"},
                                        {"userPassWord", "userAge", "sex", "userName", "nickName", "email", "pic",
                                         "mobile", "cityID", "cityName", "openId", "unionID", "personalSign", "token",
                                         "country", "countryNumber", "protocolIds"});
        QCOMPARE(through<UserModel>(user), user);
        const QJsonObject login = object({"version"}, {"userName", "userPassWord", "ip"});
        const QJsonObject read = through<LoginModel>(login);
        QCOMPARE(read.value("userName"), login.value("userName"));
        QCOMPARE(read.value("userPassWord"), login.value("userPassWord"));
        QCOMPARE(read.value("ip"), QJsonValue(""));
        QCOMPARE(read.value("version"), QJsonValue(0));
    }

    void otherTypesLeaveTheFieldAlone()
    {
        GetSWVersionModel version;
        version.parse({{"versionCode", "101"}, {"mustUpdate", true}, {"remark", "notes"}});
        version.parse({{"versionCode", 102}, {"mustUpdate", 0}, {"remark", QJsonValue::Null}});
        QCOMPARE(version.versionCode, QString("101"));
        QCOMPARE(version.remark, QString("notes"));
        QVERIFY(version.mustUpdate);

        SubscriptionCategoryModel category;
        QCOMPARE(category.categoryId, 0);
        category.parse({{"categoryId", 7}});
        category.parse({{"categoryId", "8"}});
        QCOMPARE(category.categoryId, 7);
        category.parse({{"categoryId", 1.5}});
        QCOMPARE(category.categoryId, 0);
    }
};

QTEST_APPLESS_MAIN(ModelsTest)
#include "tst_models.moc"
