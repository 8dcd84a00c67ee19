#pragma once

#include <QImage>
#include <QString>

class QByteArray;

// Pictures of any format that Qt knows, told by what is in the file and not by its name, and turned the way their
// camera held them. Up to mostBytes as decoded they are read as they are. Larger ones are read smaller, down to an
// eighth each way, where their format can be decoded so without the whole picture in memory; others are left out.
// What does not load is null, and the log says why. Any thread.

constexpr qint64 kMostPictureBytes = qint64{256} * 1024 * 1024;

/// @param path  of a local file
QImage readPicture(const QString& path, qint64 mostBytes = kMostPictureBytes);

/// @param content  what such a file holds
QImage pictureFromData(const QByteArray& content, qint64 mostBytes = kMostPictureBytes);
