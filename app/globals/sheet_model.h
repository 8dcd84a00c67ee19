#pragma once

#include <QObject>
#include <QString>

class QSettings;

/// The model whose paper the page is written on: the one that a device told of itself last, or that the person chose.
/// It does not go back when the cable is pulled, as g_modelIndex does, and the next start begins with it. GUI thread.
class SheetModel : public QObject
{
    Q_OBJECT

public:
    /// Begins with what an earlier start left in the store; without that, or with a name that no model has, with the
    /// first model.
    void load(const QSettings& settings);

    /// Takes a model, also for the next start. A name that no model has changes nothing.
    void choose(const QString& name);

    /// Width of its head, which is that of the sheet, 384 or 576 dots.
    int widthDots() const;

signals:
    void changed();

private:
    int m_index = 0;
};

/// The one of the process.
SheetModel& sheetModel();
