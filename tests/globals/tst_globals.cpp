#include "app/globals/model.h"
#include "app/globals/settings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QUuid>
#include <QtTest>

class GlobalsTest : public QObject
{
    Q_OBJECT

private slots:
    void models()
    {
        for (const auto& [index, headDots, name] :
             {std::tuple(0, 384, "Quillbox_K1"), {1, 576, "Quillbox_K2"}, {2, 384, ""}, {-1, 384, ""}}) {
            g_modelIndex = index;
            QCOMPARE(printHeadWidth(), headDots);
            QCOMPARE(modelName(index), QString(name));
            QCOMPARE(modelIndex(name), index == 1 ? 1 : 0); // unknown names select the first model
        }
        g_modelIndex = 0;
        QCOMPARE(modelIndex("quillbox_k2"), 0);
    }

    void storeKeepsIdAndLanguage()
    {
        const QTemporaryDir dir;
        QSettings store(dir.filePath("store.ini"), QSettings::IniFormat);
        loadInstallationId(store);
        QCOMPARE(QUuid(g_uuid).toString(), g_uuid);
        QCOMPARE(g_uuid.size(), 38);
        QCOMPARE(store.value("SETTINT_UUID").toString(), g_uuid);
        store.setValue("SETTINT_UUID", "kept"); // also a text that is no UUID
        loadInstallationId(store);
        QCOMPARE(g_uuid, QString("kept"));

        QCOMPARE(storedLanguage(store), QString("zh_CN"));
        store.setValue("language", "en_WW");
        QCOMPARE(storedLanguage(store), QString("en_WW"));
    }
};

QTEST_GUILESS_MAIN(GlobalsTest)
#include "tst_globals.moc"
