#pragma once

#include <QTableView>

/// The table over a FrameLogModel. It stays with the newest frame until someone scrolls away from it, and again once
/// they have scrolled back; what is being looked at stays in place while old frames leave the log.
class FrameLogView : public QTableView
{
    Q_OBJECT

public:
    explicit FrameLogView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    bool followsNewest() const { return m_follows; }
    /// Makes the columns as wide as their texts need it in the current language.
    void fitColumns();

protected:
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;

private:
    bool m_follows = true;
};
