#pragma once

#include <QColor>
#include <QString>

class QLabel;

// The looks of the paper window: white, dark ink and thin grey rules, as the editor has them.

QString paperStyle();
/// Of the lamp on the drawn printer.
QColor lampColour(bool pluggedIn, bool ready);
/// Makes a label stand out, by weight as well as by colour.
void setAlarm(QLabel* label, bool alarm);
