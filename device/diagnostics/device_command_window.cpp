#include "device/diagnostics/device_command_window.h"

#include "device/diagnostics/command_sender.h"
#include "device/diagnostics/diagnostic_commands.h"
#include "device/diagnostics/diagnostic_item.h"
#include "device/diagnostics/diagnostic_list.h"
#include "device/printer_win.h"
#include "ui_device_command_window.h"

#include <QCoreApplication>
#include <QEvent>
#include <QRegularExpression>
#include <QTextCursor>
#include <QTime>

namespace {

QString labelOf(const DiagnosticCommand& command)
{
    return QCoreApplication::translate(kDiagnosticContext, command.label);
}

void send(int code)
{
    PrinterWin* printer = printerConnection();
    if (code != kBlankLines)
        printer->sendCommand(static_cast<unsigned char>(code));
    else if (printer->ensureConnected())
        printer->sendFeedLines(kBlankLineCount);
}

} // namespace

TestDeviceCommandWindow::TestDeviceCommandWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestDeviceCommandWindow)
{
    m_ui->setupUi(this);
    m_sender = new CommandSender(m_ui->notice);
    m_ui->log->setUndoRedoEnabled(false); // it would keep every line twice
    makeDiagnosticItems(m_ui->list, static_cast<int>(diagnosticCommands().size()));
    retranslate();
    connectDiagnosticList(m_ui->list, this, &TestDeviceCommandWindow::onItemClicked);
}

TestDeviceCommandWindow::~TestDeviceCommandWindow() = default;

void TestDeviceCommandWindow::retranslate()
{
    m_ui->retranslateUi(this);
    int row = 0;
    for (const DiagnosticCommand& command : diagnosticCommands())
        diagnosticItem(m_ui->list, row++)->setCommand(labelOf(command), command.code);
    fitDiagnosticItems(m_ui->list);
}

/// Not QTextEdit::append(), which would read what the device says as HTML where it looks like it.
void TestDeviceCommandWindow::append(const QString& lines)
{
    QTextCursor cursor(m_ui->log->document());
    cursor.movePosition(QTextCursor::End);
    if (!m_ui->log->document()->isEmpty())
        cursor.insertBlock();
    cursor.insertText(lines);
    m_ui->log->moveCursor(QTextCursor::End);
}

void TestDeviceCommandWindow::onItemClicked(QListWidgetItem* item)
{
    const DiagnosticCommand& command = diagnosticCommands()[static_cast<std::size_t>(m_ui->list->row(item))];
    m_sender->run([this, &command] {
        append(QStringLiteral("-----------------------\n") + labelOf(command));
        send(command.code);
    });
}

void TestDeviceCommandWindow::onAnalysisSuccess(unsigned char pkgTag, QString text)
{
    static const QRegularExpression whiteSpace(QStringLiteral("\\s"));
    text.remove(whiteSpace);
    const QStringList lines = {
        QStringLiteral("{"),
        tr("->时间 : ") + QTime::currentTime().toString(QStringLiteral("hh:mm:ss")),
        tr("标识头 : 0x") + QStringLiteral("%1").arg(pkgTag, 2, 16, QLatin1Char('0')),
        tr("消息体 : %1").arg(text.isEmpty() ? QStringLiteral("NULL") : text),
        QStringLiteral("}"),
    };
    append(lines.join(QLatin1Char('\n')));
}

void TestDeviceCommandWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
