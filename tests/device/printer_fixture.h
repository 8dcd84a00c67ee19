#pragma once

#include "app/globals/model.h"
#include "device/packet.h"
#include "device/printer_thread.h"
#include "device/printer_win.h"
#include "simulator/simulated_port.h"

#include <QtTest>

/// Model and "connected" flag, which a window sets once the model reply is there.
inline void setModel(int index, bool confirmed)
{
    g_modelIndex = index;
    g_modelConfirmed = confirmed;
}

/// The client and the simulated printer as at the start of the program.
inline void startOver(SimulatedPrinter::Model model = SimulatedPrinter::Model::K1)
{
    simulatedPrinter().reset(model);
    g_portOpen = g_printerReady = false;
    setModel(0, false);
    setCurrentCrcKey(kDefaultCrcKey);
}

inline unsigned char* bytesOf(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}

/// Runs the job that the thread holds to its end.
/// @return  code and text of each report
inline QStringList runStoredJob(PrinterThread& thread)
{
    std::mutex mutex;
    QStringList reports;
    // In the job's own thread: a queued call would be a race to the thread sanitizer, which does not see Qt's queue.
    const auto keep = [&](int code, const QString& message) {
        const std::lock_guard<std::mutex> lock(mutex);
        reports += QString::number(code) + ' ' + message;
    };
    const auto kept = QObject::connect(&thread, &PrinterThread::resultReady, &thread, keep, Qt::DirectConnection);
    thread.start();
    if (!thread.wait(60000))
        qFatal("the job does not end");
    const std::lock_guard<std::mutex> lock(mutex); // before the slot is deleted, which the job's thread has read
    QObject::disconnect(kept);
    return reports;
}

/// Print type 3 burns what is black and leaves the dots alone.
inline QStringList runJob(const QImage& image, int printType = 3)
{
    PrinterThread thread;
    thread.setImage(image, printType);
    return runStoredJob(thread);
}

inline const QString kSent = QStringLiteral("0 send success");
inline const QString kNotSent =
    QStringLiteral("1 连接失败,请尝试\n1.检查设备是否开启\n2.检查设备是否连接\n3.重新插拔USB");
