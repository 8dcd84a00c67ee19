#pragma once

#include <condition_variable>
#include <mutex>

/// A mutex that lets its callers in as they came. A print job locks again right after it has unlocked, and with a
/// plain mutex a thread that waits beside it may not get in before the job is through.
class FairMutex
{
public:
    void lock()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const unsigned ticket = m_nextTicket++;
        m_turn.wait(lock, [&] { return ticket == m_served; });
    }

    void unlock()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            ++m_served;
        }
        m_turn.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_turn;
    unsigned m_nextTicket = 0;
    unsigned m_served = 0;
};
