#include "tests/system.h"

#include <windows.h>

#include <psapi.h>
#include <utility>
#include <wincrypt.h>

namespace {

/// The roots of this person, and the certificate among them.
template <typename Change>
void withRoot(const QByteArray& der, DWORD disposition, Change change)
{
    const HCERTSTORE roots = CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root");
    PCCERT_CONTEXT found = nullptr;
    CertAddEncodedCertificateToStore(roots, X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(der.constData()),
                                     static_cast<DWORD>(der.size()), disposition, &found);
    change(found);
    CertCloseStore(roots, 0);
}

} // namespace

bool limitFiles(qint64)
{
    return false;
}

qint64 peakMegabytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<qint64>(counters.PeakWorkingSetSize / (1024 * 1024));
}

qint64 memoryInUse()
{
    return 0;
}

int openHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

int runningThreads()
{
    return 0; // each has handles, which are counted
}

bool makePipe(const QString&)
{
    return false;
}

TrustedRoot::TrustedRoot(QByteArray der)
    : m_der(std::move(der))
{
    withRoot(m_der, CERT_STORE_ADD_NEW, CertFreeCertificateContext);
}

TrustedRoot::~TrustedRoot()
{
    withRoot(m_der, CERT_STORE_ADD_USE_EXISTING, CertDeleteCertificateFromStore);
}

OpenWatch::OpenWatch(const QString&) {}
OpenWatch::~OpenWatch() = default;

bool OpenWatch::hasSeen() const
{
    return false;
}
