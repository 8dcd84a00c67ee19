#include "device/crc32.h"
#include "device/raster.h"
#include "tests/device/printer_fixture.h"

/// What the client makes of bytes, against bytes typed by hand. The simulated printer checks the seals, by zlib.
class PacketTest : public QObject
{
    Q_OBJECT

private slots:
    void frames()
    {
        QByteArray built(kCommandFrameSize, '\xAA');
        buildCommandFrame(bytesOf(built), CommandFeedLines, 0x81FF, 0x2C5E9B17U);
        QCOMPARE(built.toHex(' '), QByteArray("02 1a 00 02 00 ff 81 3f be 1c 2a 03"));
        built.fill('\xAA', kFrameOverhead);
        buildFrame(bytesOf(built), 0x42, 7, nullptr, 0, 0x2C5E9B17U); // the CRC of nothing is the key
        QCOMPARE(built.toHex(' '), QByteArray("02 42 07 00 00 17 9b 5e 2c 03"));
        built.fill('\xAA', kSetKeyFrameSize);
        buildSetKeyFrame(bytesOf(built), 0x2D02EF8DU);
        QCOMPARE(built.toHex(' '), QByteArray("02 18 01 04 00 0f d2 1d 47 90 18 20 eb 03"));
    }

    // Byte by byte is the short road, which frames() holds to seals from elsewhere.
    void sealsAtOnceAndByteByByte()
    {
        QByteArray bytes(200, '\0');
        for (int i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(i * i * 167 + i);
        for (int start = 0; start < 16; ++start) {
            std::uint32_t expected = kDefaultCrcKey;
            for (std::size_t length = 0; length < 180; ++length) {
                const unsigned char* const first = bytesOf(bytes) + start;
                QCOMPARE(crc32(kDefaultCrcKey, first, length), expected);
                expected = crc32(expected, first + length, 1);
            }
        }
    }

    void packsOneLine()
    {
        g_modelIndex = 0;
        QByteArray pixels(384, '\x7F');
        QByteArray negated(384, '\0');
        for (const int black : {0, 2, 3, 8, 383}) { // "#.##....#......." to begin with
            pixels[black] = '\0';
            negated[black] = '\1';
        }
        const Raster raster = packRaster(bytesOf(pixels), 384, 1);
        const QByteArray packed(reinterpret_cast<const char*>(raster.bytes.get()), raster.size);
        QCOMPARE(packed.toHex(), "b080" + QByteArray(2 * 45, '0') + "01");
        QCOMPARE(pixels, negated);
    }

    void packRefuses()
    {
        QByteArray pixels(576, '\x05');
        const auto packs = [&](int model, int width, int height) {
            g_modelIndex = model;
            return packRaster(bytesOf(pixels), width, height).bytes != nullptr;
        };
        QVERIFY(!packs(0, 576, 1) && !packs(1, 384, 1) && !packs(0, 383, 1)); // not the head's width
        QVERIFY(!packs(0, 384, -1) && !packs(0, 384, 0x7FFFFFFF) && !packRaster(nullptr, 384, 1).bytes);
        QVERIFY(packs(0, 384, 0) && packs(5, 384, 1)); // no rows; every other model has 384 dots
    }
};

QTEST_APPLESS_MAIN(PacketTest)
#include "tst_packet.moc"
