#include "device/usb/bulk_interface.h"

#include <QtGlobal>
#include <fuzzer/FuzzedDataProvider.h>
#include <libusb.h>

#include <deque>

// Of any interfaces, the first setting is found that has both endpoints. Every list is as long as it says, to the byte.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    FuzzedDataProvider input(bytes, size);
    std::deque<std::vector<libusb_endpoint_descriptor>> lists;
    std::vector<libusb_interface_descriptor> settings;
    std::vector<libusb_interface> interfaces;
    BulkInterface expected, found;
    const int alternatives = input.ConsumeIntegralInRange(1, 3); // of each interface
    for (int i = 0; (input.remaining_bytes() > 0 && i < 90) || i % alternatives != 0; ++i) {
        auto& list = lists.emplace_back(input.ConsumeIntegralInRange(0, 4));
        const libusb_endpoint_descriptor* first[2] = {}; // out, in
        for (auto& endpoint : list) {
            endpoint.bEndpointAddress = input.ConsumeIntegral<std::uint8_t>();
            endpoint.bmAttributes = input.ConsumeIntegral<std::uint8_t>();
            endpoint.wMaxPacketSize = input.ConsumeIntegral<std::uint16_t>();
            auto*& place = first[endpoint.bEndpointAddress / 128];
            if (!place && endpoint.bmAttributes % 4 == 2 && endpoint.bEndpointAddress % 16 != 0)
                place = &endpoint;
        }
        const quint8 number = i / alternatives & 255, alternate = i % alternatives & 255, count = list.size() & 255;
        settings.push_back({9, 4, number, alternate, count, 7, 1, 2, 0, list.data(), nullptr, 0});
        if (expected.in == 0 && first[0] && first[1] && first[1]->wMaxPacketSize % 2048 != 0)
            expected = {number, alternate, first[1]->bEndpointAddress, first[0]->bEndpointAddress,
                        first[1]->wMaxPacketSize % 2048};
    }
    for (std::size_t i = 0; i < settings.size(); i += alternatives)
        interfaces.push_back({&settings[i], alternatives});
    const quint8 count = interfaces.size() & 255;
    const bool isThere = findBulkInterface({9, 2, 0, count, 1, 0, 0, 0, interfaces.data(), nullptr, 0}, &found);
    Q_ASSERT(isThere == (expected.in != 0) && found.number == expected.number &&
             found.alternateSetting == expected.alternateSetting && found.in == expected.in &&
             found.out == expected.out && found.inPacketBytes == expected.inPacketBytes);
    return 0;
}
