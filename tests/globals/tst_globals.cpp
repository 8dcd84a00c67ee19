#include "app/globals/global_helper.h"
#include "app/globals/model.h"
#include "app/globals/settings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QThread>
#include <QUuid>
#include <QtTest>

class GlobalsTest : public QObject
{
    Q_OBJECT

private slots:
    void modelTable_data();
    void modelTable();
    void unknownNamesSelectTheFirstModel();
    void installationIdIsMadeOnceAndKept();
    void languageDefaultsToChinese();
    void singletonIsOneObjectForAllThreads();
};

void GlobalsTest::modelTable_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("headDots");
    QTest::addColumn<QString>("name");
    QTest::newRow("K1") << 0 << 384 << "Quillbox_K1";
    QTest::newRow("K2") << 1 << 576 << "Quillbox_K2";
    QTest::newRow("past the table") << 2 << 384 << "";
    QTest::newRow("negative") << -1 << 384 << "";
}

void GlobalsTest::modelTable()
{
    QFETCH(int, index);
    g_modelIndex = index;
    QTEST(printHeadWidth(), "headDots");
    QTEST(modelName(index), "name");
    g_modelIndex = 0;
}

void GlobalsTest::unknownNamesSelectTheFirstModel()
{
    QCOMPARE(modelIndex("Quillbox_K2"), 1);
    for (const char* name : {"Quillbox_K1", "Quillbox_K3", "quillbox_k2", ""})
        QCOMPARE(modelIndex(name), 0);
}

void GlobalsTest::installationIdIsMadeOnceAndKept()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("store.ini");
    {
        QSettings store(path, QSettings::IniFormat);
        loadInstallationId(store);
    }
    const QString first = g_uuid;
    QCOMPARE(first.size(), 38);
    QCOMPARE(QUuid(first).toString(), first);

    QSettings store(path, QSettings::IniFormat);
    QCOMPARE(store.value("SETTINT_UUID").toString(), first);
    g_uuid.clear();
    loadInstallationId(store);
    QCOMPARE(g_uuid, first);

    // Whatever stands there counts, also a text that is no UUID.
    store.setValue("SETTINT_UUID", "kept");
    loadInstallationId(store);
    QCOMPARE(g_uuid, QString("kept"));
}

void GlobalsTest::languageDefaultsToChinese()
{
    const QTemporaryDir dir;
    QSettings store(dir.filePath("store.ini"), QSettings::IniFormat);
    QCOMPARE(storedLanguage(store), QString("zh_CN"));
    store.setValue("language", "en_WW");
    QCOMPARE(storedLanguage(store), QString("en_WW"));
}

void GlobalsTest::singletonIsOneObjectForAllThreads()
{
    std::atomic<GlobalHelper*> seen[2] = {};
    std::unique_ptr<QThread> threads[2];
    for (int i = 0; i < 2; ++i) {
        threads[i].reset(QThread::create([&seen, i] { seen[i] = GlobalHelper::instance(); }));
        threads[i]->start();
    }
    for (const auto& thread : threads)
        QVERIFY(thread->wait(10000));
    QVERIFY(seen[0]);
    QCOMPARE(seen[0].load(), seen[1].load());
    QCOMPARE(GlobalHelper::instance(), seen[0].load());
}

QTEST_GUILESS_MAIN(GlobalsTest)
#include "tst_globals.moc"
