#include "app/close_request.h"

#include "app/idle_moment.h"
#include "app/main_window.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>

#include <windows.h>

namespace {

// Both names stand in packaging/windows/quillbox.nsi as well, whose set-ups close clients of every version.
constexpr wchar_t kRequest[] = L"Quillbox.Close";        ///< a message to all windows, once more each half second
constexpr wchar_t kWaiting[] = L"Local\\Quillbox.SetUp"; ///< a mutex that is there while a set-up waits

bool setUpWaits()
{
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kWaiting);
    if (!mutex)
        return false;
    CloseHandle(mutex);
    return true;
}

class CloseRequests : public QObject, public QAbstractNativeEventFilter
{
public:
    explicit CloseRequests(MainWindow& window)
        : QObject(&window)
        , m_window(window)
        , m_request(RegisterWindowMessageW(kRequest))
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray&, void* message, long*) override
    {
        // Each window of the client gets each request.
        if (static_cast<const MSG*>(message)->message == m_request && !m_heeded) {
            m_heeded = true;
            const auto close = [this] { atIdleMoment(this, [this] { closeAll(); }); };
            QMetaObject::invokeMethod(this, close, Qt::QueuedConnection); // no window closes within its own message
        }
        return false;
    }

private:
    /// The main window may stay until its page has gone out; the next request then finds it closed.
    void closeAll()
    {
        m_heeded = false;
        if (!setUpWaits())
            return;
        if (m_window.isVisible())
            m_window.closeForUpdate();
        if (!m_window.isVisible())
            QApplication::closeAllWindows();
    }

    MainWindow& m_window;
    const UINT m_request;
    bool m_heeded = false; ///< a request waits for an idle moment
};

} // namespace

void heedCloseRequests(MainWindow& window)
{
    new CloseRequests(window);
}
