#pragma once

#include <cstdint>

// The frames that the client sends. Every frame is payload + 10 bytes, multi-byte fields little-endian:
// 0x02, command, tag, 16-bit length, payload, 32-bit CRC of the payload, 0x03. docs/protocol.md has the whole wire.

/// Command codes; the label of each is its meaning on the device. A query's reply usually carries the code plus one.
enum CommandCode : unsigned char {
    CommandPrintData = 0x00,
    CommandGetVersion = 0x04,
    CommandGetModel = 0x06, ///< also the probe of a fresh connection
    CommandGetBluetoothMac = 0x08,
    CommandGetSerialNumber = 0x0A,
    CommandGetStatus = 0x0C,
    CommandGetBatteryVoltage = 0x0E,
    CommandGetBatteryState = 0x10,
    CommandGetHeadTemperature = 0x12,
    CommandGetFactoryMark = 0x15,
    CommandBluetoothState = 0x17,
    CommandSetCrcKey = 0x18,
    CommandFeedLines = 0x1A,
    CommandSelfTest = 0x1B,
    CommandGetDensity = 0x1C,
    CommandGetPowerOffTime = 0x1F,
    CommandGetBoardVersion = 0x23,
    CommandGetHardwareInfo = 0x25,
    CommandGetMaximumGap = 0x28,
    CommandGetPaperType = 0x2A,
    CommandGetCountryCode = 0x2D,
    CommandGetPrintMode = 0x30,
    CommandGetPrintedLength = 0x34,
};

constexpr unsigned char kFrameStart = 0x02;
constexpr unsigned char kFrameEnd = 0x03;
constexpr int kFrameHeaderSize = 5;     ///< bytes before the payload
constexpr int kFrameOverhead = 10;      ///< bytes of a frame beside its payload
constexpr int kMaxPayload = 0xFFFF;     ///< bytes; the length field has 16 bits
constexpr int kPrintDataPayload = 1008; ///< raster bytes a frame: 21 lines of the 384-dot head, 14 of the 576-dot one
constexpr int kCommandFrameSize = 12;   ///< bytes of a query or a paper feed
constexpr int kSetKeyFrameSize = 14;    ///< bytes

/// Key before the first key exchange of this process; the device's firmware starts with it too.
constexpr std::uint32_t kDefaultCrcKey = 0x2C5E9B17U;
/// Hides and seals the new key in the set-key frame; a constant of client and firmware.
constexpr std::uint32_t kCrcKeyMask = 0x6A1F3D82U;

/// Key that seals every frame but set-key; one for the process. Any thread, no lock.
std::uint32_t currentCrcKey();
void setCurrentCrcKey(std::uint32_t key);

/// Writes one whole frame.
/// @param out      payloadSize + kFrameOverhead bytes, owned by the caller
/// @param payload  payloadSize bytes, 0..kMaxPayload; may be null when there are none
/// @param key      CRC key that seals it
void buildFrame(unsigned char* out, unsigned char code, unsigned char tag, const unsigned char* payload,
                int payloadSize, std::uint32_t key);

/// Writes a frame of kCommandFrameSize bytes whose payload is `value`: zero for queries, dot lines for a paper feed.
void buildCommandFrame(unsigned char* out, unsigned char code, std::uint16_t value, std::uint32_t key);

/// Writes the frame of kSetKeyFrameSize bytes that hands `newKey` to the device. The current key is not part of it.
void buildSetKeyFrame(unsigned char* out, std::uint32_t newKey);
