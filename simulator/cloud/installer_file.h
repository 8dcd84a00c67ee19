#pragma once

#include <QByteArray>
#include <QtGlobal>

/// How the service hands out the installer.
struct InstallerFile
{
    enum class Length {
        Told,    ///< by a Content-Length header
        Chunked, ///< in pieces with an end of their own
        Untold,  ///< ends with the connection
    };

    qint64 size = 0; ///< bytes
    Length length = Length::Told;
    int status = 200;
    int redirects = 0;         ///< this many 302 come first
    qint64 bytesPerSecond = 0; ///< 0: as fast as the connection takes it
    qint64 cutAfter = -1;      ///< the connection ends after so many bytes; -1: it does not
    qint64 holdAfter = -1;     ///< nothing more comes after so many bytes, and the connection stays; -1: never
    QByteArray content{};      ///< a real one, of `size` bytes; empty: installerBytes()
};

/// Bytes of an installer of any size: readable lines that each name their own position, so that a piece that is
/// missing, doubled or in the wrong place is seen.
/// @param from, count  a range of bytes
QByteArray installerBytes(qint64 from, qint64 count);
