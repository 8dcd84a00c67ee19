#include "app/globals/model.h"
#include "app/language/language_window.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

class LanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void form();
    void everySwitchShowsAndIsStored();
    void chosenModelIsPrintedFor();
};

namespace {

struct Window : LanguageWindow
{
    QPushButton* english = findChild<QPushButton*>("buttonEnglish");
    QPushButton* chinese = findChild<QPushButton*>("buttonChinese");
    QComboBox* models = findChild<QComboBox*>();
    QLabel* sample = findChild<QLabel*>();
    int languageChanges = 0;

    bool event(QEvent* event) override
    {
        languageChanges += event->type() == QEvent::LanguageChange;
        return LanguageWindow::event(event);
    }
};

} // namespace

void LanguageTest::form()
{
    const Window window;
    QCOMPARE(window.size(), QSize(400, 300));
    QCOMPARE(window.chinese->geometry(), QRect(0, 10, 113, 32));
    QCOMPARE(window.english->geometry(), QRect(0, 50, 113, 32));
    QCOMPARE(window.models->geometry(), QRect(10, 90, 200, 30));
    QCOMPARE(window.sample->geometry(), QRect(10, 130, 150, 26));
}

void LanguageTest::everySwitchShowsAndIsStored()
{
    Window window;
    window.show();
    int switches = 0;
    for (QPushButton* button : {window.english, window.chinese, window.english}) {
        ++switches;
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(window.languageChanges, switches); // a translation without a text would send none
        QCOMPARE(window.sample->text() == QString::fromUtf8("这是一段翻译"), button == window.chinese);
        QCOMPARE(QSettings("Quillbox", "App_Start").value("language").toString(),
                 QString(button == window.chinese ? "zh_CN" : "en_WW"));
    }
    QCOMPARE(window.models->itemText(1), QString("Quillbox_K2"));
}

void LanguageTest::chosenModelIsPrintedFor()
{
    g_modelIndex = 1;
    Window window;
    QCOMPARE(int(g_modelIndex), 1); // to open the window changes nothing
    QCOMPARE(window.models->currentText(), QString("Quillbox_K2"));
    window.show();
    QTest::keyClick(window.models, Qt::Key_Up);
    QCOMPARE(window.models->currentText(), QString("Quillbox_K1"));
    QCOMPARE(printHeadWidth(), 384);
    QTest::keyClick(window.models, Qt::Key_Down);
    QCOMPARE(printHeadWidth(), 576);
}

QTEST_MAIN(LanguageTest)
#include "tst_language.moc"
