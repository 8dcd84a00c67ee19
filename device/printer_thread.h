#pragma once

#include <QImage>
#include <QString>
#include <QThread>

#include <atomic>
#include <mutex>

class PrinterWin;

/// Prints one picture a run: turns it into dots, packs them, sends them and feeds the print past the tear bar.
///
/// setImage() and start() belong to the thread that owns the object. A job takes the picture and lets go of it; one
/// that is set while a job runs waits for the next start(), unless another one is set before. Destruction cancels
/// nothing and waits for the job's end without a limit.
class PrinterThread : public QThread
{
    Q_OBJECT

public:
    /// What the editor asks for; the numbers travel in signals.
    enum PrintType {
        PrintPhoto = 0,     ///< brightness and contrast set by itself, then error diffusion
        PrintText = 1,      ///< Otsu's threshold
        PrintDiffusion = 2, ///< error diffusion alone
    };

    explicit PrinterThread(QObject* parent = nullptr);
    ~PrinterThread() override;

    /// Stores the job for the next start(), over one that is stored already.
    /// @param image      as wide as the head of the selected model; 32 bits a pixel are taken as blue, green, red and
    ///                   a byte that does not count, other depths are converted
    /// @param printType  a PrintType; with any other number only pure black is burnt
    void setImage(const QImage& image, int printType);
    /// The same for a page of a session of the connection (Printer::session()). It fails unsent where the connection has
    /// been brought up anew since, unless by the job itself: the printer that is there may have another head.
    void setImage(const QImage& image, int printType, unsigned session);

    /// Ends the job that was started last before its next frame, unless it has ended; one that is started later is not
    /// concerned. What has left is printed, and no feed follows. The interruption of the thread does not do that. Any
    /// thread; does not wait.
    void cancel();

    /// The port's number for what made the job that ended last fail; 0 when the port was not to blame. Any thread.
    int portFailure() const { return m_portFailure; }

    /// A job that sends nothing for so long is stuck: a slow printer takes a frame every 0.3 s.
    static constexpr int kStillMs = 800;
    /// Whether a job runs and gets on: it makes its dots, or has begun or sent a frame within the last kStillMs. Any
    /// thread.
    bool isMoving() const;

signals:
    /// Exactly one a run, emitted in the job's thread while isRunning() is still true.
    /// @param resultCode  0 for a page sent whole or cancelled, else 1
    /// @param message     for code 1 a text for the user
    void resultReady(int resultCode, QString message);
    /// How much of the raster has left, from none to all of it, at most once a whole percent. Emitted in the job's
    /// thread.
    /// @param sent, total  bytes
    void progressed(int sent, int total);

protected:
    void run() override;

    /// Whether the way to the paper is open; always, in this client.
    virtual bool isPrintPathAvailable() const { return true; }

private:
    struct Result
    {
        int code;
        QString message;
    };
    Result printStoredImage();
    int sendObserved(const unsigned char* raster, int size);
    void forgetCancel();
    void noteMove();

    PrinterWin* m_printer;
    std::atomic<bool> m_canceled{false}; ///< the job that runs; changed under the mutex, read by the job without it
    std::atomic<int> m_portFailure{0};   ///< set before the result is reported
    std::mutex m_jobMutex;               ///< guards the three below while they are handed over, never during a job
    QImage m_image;
    int m_printType = PrintPhoto;
    unsigned m_session = 0;
    std::atomic<qint64> m_lastMove{0}; ///< on the steady clock, in ms; kMakingDots meanwhile
};
