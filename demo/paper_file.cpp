#include "demo/paper_file.h"

#include <QDateTime>
#include <QImageWriter>
#include <QSaveFile>

namespace {

constexpr int kDotsPerMetre = 8000;

} // namespace

QString paperFileName()
{
    // No colons: not every file system takes them.
    return QStringLiteral("quillbox-paper-%1.png")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

QString writePaper(const QImage& paper, const QString& file)
{
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly))
        return target.errorString();
    QImage picture = paper;
    picture.setDotsPerMeterX(kDotsPerMetre);
    picture.setDotsPerMeterY(kDotsPerMetre);
    QImageWriter writer(&target, "png");
    if (!writer.write(picture))
        return writer.errorString();
    return target.commit() ? QString() : target.errorString();
}
