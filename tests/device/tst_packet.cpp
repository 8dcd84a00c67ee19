#include "device/crc32.h"
#include "device/raster.h"
#include "tests/device/printer_fixture.h"

#include <zlib.h>

/// What the client makes of bytes, against bytes typed by hand and zlib. The simulated printer checks frames too.
class PacketTest : public QObject
{
    Q_OBJECT

private slots:
    void crcEqualsZlib()
    {
        QByteArray noise = QByteArray::fromHex("2b00ff7e81a9c4135d606f").repeated(60);
        for (unsigned length = 0; length < 300; ++length) {
            const unsigned char* start = bytesOf(noise) + length; // also unaligned
            const std::uint32_t key = 0x12345678U + length;
            QCOMPARE(crc32(key, start, std::size_t{length}),
                     static_cast<std::uint32_t>(::crc32(uLong{key}, start, uInt{length})));
        }
        QCOMPARE(crc32(0x12345678U, nullptr, 0), 0x12345678U);
        for (unsigned i = 0; i < 256; ++i)
            QCOMPARE(crc32TableWord(static_cast<unsigned char>(i)), static_cast<std::uint32_t>(get_crc_table()[i]));
    }

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
        QCOMPARE(pixels, QByteArray(576, '\x05'));     // as they were
        QVERIFY(packs(0, 384, 0) && packs(5, 384, 1)); // no rows; every other model has 384 dots
    }
};

QTEST_APPLESS_MAIN(PacketTest)
#include "tst_packet.moc"
