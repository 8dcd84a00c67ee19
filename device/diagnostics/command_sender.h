#pragma once

#include <QLabel>
#include <QObject>

#include <functional>

/// Sends commands of a window on the GUI thread, one at a time. The port may take its write time-out over one (10 s,
/// and a frame of another thread that is on its way comes first); a notice in the window says so meanwhile. GUI
/// thread.
class CommandSender : public QObject
{
    Q_OBJECT

public:
    /// @param notice  label of the window that receives the text; hidden but while a command is being sent. Owns this
    ///                object.
    explicit CommandSender(QLabel* notice);

    /// Calls `send`. Clicks that a person made while the window could not respond are dropped: that person has got
    /// no answer yet and would send each of them in vain.
    void run(const std::function<void()>& send);

private:
    void retranslate();

    QLabel* m_notice;
    bool m_busy = false;
};
