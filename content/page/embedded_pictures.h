#pragma once

#include <QByteArray>
#include <QImage>
#include <QVector>

/// What the pictures of a page may take together, bytes: with the file's own bytes it stays below a gigabyte.
constexpr qint64 kMostDecodedBytes = qint64{400} << 20;

/// HTML of which the pictures were taken out.
struct EmbeddedPictures
{
    QByteArray html;          ///< names each of them by its index: src="picture:0"
    QVector<QImage> pictures; ///< null where one does not decode
    int broken = 0;           ///< how many do not
    int tooLarge = 0;         ///< how many there was no room for; they are null as well
};

/// What a data: address holds; empty where it is damaged.
QByteArray dataAddressContent(const QByteArray& address);

/// Takes the pictures that HTML carries itself (data: addresses of <img>) out of it, since as text within a document
/// they would take several times their size. Other addresses stay as they are. Any encoding that keeps ASCII. Any thread.
EmbeddedPictures takePictures(const QByteArray& html);
