#include "app/globals/global_helper.h"

#include <QMutex>
#include <QMutexLocker>

#include <atomic>

GlobalHelper* GlobalHelper::instance()
{
    static QMutex mutex;
    static std::atomic<GlobalHelper*> kept{nullptr};

    // Deliberate leak: an object is made before the pointer is looked at, and only the first one is ever used.
    auto* fresh = new GlobalHelper;
    if (!kept.load(std::memory_order_acquire)) {
        const QMutexLocker lock(&mutex);
        if (!kept.load(std::memory_order_relaxed))
            kept.store(fresh, std::memory_order_release);
    }
    return kept.load(std::memory_order_acquire);
}
