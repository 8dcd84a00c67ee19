#include "app/globals/model.h"
#include "app/globals/sheet_model.h"
#include "app/language/language_switch.h"
#include "app/language/language_window.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

class LanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void everySwitchShowsAndIsStored()
    {
        LanguageWindow window;
        window.show();
        for (const QString language : {"en_WW", "zh_CN", "en_WW"}) {
            const bool chinese = language == "zh_CN";
            QTest::mouseClick(window.findChild<QPushButton*>(chinese ? "buttonChinese" : "buttonEnglish"),
                              Qt::LeftButton);
            QCoreApplication::processEvents();
            QCOMPARE(window.findChild<QLabel*>()->text(), QString(chinese ? "这是一段翻译" : "A sample text"));
            QCOMPARE(QMessageBox::tr("Show Details..."), QString(chinese ? "显示详情..." : "Show Details..."));
            QCOMPARE(QSettings("Quillbox", "App_Start").value("language").toString(), language);
            QCOMPARE(shownLanguage(), language);
        }
    }

    void chosenModelIsPrintedFor()
    {
        g_modelIndex = 1;
        LanguageWindow window;
        auto* models = window.findChild<QComboBox*>();
        QCOMPARE(models->currentText(), QString("Quillbox_K2"));
        QCOMPARE(printHeadWidth(), 576); // to open the window changes nothing
        window.show();
        QTest::keyClick(models, Qt::Key_Up);
        QCOMPARE(printHeadWidth(), 384);
        QTest::keyClick(models, Qt::Key_Down);
        QCOMPARE(printHeadWidth(), 576);
        QCOMPARE(sheetModel().widthDots(), 576);
        sheetModel().choose("Quillbox_K1"); // by another printer
        models->showPopup();
        QTest::keyClick(models->view(), Qt::Key_Return); // the model that the box shows already
        QCOMPARE(sheetModel().widthDots(), 576);
    }

    void nextStartHasTheSheetOfTheLast()
    {
        QSettings store("Quillbox", "App_Start");
        for (const auto& [name, width] : {std::pair("Quillbox_K1", 384), {"Quillbox_K2", 576}}) {
            sheetModel().choose(name);
            sheetModel().choose("Quillbox_K3");
            SheetModel next;
            next.load(store);
            QCOMPARE(next.widthDots(), width);
        }
        store.setValue("sheetModel", "no model");
        SheetModel next;
        next.load(store);
        QCOMPARE(next.widthDots(), 384);
    }
};

QTEST_MAIN(LanguageTest)
#include "tst_language.moc"
