#include "device/printer_words.h"

#include "device/port.h"

#include <QtGlobal>

/// Windows knows no permissions for a device of this kind: what it denies, another program holds. A device without a
/// driver may stay unconfigured, too.
const std::vector<PortWords>& systemPortWords()
{
    static const std::vector<PortWords> table = {
        {kPortNoPermission, QT_TRANSLATE_NOOP("PrinterState", "被其他程序占用")},
        {kPortNotConfigured,
         QT_TRANSLATE_NOOP("PrinterState",
                           "Windows 未能配置，请在设备管理器中为它选择 WinUSB 驱动，或直接插到电脑的 USB 口")},
        {kPortNoDriver, QT_TRANSLATE_NOOP("PrinterState", "没有可用的驱动，请在设备管理器中为它选择 WinUSB 驱动")},
    };
    return table;
}
