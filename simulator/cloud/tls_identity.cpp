#include "simulator/cloud/tls_identity.h"

#include <QUuid>

#include <openssl/evp.h>
#include <openssl/x509v3.h>

namespace {

constexpr long kYearDays = 365;
constexpr long kDaySeconds = 86400;

void fill(X509* certificate, const QByteArray& name, EVP_PKEY* key, long days)
{
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -kYearDays * kDaySeconds);
    X509_gmtime_adj(X509_getm_notAfter(certificate), days * kDaySeconds);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name.constData()), -1, -1, 0);
    X509_set_pubkey(certificate, key);
}

void extend(X509* certificate, int extension, const QByteArray& value)
{
    X509_EXTENSION* made = X509V3_EXT_conf_nid(nullptr, nullptr, extension, value.constData());
    X509_add_ext(certificate, made, -1);
    X509_EXTENSION_free(made);
}

void sign(X509* certificate, const X509* issuer, EVP_PKEY* issuerKey)
{
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    X509_sign(certificate, issuerKey, EVP_sha256());
}

} // namespace

struct TlsIdentity::Parts
{
    struct Key : std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>
    {
        Key()
            : unique_ptr(EVP_EC_gen("P-256"), EVP_PKEY_free)
        {
        }
    };
    struct Certificate : std::unique_ptr<X509, decltype(&X509_free)>
    {
        Certificate()
            : unique_ptr(X509_new(), X509_free)
        {
        }
    };

    Key rootKey;
    Certificate root;
    Key key;
    Certificate certificate;
};

TlsIdentity::TlsIdentity(const QByteArray& names, int days)
    : m_parts(std::make_unique<Parts>())
{
    X509* root = m_parts->root.get();
    // A name of its own, or a system that knows another root would find that one for the certificate.
    fill(root, "Quillbox test root " + QUuid::createUuid().toByteArray(QUuid::WithoutBraces), m_parts->rootKey.get(),
         kYearDays);
    extend(root, NID_basic_constraints, "critical,CA:TRUE");
    extend(root, NID_key_usage, "critical,keyCertSign,cRLSign");
    sign(root, root, m_parts->rootKey.get());

    X509* certificate = m_parts->certificate.get();
    fill(certificate, "Quillbox test service", m_parts->key.get(), days);
    extend(certificate, NID_subject_alt_name, names);
    extend(certificate, NID_ext_key_usage, "serverAuth");
    sign(certificate, root, m_parts->rootKey.get());
}

TlsIdentity::~TlsIdentity() = default;

QByteArray TlsIdentity::root() const
{
    QByteArray der(i2d_X509(m_parts->root.get(), nullptr), '\0');
    auto* out = reinterpret_cast<unsigned char*>(der.data());
    i2d_X509(m_parts->root.get(), &out);
    return der;
}

X509* TlsIdentity::certificate() const
{
    return m_parts->certificate.get();
}

EVP_PKEY* TlsIdentity::key() const
{
    return m_parts->key.get();
}
