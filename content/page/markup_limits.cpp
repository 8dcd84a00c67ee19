#include "content/page/markup_limits.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <cctype>

namespace {

constexpr int kMostBytes = 8 << 20;
constexpr int kMostTags = 200 * 1000;
constexpr int kDeepest = 1000;     ///< elements in elements: the time that they take grows with the square
constexpr int kDeepestTables = 10; ///< doubles with each
constexpr qint64 kMostCells = 50000;
constexpr int kLongestWord = 100 * 1000; ///< its breaking into lines grows with the square as well
constexpr int kTagBytes = 1000;          ///< of which the spans of a cell are read

/// Elements that end by themselves, so that they do not nest.
const QSet<QByteArray>& flatElements()
{
    static const QSet<QByteArray> names{"p",   "li",  "td",   "th",   "tr",    "dd",   "dt",    "br",    "hr",
                                        "img", "col", "meta", "link", "input", "base", "tbody", "thead", "tfoot"};
    return names;
}

/// Columns times rows that a cell covers.
qint64 coveredCells(const QByteArray& tag)
{
    static const QRegularExpression span(QStringLiteral("(?:col|row)span\\s*=\\s*[\"']?(\\d+)"),
                                         QRegularExpression::CaseInsensitiveOption);
    qint64 cells = 1;
    for (auto match = span.globalMatch(QString::fromLatin1(tag.left(tag.indexOf('>')))); match.hasNext();)
        cells *= qBound(1, match.next().captured(1).left(6).toInt(), 20480); // where Qt stops
    return cells;
}

QByteArray tagName(const QByteArray& html, int at)
{
    int end = at;
    while (end < html.size() && std::isalnum(static_cast<unsigned char>(html[end])))
        ++end;
    return html.mid(at, end - at).toLower();
}

/// Of letters between which no line can break.
bool hasEndlessWord(const QByteArray& html)
{
    int length = 0;
    for (const char c : html) {
        const bool isLetter = c > ' ' && c != '<';
        length = isLetter ? length + 1 : 0;
        if (length > kLongestWord)
            return true;
    }
    return false;
}

/// What a scan has met so far.
class Nesting
{
public:
    void begin(const QByteArray& name)
    {
        if (flatElements().contains(name))
            return;
        ++m_open[name];
        ++m_depth;
    }

    void end(const QByteArray& name)
    {
        if (m_open.value(name) == 0)
            return;
        --m_open[name];
        --m_depth;
    }

    bool isTooDeep() const { return m_depth > kDeepest || m_open.value("table") > kDeepestTables; }

private:
    QHash<QByteArray, int> m_open;
    int m_depth = 0;
};

} // namespace

bool isWithinLimits(const QByteArray& html)
{
    if (html.size() > kMostBytes || html.count('<') > kMostTags || hasEndlessWord(html))
        return false;
    Nesting nesting;
    qint64 cells = 0;
    for (int at = html.indexOf('<'); at >= 0; at = html.indexOf('<', at + 1)) {
        if (html.mid(at + 1, 1) == "/") {
            nesting.end(tagName(html, at + 2));
            continue;
        }
        const QByteArray name = tagName(html, at + 1);
        if (!name.isEmpty())
            nesting.begin(name);
        if (name == "td" || name == "th")
            cells += coveredCells(html.mid(at, kTagBytes));
        if (nesting.isTooDeep() || cells > kMostCells)
            return false;
    }
    return true;
}
