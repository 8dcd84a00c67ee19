#pragma once

#include "device/printer.h"

#include <atomic>

struct port;

/// The printer behind the port that the program was linked with.
class PrinterWin : public Printer
{
    Q_OBJECT

public:
    using Printer::Printer;

    int write(const unsigned char* data, int length) override;
    /// Does nothing: the port object stays until the process ends.
    void close() override;
    void openPort() override;
    int initPrinter() override;
    const unsigned char* read(int* length, int* result) override;

private:
    std::atomic<port*> m_port{nullptr};
};

/// The one connection of the process, made on first use and deleted at process exit. Any thread.
PrinterWin* printerConnection();
