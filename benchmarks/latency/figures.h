#pragma once

#include <QString>
#include <QVector>

#include <ctime>
#include <functional>

/// One row of the table that the program prints.
struct Figures
{
    QString what;
    QString unit;
    QVector<double> runs;
    double wanted; ///< at most
};

/// Prints the row at once, so that one sees how far it has come.
void print(const Figures& row);
void printHead();

/// Lets events be handled until the condition holds.
/// @return false: it did not in time
bool waitUntil(const std::function<bool()>& condition, int limitMs, int lookEveryMs = 1);
void waitFor(int milliseconds);

/// The processor time that a clock counts, in percent of the time that goes by, three times in a row: a cost that grows
/// shows in the worst.
/// @param seconds  of all
Figures idleShare(const QString& what, clockid_t clock, int seconds);
