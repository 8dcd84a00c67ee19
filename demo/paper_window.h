#pragma once

#include "simulator/simulated_printer.h"

#include <QTimer>
#include <QVector>
#include <QWidget>

class FrameLogModel;
class PaperView;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QTableView;
class QToolButton;

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

    /// Takes a size. Where it is less than the window would like to have, the paper is shown in its whole width, and
    /// little of the log.
    void makeRoom(const QSize& size);

signals:
    /// The person wants another language.
    void languageAsked();
    /// The person wants the diagnostic windows, which the client itself shows to nobody.
    void diagnosticsAsked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void makeControls();
    void makeLog();
    void makeLayout();
    void connectPrinter();
    void connectPaper();
    void refresh();
    void takeFrames();
    void showControls(const PrinterReport& report);
    void showCounts(const PrinterReport& report);
    void showZoom();
    void retranslate();
    void chooseModel(SimulatedPrinter::Model model);
    void askWhereToSave();
    void save(const QString& file);

    SimulatedPrinter& m_printer;
    PaperView* m_paper;
    QTableView* m_log;
    FrameLogModel* m_frames;
    QVector<QToolButton*> m_buttons; ///< in the order of their rows, as the labels are
    QVector<QLabel*> m_labels;
    QButtonGroup* m_models;
    QButtonGroup* m_conditions;
    QCheckBox* m_pluggedIn;
    QTimer m_poll;
    bool m_followsFrames = true;
    QString m_folder; ///< of the file saved last
};
