#include "simulator/paper_roll.h"

#include <algorithm>
#include <cstring>

PaperRoll::PaperRoll(int headDots)
    : m_lineBytes(headDots / 8)
{
}

int PaperRoll::burn(const QByteArray& dots)
{
    m_partial.append(dots);
    const int lines = m_partial.size() / m_lineBytes;
    if (lines == 0)
        return 0;
    m_dots.append(m_partial.constData(), lines * m_lineBytes);
    m_partial.remove(0, lines * m_lineBytes);
    extend(Kind::Job, lines);
    return lines;
}

void PaperRoll::burnOwnPattern(const QByteArray& dots)
{
    m_dots.append(dots);
    extend(Kind::OwnPattern, dots.size() / m_lineBytes);
}

void PaperRoll::feed(int lines)
{
    m_fed += lines;
    if (lines > 0)
        extend(Kind::Blank, lines);
}

void PaperRoll::extend(Kind kind, int lines)
{
    if (!m_runs.empty() && m_runs.back().kind == kind)
        m_runs.back().lines += lines;
    else
        m_runs.push_back({kind, lines});
    m_kept += lines;
    tearOff();
}

void PaperRoll::tearOff()
{
    while (m_kept > kKeptLines) {
        Run& oldest = m_runs.front();
        const int lines = std::min(oldest.lines, m_kept - kKeptLines);
        if (oldest.kind != Kind::Blank)
            m_dotsAt += lines * m_lineBytes;
        oldest.lines -= lines;
        m_kept -= lines;
        m_tornOff += lines;
        if (oldest.lines == 0)
            m_runs.pop_front();
    }
    // Moving the dots only when half of them are gone keeps the cost of a line constant.
    if (m_dotsAt > m_dots.size() / 2) {
        m_dots.remove(0, m_dotsAt);
        m_dotsAt = 0;
    }
}

QImage PaperRoll::picture(qint64 firstLine, int lines) const
{
    const int from = static_cast<int>(std::clamp<qint64>(firstLine - m_tornOff, 0, m_kept));
    const int end = from + std::clamp(lines, 0, m_kept - from);
    if (from == end)
        return {};
    QImage picture(headDots(), end - from, QImage::Format_Mono);
    if (picture.isNull())
        return {};
    picture.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    picture.fill(0);
    const char* dots = m_dots.constData() + m_dotsAt;
    int runStart = 0;
    for (const Run& run : m_runs) {
        if (run.kind != Kind::Blank) {
            for (int line = std::max(from, runStart); line < std::min(end, runStart + run.lines); ++line)
                std::memcpy(picture.scanLine(line - from), dots + qptrdiff{line - runStart} * m_lineBytes,
                            static_cast<std::size_t>(m_lineBytes));
            dots += qptrdiff{run.lines} * m_lineBytes;
        }
        runStart += run.lines;
        if (runStart >= end)
            break;
    }
    return picture;
}

QByteArray PaperRoll::jobLines() const
{
    QByteArray lines;
    int at = m_dotsAt;
    for (const Run& run : m_runs) {
        const int bytes = run.kind == Kind::Blank ? 0 : run.lines * m_lineBytes;
        if (run.kind == Kind::Job)
            lines.append(m_dots.constData() + at, bytes);
        at += bytes;
    }
    return lines;
}
