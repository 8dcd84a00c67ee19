#include "content/page/sheet_pictures.h"

#include "app/globals/model.h"
#include "content/page/page_scaling.h"

#include <QDebug>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextFormat>
#include <QUrl>
#include <QVector>

namespace {

/// Under which a document keeps a picture for a sheet. In hex, since not every name makes an address.
QUrl addressFor(int sheetWidth, const QString& name)
{
    const QByteArray units(reinterpret_cast<const char*>(name.utf16()), name.size() * int{sizeof(ushort)});
    return QUrl(QStringLiteral("sheet/%1/%2").arg(sheetWidth).arg(QString::fromLatin1(units.toHex())));
}

/// Null for a picture that is too tall at its width, or of which nothing is left.
QImage fitted(const QImage& picture, PictureFit fit, int room)
{
    const bool scales = fit == PictureFit::Fill || picture.width() > room;
    if (scales ? isTooTall(picture.size(), room) : picture.height() > kPaintableRows)
        return {};
    QImage result = scales ? scaleToWidth(picture, room) : picture;
    result.setDevicePixelRatio(1);
    return result;
}

} // namespace

PictureRoom PictureRoom::of(const QTextEdit& editor)
{
    // Millimetres, not pixels (docs/architecture.md, "Kept behaviour").
    const int bar = editor.verticalScrollBar()->widthMM();
    return {editor.viewport()->rect().width() - bar, bar};
}

bool addSheetPicture(QTextDocument& document, const QString& name, const QImage& picture, PictureFit fit,
                     const PictureRoom& room)
{
    if (picture.width() == room.width)
        fit = PictureFit::Fill;
    const QImage shown = fitted(picture, fit, room.width);
    if (shown.isNull()) {
        qDebug() << "picture left out:" << picture.size() << "does not fit at a width of" << room.width;
        return false;
    }
    // The layout looks pictures up by a URL made the same way, so that the two agree for every name, also for one with
    // which the URL is invalid.
    const QUrl url(name);
    document.addResource(QTextDocument::ImageResource, url, shown);
    for (int model = 0; model < g_modelNames.size(); ++model) {
        const int width = headWidth(model) - room.bar;
        document.addResource(QTextDocument::ImageResource, addressFor(headWidth(model), name),
                             width == room.width ? shown : fitted(picture, fit, width));
    }
    return true;
}

void showSheetPictures(QTextDocument& document, int sheetWidth)
{
    // All that were ever on the page, for undo brings them back.
    for (const QTextFormat& format : document.allFormats()) {
        if (!format.isImageFormat())
            continue;
        const QString name = format.toImageFormat().name();
        const QVariant picture = document.resource(QTextDocument::ImageResource, addressFor(sheetWidth, name));
        if (!picture.value<QImage>().isNull()) // else it does not fit there
            document.addResource(QTextDocument::ImageResource, QUrl(name), picture);
    }
    document.markContentsDirty(0, document.characterCount());
}
