#pragma once

#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <memory>

namespace Ui {
class MainWindow;
}

class CaptureScreen;
class EditMainWindow;
class GetSWVersionApi;
class MoreActions;
class PrinterReadThread;
class PrinterThread;
class PrintProgress;
class PrintPreviewWindow;
class ProgressCatRunningDialog;
class QMenuBar;
class QStackedWidget;

/// The client's one top-level window: the page, the buttons above it, and the way of each print request to the
/// printer. GUI thread.
///
/// It starts the receive thread, which connects to the device on its own, and keeps the job thread. Neither ends with
/// the window: the program calls stopThreads() after its event loop.
///
/// While a page is moving the window does not close at once, but by itself when the page is out, has failed (and the
/// person has read that) or was cancelled. It closes at once while a page is stuck.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    EditMainWindow* page() const { return editWindow; }

    /// Ends both threads and waits for them. A page that is moving goes out whole; later ones are dropped. A thread that
    /// waits for a printer which takes nothing is left alone.
    /// @return  false: such a thread goes on, so that nothing that it uses may be destroyed (see leaveMain())
    bool stopThreads();

    /// Begins with the draft of the last client, and keeps one from now on: it is written while the page changes and when
    /// the window closes. Without this call no draft is read or written.
    /// @param folder  of all drafts, see draftsFolder()
    void keepDrafts(const QString& folder);

    /// The printer as it stands now, in one line for the user.
    QString printerState() const;

    /// Closes the window as the person would, but only with the draft written, where drafts are kept: nobody has asked
    /// for this close. Call at an idle moment.
    void closeForUpdate();

signals:
    /// A picture was chosen from a file.
    void signalsPickImage(QImage image);

public slots:
    /// Starts a print job. While the device is being connected the request is dropped. While a job runs the new one
    /// is stored and not started: the next request, which brings a page of its own, takes its place.
    /// @param image      the page, as wide as the print head
    /// @param printType  0 for a page with pictures, 1 for text alone
    void doPrint(QImage image, int printType);
    /// Tells the user of a failed job.
    void slotsHandlePrintResult(int resultCode, QString strResult);

    /// Asks for a picture file.
    void slotsPickImage();

    /// Makes the window vanish, and a moment later opens the capture overlay; a second call meanwhile does nothing.
    void slotsCaptureScreen();
    void slotsHandleTimeOut();
    /// Brings the window back to where it was.
    void slotsHandleCaptureClose();

    /// Opens another hub of the diagnostic windows, which are for technicians: no visible button reaches it.
    void slotsSetLanguage();

    /// A reply of the device.
    /// @param pkgTag  its command byte
    void onAnalysisSuccess(unsigned char pkgTag, QString text);

    void onBtnFontClicked();
    /// Asks the service for a newer version, at every start as well. The answer opens a window of its own, and closes
    /// this one when the service will not have the old version used any longer: once dialogs and a download of the
    /// update have ended, and where drafts are kept only once that of the page is written.
    void onMenuUpdateClicked();
    void onMenuAboutClicked();

    /// End of the connecting phase, by the device's reply or by time.
    void onDeviceInitTimeout();
    void onCheckSetCrcKeyFirstTime(bool isSuccess);

    /// As onMenuUpdateClicked(), for a user who wants to know: that there is nothing newer is said as well, a failure
    /// is not. A check that is under way answers this one too.
    void slotsAskForUpdate();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenu();
    void retranslateMenu();
    void createThreads();
    void createPages();
    void connectButtons();
    void showPrintState();
    QString printerState(int portFailure) const;
    void closeAfterJob();

    // The window's members have had these names for as long as there is a window.
    // NOLINTBEGIN(readability-identifier-naming)
    const std::unique_ptr<Ui::MainWindow> ui;
    EditMainWindow* editWindow = nullptr;
    PrintPreviewWindow* previewWindow = nullptr;
    QStackedWidget* stackedWidget = nullptr;
    PrinterThread* printThread = nullptr;
    PrinterReadThread* readThread = nullptr;
    QPointer<CaptureScreen> captureScreen; ///< made anew for each capture
    QRect savedGeometry;                   ///< null unless a capture runs
    QString lastImageDir;
    ProgressCatRunningDialog* connectingDialog = nullptr; ///< made anew for each connecting phase
    bool deviceBusy = false;                              ///< the connecting dialog is up
    // NOLINTEND(readability-identifier-naming)

    MoreActions* m_moreActions = nullptr;
    unsigned m_session = 0;                   ///< of the connection that the window was told of
    QString m_toldModel;                      ///< by the printer since it was connected
    QPointer<GetSWVersionApi> m_versionCheck; ///< the newest one that is under way
    bool m_tellsNewest = false;               ///< the user asked for it
    PrintProgress* m_printProgress = nullptr;
    bool m_closesAfterJob = false; ///< the person has closed it while a page was moving
    bool m_tellsResult = false;    ///< the box of a failed job is open

    const std::unique_ptr<QMenuBar> m_menuBar; ///< placed nowhere, so nothing in it can be reached
};
