#include "figures.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTextStream>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int kWhatWidth = 56;
constexpr int kNumberWidth = 10;
constexpr int kParts = 3;
constexpr double kIdleWanted = 0.15; ///< percent of a core

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

QString number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : 0).rightJustified(kNumberWidth);
}

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

} // namespace

void printHead()
{
    out() << QString().leftJustified(kWhatWidth) << "    median     worst    wanted" << Qt::endl;
}

void print(const Figures& row)
{
    out() << row.what.leftJustified(kWhatWidth);
    if (row.runs.isEmpty()) {
        out() << "not measured" << Qt::endl;
        return;
    }
    QVector<double> sorted = row.runs;
    std::sort(sorted.begin(), sorted.end());
    out() << number(sorted[sorted.size() / 2]) << number(sorted.constLast()) << number(row.wanted) << "  " << row.unit
          << ", runs: " << sorted.size() << Qt::endl;
}

bool waitUntil(const std::function<bool()>& condition, int limitMs, int lookEveryMs)
{
    const QDeadlineTimer end(limitMs);
    while (!condition()) {
        if (end.hasExpired())
            return false;
        waitFor(lookEveryMs);
    }
    return true;
}

void waitFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

Figures idleShare(const QString& what, clockid_t clock, int seconds)
{
    Figures row{what, QStringLiteral("% of a core"), {}, kIdleWanted};
    for (int part = 0; part < kParts; ++part) {
        const double used = secondsOf(clock);
        const double begin = secondsOf(CLOCK_MONOTONIC);
        waitFor(seconds * 1000 / kParts);
        row.runs += (secondsOf(clock) - used) / (secondsOf(CLOCK_MONOTONIC) - begin) * 100;
    }
    return row;
}
