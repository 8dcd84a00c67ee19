#include "device/printer_state.h"

#include "app/globals/model.h"
#include "device/port.h"
#include "device/printer_words.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>

namespace {

std::atomic<int> s_lastFailure{0};
thread_local int t_lastFailure = 0;

const std::vector<PortWords>& commonPortWords()
{
    static const std::vector<PortWords> table = {
        {kPortTransferFailed, QT_TRANSLATE_NOOP("PrinterState", "传输出错，请拔下打印机再重新插上")},
        {kPortNoDevice, QT_TRANSLATE_NOOP("PrinterState", "未插上")},
        {kPortInUse, QT_TRANSLATE_NOOP("PrinterState", "被其他程序占用")},
        {kPortTakesNothing, QT_TRANSLATE_NOOP("PrinterState", "缺纸或上盖打开")},
        {kPortRefused, QT_TRANSLATE_NOOP("PrinterState", "拒收数据，请关机后再开机")},
        {kPortNotSupported, QT_TRANSLATE_NOOP("PrinterState", "插上的不是这种打印机")},
        {kPortLibraryMissing, QT_TRANSLATE_NOOP("PrinterState", "程序文件夹中没有 portio.dll，请重新安装羽毛盒")},
        {kPortLibraryNotLoadable,
         QT_TRANSLATE_NOOP("PrinterState", "无法载入 portio.dll（损坏、非 32 位或缺文件），请重新安装羽毛盒")},
        {kPortLibraryForeign, QT_TRANSLATE_NOOP("PrinterState", "portio.dll 不是打印机接口库，请重新安装羽毛盒")},
    };
    return table;
}

QString translated(const char* text)
{
    return QCoreApplication::translate("PrinterState", text);
}

QString failureText(int failure)
{
    for (const auto* table : {&commonPortWords(), &systemPortWords()}) {
        const auto known = std::find_if(table->begin(), table->end(),
                                        [failure](const PortWords& row) { return row.failure == failure; });
        if (known != table->end())
            return translated(known->text);
    }
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
