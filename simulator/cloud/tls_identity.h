#pragma once

#include <QByteArray>

#include <memory>

struct evp_pkey_st;
struct x509_st;

/// What a server on loopback needs for TLS: a key, a certificate for its names, and the root that has signed it. All are
/// made anew with each object and kept in no file. May be read from any thread.
class TlsIdentity
{
public:
    /// @param names  as OpenSSL writes alternative names: "IP:127.0.0.1,DNS:localhost"
    /// @param days   until the certificate ends, from now; negative: it has ended. It began a year ago. The root holds.
    explicit TlsIdentity(const QByteArray& names = "IP:127.0.0.1,DNS:localhost", int days = 1);
    ~TlsIdentity();

    TlsIdentity(const TlsIdentity&) = delete;
    TlsIdentity& operator=(const TlsIdentity&) = delete;

    QByteArray root() const; ///< DER; who trusts it trusts the certificate
    x509_st* certificate() const;
    evp_pkey_st* key() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};
