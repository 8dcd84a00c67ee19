#pragma once

#include "simulator/simulated_printer.h"

#include <QAbstractTableModel>
#include <QVector>

/// The frames that reached the printer, the newest last, for a table. GUI thread.
class FrameLogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Code, Meaning, Tag, Length, Crc, ColumnCount };

    static constexpr int kKeptRows = 4096; ///< the newest

    using QAbstractTableModel::QAbstractTableModel;

    /// @param frames  in the order of their numbers, from nextNumber() on
    /// @return        how many of the oldest rows have gone for them
    int append(const QVector<FrameRecord>& frames);
    /// Number of the frame that comes next.
    qint64 nextNumber() const { return m_nextNumber; }
    void clear();
    /// After a change of language.
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVector<FrameRecord> m_frames;
    qint64 m_nextNumber = 0;
};
