#include "simulator/usb/fault_commands.h"

#include <QRegularExpression>
#include <QStringList>

#include <unistd.h>

using Endpoint = SimulatedPrinter::Endpoint;
using Model = SimulatedPrinter::Model;

namespace {

constexpr int kDotsPerMetre = 8000;

struct ArgumentForm
{
    const char* name;
    const char* pattern;
};

/// In the order of FaultCommands::Argument.
constexpr ArgumentForm kForms[] = {
    {"", ""},
    {" N", "\\s+(\\d{1,9})"},
    {" HEX", "\\s+((?:[0-9a-f]{2}\\s*)+)"},
    {" FILE", "\\s+(\\S.*?)"},
};

constexpr char kFromNextPlugging[] = "ok, from the next plugging in";

const char* nameOf(Model model)
{
    return model == Model::K2 ? "K2" : "K1";
}

} // namespace

FaultCommands::FaultCommands(SimulatedPrinter& printer, VirtualUsbPrinter& bus)
    : m_printer(printer)
    , m_bus(bus)
{
}

const QVector<FaultCommands::Row>& FaultCommands::rows()
{
    using Self = FaultCommands;
    using Text = QString;
    using Faults = PrinterFaults;
    constexpr Argument kNone = Argument::None, kBytes = Argument::Bytes, kHex = Argument::Hex, kFile = Argument::File;
    constexpr Needs kAny = Needs::Nothing, kIn = Needs::PluggedIn, kOut = Needs::Unplugged;
    static const QVector<Row> table = [] {
        QVector<Row> made;
        const auto row = [&](const char* words, Argument argument, Needs needs, Action act) {
            made.append({words, argument, needs, act, nullptr});
        };
        const auto fault = [&](const char* words, Argument argument, Needs needs, FaultChange change) {
            made.append({words, argument, needs, nullptr, change});
        };
        row("plug", kNone, kOut, [](Self& s, const Text&) { s.m_printer.plugIn(); });
        row("unplug", kNone, kIn, [](Self& s, const Text&) { s.m_printer.unplug(); });
        fault("unplug after", kBytes, kIn, [](Faults& f, qint64 bytes) { f.bytesUntilGone = bytes; });
        fault("nak", kNone, kAny, [](Faults& f, qint64) { f.bytesUntilHolding = 0; });
        fault("nak after", kBytes, kAny, [](Faults& f, qint64 bytes) { f.bytesUntilHolding = bytes; });
        fault("nak off", kNone, kAny, [](Faults& f, qint64) { f.bytesUntilHolding = -1; });
        fault("stall in", kNone, kIn, [](Faults& f, qint64) { f.inHalted = true; });
        fault("stall out", kNone, kIn, [](Faults& f, qint64) { f.outHalted = true; });
        fault("mute", kNone, kAny, [](Faults& f, qint64) { f.silent = true; });
        fault("mute off", kNone, kAny, [](Faults& f, qint64) { f.silent = false; });
        row("no zlp", kNone, kAny, [](Self& s, const Text&) { s.m_bus.faults().noZeroLengthPacket = true; });
        row("no zlp off", kNone, kAny, [](Self& s, const Text&) { s.m_bus.faults().noZeroLengthPacket = false; });
        row("hold", kNone, kAny, [](Self& s, const Text&) { s.m_bus.faults().heldElsewhere = true; });
        row("hold off", kNone, kAny, [](Self& s, const Text&) { s.m_bus.faults().heldElsewhere = false; });
        row("deny", kNone, kAny, [](Self& s, const Text&) { s.deny(); });
        row("deny off", kNone, kAny, [](Self& s, const Text&) { s.m_bus.setDenied(false); });
        row("usblp", kNone, kAny, [](Self& s, const Text&) { s.setUsblp(true); });
        row("usblp off", kNone, kAny, [](Self& s, const Text&) { s.setUsblp(false); });
        row("full speed", kNone, kAny, [](Self& s, const Text&) { s.setHighSpeed(false); });
        row("high speed", kNone, kAny, [](Self& s, const Text&) { s.setHighSpeed(true); });
        row("model k1", kNone, kAny, [](Self& s, const Text&) { s.plugIn(Model::K1); });
        row("model k2", kNone, kAny, [](Self& s, const Text&) { s.plugIn(Model::K2); });
        row("say", kHex, kIn, [](Self& s, const Text& hex) { s.m_printer.say(QByteArray::fromHex(hex.toLatin1())); });
        row("paper", kFile, kAny, [](Self& s, const Text& file) { s.writePaper(file); });
        row("status", kNone, kAny, [](Self& s, const Text&) { s.tellStatus(); });
        return made;
    }();
    return table;
}

QString FaultCommands::obey(const QString& line)
{
    for (const Row& row : rows()) {
        QString argument;
        if (matches(row, line, &argument))
            return carryOut(row, argument);
    }
    return QStringLiteral("not understood: \"%1\"; there are: %2")
        .arg(line.simplified(), usage(line.simplified().section(' ', 0, 0)));
}

/// The pattern has to match the whole line, or something behind a command would go unnoticed.
bool FaultCommands::matches(const Row& row, const QString& line, QString* argument)
{
    const QString words = QString::fromLatin1(row.words).replace(' ', QLatin1String("\\s+"));
    const QString form = QString::fromLatin1(kForms[static_cast<int>(row.argument)].pattern);
    const QRegularExpression pattern(QRegularExpression::anchoredPattern("\\s*" + words + form + "\\s*"),
                                     QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(line);
    *argument = match.captured(1);
    return match.hasMatch();
}

QString FaultCommands::list()
{
    return usage(QString());
}

/// The commands that begin with a word; all of them if none does.
QString FaultCommands::usage(const QString& firstWord)
{
    QStringList all, near;
    for (const Row& row : rows()) {
        const QString command = QString::fromLatin1(row.words) + kForms[static_cast<int>(row.argument)].name;
        all += command;
        if (command.section(' ', 0, 0) == firstWord.toLower())
            near += command;
    }
    return (near.isEmpty() ? all : near).join(QStringLiteral(", "));
}

QString FaultCommands::carryOut(const Row& row, const QString& argument)
{
    const bool pluggedIn = m_printer.report().pluggedIn;
    if (row.needs == Needs::PluggedIn && !pluggedIn)
        return QStringLiteral("nothing done: the printer is unplugged");
    if (row.needs == Needs::Unplugged && pluggedIn)
        return QStringLiteral("nothing done: the printer is plugged in");
    m_answer = QStringLiteral("ok");
    if (row.change)
        m_printer.fault([&](PrinterFaults& faults) { row.change(faults, argument.toInt()); });
    else
        row.act(*this, argument);
    return m_answer;
}

void FaultCommands::setHighSpeed(bool highSpeed)
{
    m_shape.highSpeed = highSpeed;
    m_bus.setShape(m_shape);
    m_answer = kFromNextPlugging;
}

/// The kernel's driver comes when the device does.
void FaultCommands::setUsblp(bool there)
{
    m_bus.faults().usblp = there;
    m_answer = kFromNextPlugging;
}

void FaultCommands::plugIn(Model model)
{
    if (m_printer.report().pluggedIn && m_printer.report().model == model)
        m_answer = QStringLiteral("nothing done: a %1 is plugged in").arg(nameOf(model));
    else
        m_printer.plugIn(model);
}

void FaultCommands::deny()
{
    m_bus.setDenied(true);
    if (geteuid() == 0)
        m_answer = QStringLiteral("ok, but a program of root may open it all the same");
}

void FaultCommands::writePaper(const QString& file)
{
    QImage paper = m_printer.paper();
    paper.setDotsPerMeterX(kDotsPerMetre);
    paper.setDotsPerMeterY(kDotsPerMetre);
    if (paper.isNull())
        m_answer = QStringLiteral("nothing done: there is no paper yet");
    else if (!paper.save(file, "PNG"))
        m_answer = QStringLiteral("cannot write %1").arg(file);
}

void FaultCommands::tellStatus()
{
    const PrinterReport report = m_printer.report();
    m_answer = QStringLiteral("%1, %2, frames %3, damaged frames %4, lines %5, key exchanges %6")
                   .arg(report.pluggedIn ? "plugged in" : "unplugged", nameOf(report.model))
                   .arg(report.frames)
                   .arg(report.crcErrors)
                   .arg(report.paperLines)
                   .arg(report.keyExchanges);
}
