#pragma once

#include <QWidget>

/// The place of the print preview beside the page: an empty frame, which nothing shows yet. GUI thread.
class PrintPreviewWindow : public QWidget
{
    Q_OBJECT

public:
    explicit PrintPreviewWindow(QWidget* parent = nullptr);
    ~PrintPreviewWindow() override;
};
