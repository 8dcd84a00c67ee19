#include "simulator/cloud/installer_file.h"

namespace {
constexpr int kLineBytes = 16; ///< fifteen digits and a line break
} // namespace

QByteArray installerBytes(qint64 from, qint64 count)
{
    QByteArray lines;
    lines.reserve(static_cast<int>(count) + 2 * kLineBytes);
    for (qint64 line = from / kLineBytes; line * kLineBytes < from + count; ++line)
        lines += QByteArray::number(line * kLineBytes).rightJustified(kLineBytes - 1, '0') + '\n';
    return lines.mid(static_cast<int>(from % kLineBytes), static_cast<int>(count));
}
