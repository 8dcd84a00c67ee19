#include "device/printer_state.h"

#include "app/globals/model.h"
#include "device/port.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <vector>

namespace {

std::atomic<int> s_lastFailure{0};
thread_local int t_lastFailure = 0;

struct Meaning
{
    int failure;
    const char* text;
};

const std::vector<Meaning>& meanings()
{
#ifdef Q_OS_WIN
    // The port may be the maker's own there, and who takes its numbers for others tells a wrong cause.
    static const std::vector<Meaning> table;
#else
    static const std::vector<Meaning> table = {
        {kPortTransferFailed, QT_TRANSLATE_NOOP("PrinterState", "传输出错，请拔下打印机再重新插上")},
        {kPortNoPermission,
         QT_TRANSLATE_NOOP("PrinterState", "没有权限，请把 70-quillbox.rules 复制到 /etc/udev/rules.d 后重新插上")},
        {kPortNoDevice, QT_TRANSLATE_NOOP("PrinterState", "未插上")},
        {kPortNotConfigured, QT_TRANSLATE_NOOP("PrinterState", "系统未能配置，请直接插到电脑的 USB 口")},
        {kPortInUse, QT_TRANSLATE_NOOP("PrinterState", "被其他程序占用")},
        {kPortTimedOut, QT_TRANSLATE_NOOP("PrinterState", "缺纸或上盖打开")},
        {kPortRefused, QT_TRANSLATE_NOOP("PrinterState", "拒收数据，请关机后再开机")},
        {kPortNotSupported, QT_TRANSLATE_NOOP("PrinterState", "插上的不是这种打印机")},
    };
#endif
    return table;
}

QString translated(const char* text)
{
    return QCoreApplication::translate("PrinterState", text);
}

QString failureText(int failure)
{
    const auto& table = meanings();
    const auto known =
        std::find_if(table.begin(), table.end(), [failure](const Meaning& row) { return row.failure == failure; });
    if (known != table.end())
        return translated(known->text);
    return translated(QT_TRANSLATE_NOOP("PrinterState", "错误 %1")).arg(failure);
}

/// Which head the next page is made for, and whether the printer has said so.
QString modelText(const QString& toldModel)
{
    const QString model = modelName(g_modelIndex);
    const QString text = toldModel == model
                             ? translated(QT_TRANSLATE_NOOP("PrinterState", "%1，就绪"))
                             : translated(QT_TRANSLATE_NOOP("PrinterState", "按 %1 对待（它没有报告型号）"));
    return text.arg(model.section(QLatin1Char('_'), -1));
}

} // namespace

void notePortResult(int result)
{
    t_lastFailure = result;
    s_lastFailure = result;
}

int lastPortFailure()
{
    return s_lastFailure;
}

int lastPortFailureOfThisThread()
{
    return t_lastFailure;
}

QString printerStateText(int portFailure, bool isConnecting, const QString& toldModel)
{
    const QString state = portFailure != 0 ? failureText(portFailure)
                          : isConnecting   ? translated(QT_TRANSLATE_NOOP("PrinterState", "正在连接…"))
                                           : modelText(toldModel);
    return translated(QT_TRANSLATE_NOOP("PrinterState", "打印机：%1")).arg(state);
}
