#pragma once

#include <QLayout>

#include <memory>
#include <vector>

/// Widgets side by side, on as many rows as the width asks for. GUI thread.
class WrappingLayout : public QLayout
{
public:
    /// @param spacing  pixels between widgets of a row
    WrappingLayout(QWidget* parent, int spacing);
    ~WrappingLayout() override;

    /// What is added from here on stands at the right end of its row, unless it begins one.
    void startRightGroup();

    void addItem(QLayoutItem* item) override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    int count() const override;
    QSize sizeHint() const override; ///< of a single row
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect& rect) override;

private:
    int rowEnd(int begin, int width, int& rowWidth, int& rowHeight) const;
    void placeRow(int begin, int end, const QRect& row, int rowWidth) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    int m_spacing;
    int m_rightFrom = -1; ///< index of the first item of the right group
};
