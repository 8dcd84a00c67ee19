#include "app/globals/trace.h"

#include <QtDebug>

void trace(const QString&) {}

void trace(int) {}

void logSeparator()
{
    qDebug("----------------------------------------");
}
