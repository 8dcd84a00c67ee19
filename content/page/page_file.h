#pragma once

#include "content/page/page_content.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QString>

class QIODevice;

// A page as one file: HTML with its pictures inside, as data: addresses of PNGs, so that a browser shows it too. A mark in
// its head tells that this client wrote it, and in which version of the format; the caret's position stands beside it.

/// Largest file that is written or read, bytes: some 20 m of paper full of photographs.
constexpr qint64 kMostFileBytes = qint64{256} << 20;

enum class PageFault {
    None,
    CannotRead,   ///< there is no such file, or the system does not give it
    TooLarge,     ///< the file, its text or its pictures once they are decoded
    NotAPage,     ///< no HTML, or in no known encoding
    Damaged,      ///< cut, or with a picture that cannot be decoded
    OtherVersion, ///< of this format
};

/// For the log.
const char* describe(PageFault fault);

enum class PageOrigin {
    Client,  ///< must have been written by this client
    Anybody, ///< any HTML; pictures that it does not hold itself, or that do not decode, are left out
};

/// Reads a page; `page` is set for PageFault::None alone. Needs less than 1 GB of memory, whatever the file. Any thread.
PageFault readPage(const QString& file, PageOrigin origin, PageContent* page);

/// Writes pages, and remembers the pictures of the last one as PNGs: these take far longer than all else. Any thread, one
/// at a time.
class PageWriter
{
    Q_DECLARE_TR_FUNCTIONS(PageWriter)

public:
    /// Writes the whole page or nothing: what was there before stays until the new file is complete on the disk.
    /// @return empty, or what went wrong, in words
    QString write(const PageContent& page, const QString& file);

private:
    bool writeText(const QByteArray& text, const QVector<QImage>& pictures, QIODevice& out) const;
    bool encode(const QVector<QImage>& pictures);

    QHash<qint64, QByteArray> m_pngs; ///< by QImage::cacheKey()
};
