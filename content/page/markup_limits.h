#pragma once

#include <QByteArray>

/// Whether Qt reads and lays out HTML in a few seconds and within half a gigabyte. A page of a hundred metres of paper is
/// within that; hundreds of thousands of elements, deep nesting, and tables in tables in tables are not.
/// @param html  without its pictures, in an encoding that keeps ASCII
bool isWithinLimits(const QByteArray& html);
