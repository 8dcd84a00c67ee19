#include "app/globals/model.h"
#include "app/language/language_window.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

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

class LanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void everySwitchShowsAndIsStored()
    {
        Window window;
        window.show();
        const QPair<QPushButton*, QString> switches[] = {
            {window.english, "en_WW"}, {window.chinese, "zh_CN"}, {window.english, "en_WW"}};
        for (const auto& [button, language] : switches) {
            window.languageChanges = 0;
            QTest::mouseClick(button, Qt::LeftButton);
            QTRY_COMPARE(window.languageChanges, 1); // a translation without a text would send none
            QCOMPARE(window.sample->text() == QString::fromUtf8("这是一段翻译"), button == window.chinese);
            QCOMPARE(QSettings("Quillbox", "App_Start").value("language").toString(), language);
        }
        QCOMPARE(window.models->itemText(1), QString("Quillbox_K2"));
    }

    void chosenModelIsPrintedFor()
    {
        g_modelIndex = 1;
        Window window;
        QCOMPARE(int(g_modelIndex), 1); // to open the window changes nothing
        QCOMPARE(window.models->currentText(), QString("Quillbox_K2"));
        window.show();
        QTest::keyClick(window.models, Qt::Key_Up);
        QCOMPARE(printHeadWidth(), 384);
        QTest::keyClick(window.models, Qt::Key_Down);
        QCOMPARE(printHeadWidth(), 576);
    }
};

QTEST_MAIN(LanguageTest)
#include "tst_language.moc"
