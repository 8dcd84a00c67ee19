#pragma once

#include "simulator/usb/virtual_usb_printer.h"

#include <QString>
#include <QVector>

/// A line of text for everything that can happen to a printer on a virtual bus, for a person or a test at the other
/// end of a pipe. One thread.
class FaultCommands
{
public:
    /// Full speed until told otherwise.
    /// @param printer  is the one on the bus; both outlive this object
    FaultCommands(SimulatedPrinter& printer, VirtualUsbPrinter& bus);

    /// Does what the line says. Upper and lower case are the same.
    /// @return  one line without a line end: "ok", maybe with what there is to say; the state that was asked for; or
    ///          why nothing happened
    QString obey(const QString& line);

    /// The commands, separated by commas; a word in capitals stands for what it names.
    static QString list();

private:
    enum class Argument { None, Bytes, Hex, File };
    enum class Needs { Nothing, PluggedIn, Unplugged };
    using Action = void (*)(FaultCommands& self, const QString& argument);
    using FaultChange = void (*)(PrinterFaults& faults, qint64 bytes);
    struct Row
    {
        const char* words;
        Argument argument;
        Needs needs;
        Action act;         ///< null where the row only changes what is wrong with the printer
        FaultChange change; ///< null where it does something else
    };

    static const QVector<Row>& rows();
    static bool matches(const Row& row, const QString& line, QString* argument);
    static QString usage(const QString& firstWord);
    QString carryOut(const Row& row, const QString& argument);

    void setHighSpeed(bool highSpeed);
    void setUsblp(bool there);
    void plugIn(SimulatedPrinter::Model model);
    void deny();
    void writePaper(const QString& file);
    void tellStatus();

    SimulatedPrinter& m_printer;
    VirtualUsbPrinter& m_bus;
    UsbShape m_shape;
    QString m_answer;
};
