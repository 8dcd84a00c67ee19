#pragma once

#include <QSemaphore>
#include <QString>
#include <QThread>

#include <atomic>

class PrinterWin;

/// Keeps the connection to the printer up and reports what the printer says, for the life of the process.
///
/// The object belongs to the thread that made it, whose event loop the key exchange is reported through. Destruction
/// interrupts every pause and waits for the thread to end; only a port that blocks can hold it up.
class PrinterReadThread : public QThread
{
    Q_OBJECT

public:
    static constexpr int kPollIntervalMs = 2000;

    /// @param pollIntervalMs  pause after every read and before every further attempt to connect, more than 0
    explicit PrinterReadThread(QObject* parent = nullptr, int pollIntervalMs = kPollIntervalMs);
    ~PrinterReadThread() override;

    /// QThread's, and ends the pause of the moment, which would else be slept out. Any thread.
    void requestInterruption();

signals:
    /// One reply of the printer. Emitted in this thread's run(), so that it arrives queued elsewhere.
    /// @param pkgTag  command code of the reply, a ReplyCode where the text is more than hexadecimal
    /// @param text    its decoded payload; may be empty, and may hold any Latin-1 character, NUL too
    void sigAnalysisSuccess(unsigned char pkgTag, QString text);
    /// Printer's signal of the same name, passed on in the thread that owns the object.
    void signalCheckSetCrcKeyFirstTime(bool isSuccess);

public slots:
    void onCheckSetCrcKeyFirstTime(bool isSuccess);

protected:
    void run() override;

private:
    bool waitForConnection();
    void handleRead();
    void analysisData(const unsigned char* data);
    void pause(int milliseconds);

    PrinterWin* m_printer;
    const int m_pollIntervalMs;
    QSemaphore m_interrupted;
    std::atomic<bool> m_ended{true}; ///< run(); for the thread sanitizer, which does not see into QThread::wait()
    // What the last read gave; of run() alone.
    const unsigned char* m_data = nullptr; ///< m_length bytes of the connection's receive buffer
    int m_result = 0;
    int m_length = 0;
    unsigned m_session = 0; ///< of the connection, before the read
};
