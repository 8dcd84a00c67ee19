#pragma once

#include <QLabel>
#include <QObject>

#include <functional>

/// Sends the commands of a window, one at a time. A command may take the port's write time-out (10 s, and a frame of
/// another thread that is on its way comes first); a notice in the window says so meanwhile. GUI thread.
class CommandSender : public QObject
{
    Q_OBJECT

public:
    /// @param notice  label in the window, visible only while a command is being sent. Owns this object.
    explicit CommandSender(QLabel* notice);

    /// Calls `send`. Clicks that a person makes while the window cannot respond are dropped: they are the impatience
    /// of somebody who has no answer yet.
    void run(const std::function<void()>& send);

private:
    void retranslate();

    QLabel* m_notice;
    bool m_busy = false;
};
