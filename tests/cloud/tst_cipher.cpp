#include "cloud/aes_cpp.h"
#include "cloud/base64.h"
#include "cloud/text_cipher.h"
#include "simulator/cloud/service_crypto.h"

#include <QtTest>

namespace {

unsigned char* bytesOf(const QByteArray& bytes)
{
    return const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(bytes.constData()));
}

/// What two calls write elsewhere, the first for `split` bytes; nothing when one call in place gives another result.
QByteArray run(AESCpp& cipher, decltype(&AESCpp::Encrypt) crypt, const QByteArray& in, int mode, int split = 0)
{
    QByteArray out(in.size(), '\xA5'), place(in.constData(), in.size());
    (AESCpp(cipher).*crypt)(bytesOf(place), bytesOf(place), static_cast<unsigned>(in.size()), mode);
    (cipher.*crypt)(bytesOf(in), bytesOf(out), static_cast<unsigned>(split), mode);
    (cipher.*crypt)(bytesOf(in) + split, bytesOf(out) + split, static_cast<unsigned>(in.size() - split), mode);
    return out == place ? out : QByteArray();
}

/// Whole blocks, enciphered by OpenSSL without padding.
QByteArray enciphered(const QByteArray& blocks)
{
    return QByteArray::fromBase64(serviceEncipher(blocks).replace('-', '+')).left(blocks.size());
}

const QByteArray kCount = QByteArray::fromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
const QByteArray kBits = QByteArray::fromHex("00112233445566778899aabbccddeeff");

} // namespace

class CipherTest : public QObject
{
    Q_OBJECT

private slots:
    // FIPS-197 appendix C; B. Gladman's vectors for wide blocks; two blocks of SP 800-38A, F.2 and F.3. No mode is 7.
    void published()
    {
        const auto pi = QByteArray::fromHex("3243f6a8885a308d313198a2e03707344a4093822299f31d0082efa98ec4e6c8");
        const auto e = QByteArray::fromHex("2b7e151628aed2a6abf7158809cf4f3c762e7160f38b4da56a784d9045190cfe");
        const auto nist = QByteArray::fromHex("6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51");
        const std::tuple<QByteArray, QByteArray, int, int, const char*> rows[] = {
            {kCount.left(16), kBits, 16, 0, "69c4e0d86a7b0430d8cdb78070b4c55a"},
            {kCount.left(24), kBits, 16, 7, "dda97ca4864cdfe06eaf70a0ec0d7191"},
            {kCount, kBits, 16, 0, "8ea2b7ca516745bfeafc49904b496089"},
            {e.left(16), pi.left(24), 24, 0, "b24d275489e82bb8f7375e0d5fcdb1f481757c538b65148a"},
            {e.left(24), pi.left(24), 24, 7, "725ae43b5f3161de806a7c93e0bca93c967ec1ae1b71e1cf"},
            {e, pi.left(24), 24, 0, "0ebacf199e3315c2e34b24fcc7c46ef4388aa475d66c194c"},
            {e.left(16), pi, 32, 0, "7d15479076b69a46ffb3b3beae97ad8313f622f67fedb487de9f06b9ed9c8f19"},
            {e.left(24), pi, 32, 0, "5d7101727bb25781bf6715b0e6955282b9610e23a43c2eb062699f0ebf5887b2"},
            {e, pi, 32, 0, "a49406115dfb30a40418aafa4869b7c6a886ff31602a7dd19c889dc64f7e4e7a"},
            {e.left(16), nist, 16, 1, "7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"},
            {e.left(16), nist, 16, 2, "3b3fd92eb72dad20333449f8e83cfb4ac8a64537a0b3a93fcde3cdad9f1ce58b"}};
        for (const auto& [key, plain, blockSize, mode, expected] : rows) {
            AESCpp cipher;
            cipher.MakeKey(bytesOf(key), bytesOf(kCount), key.size(), blockSize);
            QCOMPARE(run(cipher, &AESCpp::Encrypt, plain, mode).toHex(), QByteArray(expected));
            cipher.ResetChain();
            QCOMPARE(run(cipher, &AESCpp::Decrypt, QByteArray::fromHex(expected), mode), plain);
        }
    }

    // The digest is that of chains made out of single blocks.
    void chains()
    {
        QByteArray noise, all;
        while (noise.size() < 20 * 96)
            noise += md5Hex(noise);
        for (int i = 0; i < 9; ++i) {
            const int mode = i % 3, size = 16 + i / 3 * 8;
            AESCpp cipher;
            cipher.MakeKey(bytesOf(noise), bytesOf(noise.right(size)), 24, size);
            all += run(cipher, &AESCpp::Encrypt, noise, mode, size);
            cipher.ResetChain();
            QCOMPARE(run(cipher, &AESCpp::Decrypt, all.right(noise.size()), mode, size).toHex(), noise.toHex());
        }
        QCOMPARE(md5Hex(all), QByteArray("168c7ef9680a069fe2d5e9c90a6d6afa"));
    }

    void refusals()
    {
        AESCpp aes;
        const auto refuses = [&](int n) {
            const QByteArray data(n, '\xA5');
            return run(aes, &AESCpp::Encrypt, data, n % 3) == data && run(aes, &AESCpp::Decrypt, data, 1) == data;
        };
        for (const int size : {-16, 0, 15, 20, 40}) {
            aes.MakeKey(bytesOf(kCount), nullptr, size, 16);
            aes.MakeKey(bytesOf(kCount), nullptr, 16, size);
        }
        aes.MakeKey(nullptr, nullptr, 16, 16);
        QVERIFY(refuses(0) && refuses(96)); // still without a key
        aes.MakeKey(bytesOf(kCount), bytesOf(kCount), 24, 24);
        aes.MakeKey(bytesOf(kCount), nullptr, 32, 16);
        aes.MakeKey(bytesOf(kBits), bytesOf(kBits), 24, 20); // the earlier key and chain stay
        QVERIFY(refuses(0) && refuses(1) && refuses(15) && refuses(17) && refuses(24));
        QCOMPARE(run(aes, &AESCpp::Encrypt, kBits, 1).toHex(), QByteArray("8ea2b7ca516745bfeafc49904b496089"));
    }

    void textsEqualOpenssl()
    {
        const QString line = QStringLiteral("{\"version\": \"1.0\"} 热敏打印机 +/-= 更新说明 更小更快");
        QString all;
        for (int length = 0; length <= 40; ++length) { // one byte at a time, then three
            const QString text = line.left(length);
            const QByteArray utf8 = text.toUtf8();
            const QString safe = serviceEncipher(utf8), plain = QString(safe).replace('-', '+');
            QVERIFY(encryptText(text) == plain && decryptText(plain) == text);
            QVERIFY(encryptTextUrlSafe(text) == safe && decryptTextUrlSafe(safe) == text);
            QCOMPARE(base64Encode(bytesOf(utf8), utf8.size()), utf8.toBase64());
            QCOMPARE(base64Decode(utf8.toBase64()), utf8);
            all += plain;
        }
        QVERIFY(all.contains('+') && all.contains('/'));
        const QByteArray cut("ab\0\0\0\v\v\v\v\v\v\v\v\v\v\v", 16); // the zero ends the copy, not the count
        QCOMPARE(aesEncryptToBase64({"ab\0cd", 5}), enciphered(cut).toBase64());
    }

    // A row's bytes are enciphered when they are whole blocks. Behind the text comes what was logged.
    void padding()
    {
        static QByteArray log;
        const QByteArray a(300, 'a'), wrong = "去填充失败！解密出错！！";
        const std::pair<QByteArray, QByteArray> rows[] = {
            {"", ""},
            {QByteArray(16, 16), ""},
            {a.left(1) + QByteArray(127, 127), a.left(1)},
            {a.left(15) + QByteArray(1, 0), a.left(15)},
            {a.left(112) + QByteArray(144, '\x80'), a.left(112) + QByteArray(144, '\x80')},
            {a.left(13) + QByteArray(3, 4), wrong},
            {a.left(12) + "\4\4\5\4", wrong},
            {QByteArray("ab\0defghijklm\3\3\3", 16), "ab"},
            {"hello\7", "hello\7"},
            {"hello\3\3\3", "hello"}};
        qInstallMessageHandler([](QtMsgType, auto&, auto& line) { log = line.toUtf8(); });
        for (const auto& [bytes, expected] : rows) {
            log.clear();
            const QByteArray sent = bytes.size() % 16 == 0 ? enciphered(bytes) : bytes;
            QCOMPARE(aesDecryptBase64Text(sent.toBase64()) + log, expected);
        }
        qInstallMessageHandler(nullptr);
    }

    void base64Ends()
    {
        const QByteArray all = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (int i = 0; i < 256 * 12; ++i) {
            const int at = i / 256;
            QByteArray text = "YWJjZGVmZ2hp";
            text[at] = static_cast<char>(i);
            const QByteArray cut = QByteArray("abcdefghi").left(at * 3 / 4);
            QCOMPARE(base64Decode(text), all.contains(text[at]) ? QByteArray::fromBase64(text) : cut);
        }
        QVERIFY(base64Decode("YWJjYWI\nYWJj") == "abcab" && base64Decode("YWJjY") == "abc");
    }
};

QTEST_APPLESS_MAIN(CipherTest)
#include "tst_cipher.moc"
