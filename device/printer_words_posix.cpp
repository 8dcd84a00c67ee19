#include "device/printer_words.h"

#include "device/port.h"

#include <QtGlobal>

const std::vector<PortWords>& systemPortWords()
{
    static const std::vector<PortWords> table = {
        {kPortNoPermission,
         QT_TRANSLATE_NOOP("PrinterState", "没有权限，请把 70-quillbox.rules 复制到 /etc/udev/rules.d 后重新插上")},
        {kPortNotConfigured, QT_TRANSLATE_NOOP("PrinterState", "系统未能配置，请直接插到电脑的 USB 口")},
    };
    return table;
}
