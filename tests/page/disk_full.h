#pragma once

#include <csignal>
#include <sys/resource.h>

/// While it lives, files of this process end at 4 KiB, as on a disk that is full; for root as well.
class DiskFull
{
public:
    DiskFull()
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit few{4096, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &few);
    }
    ~DiskFull() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};
