#pragma once

#include "content/page/edit_main_window.h"
#include "tests/files.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTextEdit>
#include <QtTest>

inline QImage noise(QRandomGenerator& random, int width, int height)
{
    QImage picture(width, height, QImage::Format_RGB32);
    auto* pixels = reinterpret_cast<quint32*>(picture.bits());
    random.generate(pixels, pixels + static_cast<qint64>(width) * height);
    return picture;
}

/// What a client does that is to be killed: writes one draft of megabytes after the other and tells the number of each
/// that is on the disk. A draft begins with 50 times its number.
[[noreturn]] inline void writeDrafts(const QString& folder)
{
    EditMainWindow page;
    page.keepDrafts(folder);
    page.slotsInsertImage(noise(*QRandomGenerator::global(), 384, 3000));
    for (int number = 1;; ++number) {
        QTextCursor(page.editor()->document()).insertText(QString("%1 ").arg(number).repeated(50) + '\n');
        page.writeDraft();
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}

/// Kills it at whichever point, and leaves a half-written file as well, as systems do where such a file has a name.
/// @return  the number of the last draft that was told; 0: there was none, or the process ended by itself
inline int killDraftWriter(const QString& folder, int afterMs)
{
    QProcess writer;
    writer.start(QCoreApplication::applicationFilePath(), {"-platform", "offscreen", "--write-drafts", folder});
    const bool begins = QTest::qWaitFor([&] { return writer.canReadLine(); }, 30000);
    QTest::qWait(afterMs);
    const bool lives = begins && writer.state() == QProcess::Running;
    writer.kill();
    writer.waitForFinished();
    for (const QFileInfo& draft : QDir(folder).entryInfoList({"*.html"}))
        writeFile(draft.filePath() + ".AbCdEf", readFile(draft.filePath()).left(9999));
    return lives ? writer.readAllStandardOutput().trimmed().split('\n').last().toInt() : 0;
}

/// Whether the page is whole and not older than the draft that was told last.
inline bool isDraft(const QString& page, int told)
{
    const int number = page.section(' ', 0, 0).toInt();
    return told > 0 && number >= told && page.startsWith(QString("%1 ").arg(number).repeated(50) + '\n') &&
           page.count('\n') >= number && page.contains(QChar::ObjectReplacementCharacter);
}
