#pragma once

#include <QByteArray>
#include <QImage>

#include <deque>

/// What has come out of the printer: burnt lines and blank ones, in order, numbered from 0 for the whole life of the
/// roll. Not thread-safe.
///
/// Only burnt lines take memory. Beyond kKeptLines the oldest lines are torn off; the numbers of the others stay.
class PaperRoll
{
public:
    /// About 125 m of paper: 72 MB of dots on the wide head, twice that just before torn-off lines are given up.
    static constexpr int kKeptLines = 1000 * 1000;

    /// @param headDots  dots a line, a multiple of 8
    explicit PaperRoll(int headDots);

    int headDots() const { return m_lineBytes * 8; }
    int lineBytes() const { return m_lineBytes; }

    /// Burns dots from a job; what does not fill a line waits for the bytes that come next.
    /// @return  lines that came out
    int burn(const QByteArray& dots);
    /// Burns whole lines that belong to no job, such as the self-test page.
    /// @param dots  a multiple of lineBytes() bytes
    void burnOwnPattern(const QByteArray& dots);
    /// @param lines  blank dot lines, 0 or more
    void feed(int lines);
    /// Drops the bytes that wait for the rest of their line.
    void dropPartialLine() { m_partial.clear(); }

    qint64 lineCount() const { return m_tornOff + m_kept; } ///< since the roll was put in
    qint64 fedLines() const { return m_fed; }               ///< since the roll was put in
    qint64 firstKeptLine() const { return m_tornOff; }

    /// The kept lines from number `firstLine` on, at most `lines` of them, black dots on white, Format_Mono with
    /// black in colour 1, so that the scan lines are the bytes that were burnt. Null when there are none.
    QImage picture(qint64 firstLine, int lines = kKeptLines) const;
    /// The bytes of the kept lines that jobs burnt, without feeds and the printer's own patterns.
    QByteArray jobLines() const;

private:
    enum class Kind { Job, OwnPattern, Blank };
    struct Run
    {
        Kind kind;
        int lines;
    };

    void extend(Kind kind, int lines);
    void tearOff();

    int m_lineBytes;
    std::deque<Run> m_runs;
    QByteArray m_dots; ///< lines of the runs that are not blank, from m_dotsAt on
    int m_dotsAt = 0;
    QByteArray m_partial;
    int m_kept = 0;
    qint64 m_tornOff = 0;
    qint64 m_fed = 0;
};
