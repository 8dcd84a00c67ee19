#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// Runs quillbox-demo as a person without a display does, and looks at the paper.
class DemoTest : public QObject
{
    Q_OBJECT

private slots:
    void printsTheSample_data();
    void printsTheSample();
    void refuses_data();
    void refuses();
};

namespace {

struct Run
{
    int exitCode;
    QByteArray output;
    QByteArray errors;
};

Run runDemo(const QStringList& arguments, const QString& folder)
{
    QProcess demo;
    demo.setWorkingDirectory(folder);
    demo.start(DEMO_PROGRAM, arguments);
    if (!demo.waitForFinished(120000))
        return {-1, {}, demo.errorString().toUtf8()};
    return {demo.exitStatus() == QProcess::NormalExit ? demo.exitCode() : -1, demo.readAllStandardOutput(),
            demo.readAllStandardError()};
}

int blackDots(const QImage& paper, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += qGray(paper.pixel(x, y)) == 0 ? 1 : 0;
    }
    return count;
}

} // namespace

void DemoTest::printsTheSample_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("width");
    QTest::newRow("as it comes") << QStringList{} << "quillbox-paper.png" << 576;
    QTest::newRow("K1") << QStringList{"--model", "K1", "--paper", "k1.png"} << "k1.png" << 384;
}

void DemoTest::printsTheSample()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, file);
    QFETCH(int, width);
    const QTemporaryDir dir;
    const Run run = runDemo(arguments, dir.path());
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    QVERIFY2(run.output.contains(dir.filePath(file).toUtf8()), run.output.constData());

    const QImage paper(dir.filePath(file));
    QCOMPARE(paper.width(), width);
    // The closing feed of 300 lines is blank; above it lie the last line of text, the photograph (its dots neither
    // all black nor all white) and the heading.
    const int pageHeight = paper.height() - 300;
    QVERIFY2(pageHeight > width, qPrintable(QString::number(pageHeight)));
    QCOMPARE(blackDots(paper, QRect(0, pageHeight, width, 300)), 0);
    const QRect heading(0, 0, width, pageHeight / 14);
    const QRect photograph(width / 4, pageHeight * 4 / 10, width / 2, pageHeight * 4 / 10);
    const QRect closing(0, pageHeight * 95 / 100, width, pageHeight * 5 / 100);
    QVERIFY(blackDots(paper, heading) > heading.width());
    QVERIFY(blackDots(paper, closing) > closing.width());
    const int area = photograph.width() * photograph.height();
    const int burnt = blackDots(paper, photograph);
    QVERIFY2(burnt > area / 5 && burnt < area * 4 / 5, qPrintable(QString::number(burnt)));
}

void DemoTest::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown model") << QStringList{"--model", "K3"} << QByteArray("there is no model K3");
    QTest::newRow("folder that is not there")
        << QStringList{"--paper", "missing/paper.png"} << QByteArray("cannot write missing");
}

void DemoTest::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const QTemporaryDir dir;
    const Run run = runDemo(arguments, dir.path());
    QVERIFY(run.exitCode > 0);
    QVERIFY2(run.errors.contains(message), run.errors.constData());
}

QTEST_GUILESS_MAIN(DemoTest)
#include "tst_demo.moc"
