#include "device/diagnostics/diagnostic_commands.h"

#include "device/packet.h"

#include <QtGlobal>

const std::array<DiagnosticCommand, 21>& diagnosticCommands()
{
    static constexpr std::array<DiagnosticCommand, 21> commands = {{
        {kBlankLines, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "打印空白行 100行")},
        {CommandSelfTest, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "打印自检页字符")},
        {CommandGetVersion, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取VERSION")},
        {CommandGetModel, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取设备型号")},
        {CommandGetBluetoothMac, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取蓝牙MAC")},
        {CommandGetSerialNumber, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机序列号")},
        {CommandGetStatus, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机状态")},
        {CommandGetBatteryVoltage, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机电池电压")},
        {CommandGetBatteryState, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机电池电压状态")},
        {CommandGetHeadTemperature, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机TPH温度")},
        {CommandGetFactoryMark, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机出厂标示")},
        {CommandBluetoothState, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "打印机发送蓝牙状态")},
        {CommandGetDensity, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取打印机浓度")},
        {CommandGetPowerOffTime, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取关机时间")},
        {CommandGetBoardVersion, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取主板版本")},
        {CommandGetHardwareInfo, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取硬件信息")},
        {CommandGetMaximumGap, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取最大缝的长度")},
        {CommandGetPaperType, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "app获取纸张类型")},
        {CommandGetCountryCode, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取国家代码")},
        {CommandGetPrintMode, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取打印模式（k1s）")},
        {CommandGetPrintedLength, QT_TRANSLATE_NOOP("TestDeviceCommandWindow", "获取已打印长度")},
    }};
    return commands;
}
