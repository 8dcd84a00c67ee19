#pragma once

#include <QWidget>

/// Common base of the program's own windows. Adds nothing.
class QXBaseWindow : public QWidget
{
    Q_OBJECT

public:
    explicit QXBaseWindow(QWidget* parent = nullptr);
};
