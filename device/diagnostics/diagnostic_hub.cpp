#include "device/diagnostics/diagnostic_hub.h"

#include "app/language/language_window.h"
#include "device/diagnostics/device_command_window.h"
#include "device/diagnostics/diagnostic_item.h"
#include "device/diagnostics/diagnostic_list.h"
#include "device/diagnostics/empty_line_window.h"
#include "device/diagnostics/network_window.h"
#include "device/diagnostics/upgrade_window.h"
#include "ui_diagnostic_hub.h"

#include <QEvent>

namespace {

enum Row { Language, DeviceCommands, Network, Upgrade, PaperFeed };

} // namespace

TestMainWindow::TestMainWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestMainWindow)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    m_ui->setupUi(this);
    makeDiagnosticItems(m_ui->list, kEntries);
    retranslate();
    connectDiagnosticList(m_ui->list, this, &TestMainWindow::onItemClicked);
}

TestMainWindow::~TestMainWindow()
{
    for (QWidget* window : m_windows)
        delete window;
}

void TestMainWindow::retranslate()
{
    m_ui->retranslateUi(this);
    const std::array<QString, kEntries> labels = {tr("测试--多语言"), tr("测试--设备指令"), tr("测试--网络请求"),
                                                  tr("测试-版本升级"), tr("测试--动态走纸指令")};
    for (int row = 0; row < kEntries; ++row)
        diagnosticItem(m_ui->list, row)->setEntry(row + 1, labels[static_cast<std::size_t>(row)]);
    fitDiagnosticItems(m_ui->list);
}

QWidget* TestMainWindow::makeWindow(int row)
{
    switch (row) {
    case Language: {
        auto* window = new LanguageWindow;
        window->setAttribute(Qt::WA_DeleteOnClose); // it shows the model of the moment when it was made
        return window;
    }
    case DeviceCommands: {
        auto* window = new TestDeviceCommandWindow;
        connect(this, &TestMainWindow::sigAnalysisSuccess, window, &TestDeviceCommandWindow::onAnalysisSuccess);
        return window;
    }
    case Network:
        return new TestNetworkWindow;
    case Upgrade:
        return new TestUpgradeWindow;
    case PaperFeed:
    default:
        return new TestSendEmptyLine;
    }
}

void TestMainWindow::onItemClicked(QListWidgetItem* item)
{
    const int row = m_ui->list->row(item);
    QPointer<QWidget>& window = m_windows[static_cast<std::size_t>(row)];
    if (!window) {
        window = makeWindow(row);
        window->setAttribute(Qt::WA_QuitOnClose, false);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void TestMainWindow::onAnalysisSuccess(unsigned char pkgTag, QString text)
{
    emit sigAnalysisSuccess(pkgTag, text);
}

void TestMainWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
