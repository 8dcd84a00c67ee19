#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// Runs quillbox-demo as a person without a display does, and looks at the paper.
class DemoTest : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_folder;

    /// @return  what it reports, after its exit code
    QByteArray run(const QStringList& arguments) const
    {
        QProcess demo;
        demo.setProcessChannelMode(QProcess::MergedChannels);
        demo.setWorkingDirectory(m_folder.path());
        demo.start(DEMO_PROGRAM, arguments);
        demo.waitForFinished(120000);
        return QByteArray::number(demo.exitCode()) + ' ' + demo.readAll();
    }

    /// Share of black dots in a part of the paper, 0 to 255.
    static int ink(const QImage& paper, const QRect& part)
    {
        const QImage dots = paper.copy(part).convertToFormat(QImage::Format_RGB32);
        return 255 - qGray(dots.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
    }

private slots:
    /// The closing feed of 300 lines is blank; above it lie the last line of text, the photograph (its dots neither
    /// all black nor all white) and the heading.
    void printsTheSample()
    {
        const QStringList k1{"--model", "K1", "--paper", "k1.png"};
        for (const auto& [arguments, file, width] :
             {std::tuple(QStringList(), "quillbox-paper.png", 576), {k1, "k1.png", 384}}) {
            const QByteArray report = run(arguments);
            QVERIFY2(report.startsWith("0 ") &&
                         report.contains(QDir::toNativeSeparators(m_folder.filePath(file)).toUtf8()),
                     report.constData());
            const QImage paper(m_folder.filePath(file));
            const int page = paper.height() - 300;
            QVERIFY(paper.width() == width && page > width);
            QCOMPARE(ink(paper, {0, page, width, 300}), 0);
            QVERIFY(ink(paper, {0, 0, width, page / 14}) > 5);
            QVERIFY(ink(paper, {0, page * 95 / 100, width, page / 20}) > 5);
            const int photograph = ink(paper, {width / 4, page * 4 / 10, width / 2, page * 4 / 10});
            QVERIFY2(photograph > 50 && photograph < 200, QByteArray::number(photograph));
        }
    }
};

QTEST_GUILESS_MAIN(DemoTest)
#include "tst_demo.moc"
