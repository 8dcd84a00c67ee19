#pragma once

#include "simulator/simulated_printer.h"

#include <QWidget>

#include <memory>

class FrameLogModel;
class QAbstractButton;
namespace Ui {
class PaperWindow;
}

/// What a person at the simulated printer sees and does: the paper as it comes out, the printer's controls, and the
/// frames that reach it. GUI thread.
///
/// Closing hides it; it neither ends the program nor keeps it alive.
class PaperWindow : public QWidget
{
    Q_OBJECT

public:
    /// @param printer  has to outlive the window; may be driven from other threads meanwhile
    explicit PaperWindow(SimulatedPrinter& printer, QWidget* parent = nullptr);
    ~PaperWindow() override;

signals:
    /// The person wants another language.
    void languageAsked();
    /// The person wants the diagnostic windows, which the client itself shows to nobody.
    void diagnosticsAsked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void connectControls();
    void addKey(const QList<QKeySequence>& keys, QAbstractButton* button);
    void refresh();
    void showControls();
    void showCounts();
    void showZoom();
    void retranslate();
    void chooseModel(SimulatedPrinter::Model model);
    void tearOff();
    void askWhereToSave();
    void save(const QString& file);
    void reportFailure(const QString& file, const QString& reason);

    SimulatedPrinter& m_printer;
    std::unique_ptr<Ui::PaperWindow> m_ui;
    FrameLogModel* m_log;
    QString m_folder;
};
