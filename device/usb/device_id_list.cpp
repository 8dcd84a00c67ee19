#include "device/usb/device_id_list.h"

#include <cwchar>
#include <cwctype>
#include <string>

namespace {

std::wstring prefixOf(const UsbId& id)
{
    wchar_t text[32];
    std::swprintf(text, sizeof text / sizeof *text, L"USB\\VID_%04X&PID_%04X", unsigned{id.vendor},
                  unsigned{id.product});
    return text;
}

} // namespace

bool namesOneOf(const wchar_t* list, const std::vector<UsbId>& ids)
{
    for (; *list; list += std::wcslen(list) + 1) {
        std::wstring name(list);
        for (wchar_t& letter : name)
            letter = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(letter)));
        for (const UsbId& id : ids) {
            const std::wstring prefix = prefixOf(id);
            if (name.compare(0, prefix.size(), prefix) == 0)
                return true;
        }
    }
    return false;
}
