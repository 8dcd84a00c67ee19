#include "app/globals/model.h"
#include "device/crc32.h"
#include "device/packet.h"

#include <QtTest>
#include <zlib.h>

#include <random>

class PacketTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { g_modelIndex = 0; }
    void crcEqualsZlib();
    void tableWords();
    void frame_data();
    void frame();
    void setKeyFrameIgnoresTheCurrentKey();
    void packEqualsOneDotAtATime();
    void packRefuses();
};

namespace {

QByteArray randomBytes(std::mt19937& random, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFU);
    return bytes;
}

const unsigned char* unsignedData(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

} // namespace

void PacketTest::crcEqualsZlib()
{
    std::mt19937 random(20261);
    for (int length = 0; length < 300; ++length) {
        const QByteArray bytes = randomBytes(random, length + 3);
        const auto key = static_cast<std::uint32_t>(random());
        for (int offset = 0; offset < 4; ++offset) { // also unaligned
            const unsigned char* start = unsignedData(bytes) + offset;
            const int size = qMax(0, length - offset);
            QCOMPARE(crc32(key, start, static_cast<std::size_t>(size)),
                     static_cast<std::uint32_t>(::crc32(uLong{key}, start, static_cast<uInt>(size))));
        }
    }
    QCOMPARE(crc32(0x12345678U, nullptr, 0), 0x12345678U);
}

void PacketTest::tableWords()
{
    const auto* zlibTable = get_crc_table();
    for (unsigned i = 0; i < 256; ++i)
        QCOMPARE(crc32TableWord(static_cast<unsigned char>(i)), static_cast<std::uint32_t>(zlibTable[i]));
}

void PacketTest::frame_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("tag");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<quint32>("key");
    QTest::addColumn<QByteArray>("bytes");
    const auto hex = [](const char* text) {
        return QByteArray::fromHex(text);
    };
    QTest::newRow("model query, first key")
        << 0x06 << 0 << hex("0000") << 0x2C5E9B17U << hex("02 06 00 0200 0000 fbf08723 03");
    QTest::newRow("model query, key of zero")
        << 0x06 << 0 << hex("0000") << 0U << hex("02 06 00 0200 0000 ff12d941 03");
    QTest::newRow("feed 300") << 0x1A << 0 << hex("2c01") << 0x2C5E9B17U << hex("02 1a 00 0200 2c01 c3abb16d 03");
    QTest::newRow("print data") << 0x00 << 1 << hex("80ff01") << 0x2C5E9B17U
                                << hex("02 00 01 0300 80ff01 8d9558fd 03");
    QTest::newRow("no payload: the CRC is the key")
        << 0x42 << 7 << QByteArray() << 0x2C5E9B17U << hex("02 42 07 0000 179b5e2c 03");
}

void PacketTest::frame()
{
    QFETCH(int, code);
    QFETCH(int, tag);
    QFETCH(QByteArray, payload);
    QFETCH(quint32, key);
    QFETCH(QByteArray, bytes);
    QByteArray built(payload.size() + kFrameOverhead, '\xAA');
    buildFrame(reinterpret_cast<unsigned char*>(built.data()), static_cast<unsigned char>(code),
               static_cast<unsigned char>(tag), unsignedData(payload), payload.size(), key);
    QCOMPARE(built.toHex(), bytes.toHex());

    if (tag == 0) {
        QByteArray command(kCommandFrameSize, '\xAA');
        const auto value = static_cast<quint16>(quint8(payload[0]) | quint8(payload[1]) << 8);
        buildCommandFrame(reinterpret_cast<unsigned char*>(command.data()), static_cast<unsigned char>(code), value,
                          key);
        QCOMPARE(command.toHex(), bytes.toHex());
    }
}

void PacketTest::setKeyFrameIgnoresTheCurrentKey()
{
    const QHash<quint32, QByteArray> frames = {{0U, "0218010400823d1f6a1cdf442103"},
                                               {0x77073096U, "0218010400140d181dacf6241c03"},
                                               {0x2D02EF8DU, "02180104000fd21d47901820eb03"}};
    for (auto it = frames.begin(); it != frames.end(); ++it) {
        setCurrentCrcKey(it.key() + 1);
        QByteArray built(kSetKeyFrameSize, '\xAA');
        buildSetKeyFrame(reinterpret_cast<unsigned char*>(built.data()), it.key());
        QCOMPARE(built.toHex(), it.value());
    }
}

void PacketTest::packEqualsOneDotAtATime()
{
    std::mt19937 random(7);
    for (const int model : {0, 1}) {
        g_modelIndex = model;
        const int width = printHeadWidth();
        QByteArray pixels = randomBytes(random, width * 3);
        for (char& pixel : pixels)
            pixel = (pixel & 3) == 0 ? '\0' : pixel; // white is whatever is not 0
        // Typed by hand: "#.##...." and "#......." at the left of the first row.
        for (int x = 0; x < 16; ++x)
            pixels[x] = QByteArray("#.##....#.......")[x] == '#' ? '\0' : '\xFF';
        QByteArray negated = pixels;
        QByteArray expected(pixels.size() / 8, '\0');
        for (int i = 0; i < pixels.size(); ++i) {
            negated[i] = pixels[i] == '\0' ? '\1' : '\0';
            if (pixels[i] == '\0')
                expected[i / 8] = static_cast<char>(expected[i / 8] | (1 << (7 - i % 8)));
        }
        QCOMPARE(expected.left(2).toHex(), QByteArray("b080"));
        const Raster raster = packRaster(reinterpret_cast<unsigned char*>(pixels.data()), width, 3);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(raster.bytes.get()), raster.size), expected);
        QCOMPARE(pixels, negated);
    }
}

void PacketTest::packRefuses()
{
    QByteArray pixels(576, '\x05');
    auto* data = reinterpret_cast<unsigned char*>(pixels.data());
    const auto refuses = [data](int model, int width, int height) {
        g_modelIndex = model;
        const Raster raster = packRaster(data, width, height);
        return !raster.bytes && raster.size == 0;
    };
    QVERIFY(refuses(0, 576, 1)); // a page for the other head
    QVERIFY(refuses(1, 384, 1));
    QVERIFY(refuses(0, 383, 1));
    QVERIFY(refuses(0, 384, -1));
    QVERIFY(refuses(0, 384, 0x7FFFFFFF));
    QCOMPARE(pixels, QByteArray(576, '\x05')); // as they were
    QVERIFY(!packRaster(nullptr, 384, 1).bytes);

    const Raster empty = packRaster(data, 384, 0); // no rows: empty, not null
    QVERIFY(empty.bytes && empty.size == 0);
    QVERIFY(!refuses(5, 384, 1)); // every other model has 384 dots
}

QTEST_APPLESS_MAIN(PacketTest)
#include "tst_packet.moc"
