// What is done to the simulated printer, and what one sees of it. The wire is in simulated_printer.cpp.
#include "simulator/simulated_printer.h"

#include <algorithm>

int SimulatedPrinter::headDots(Model model)
{
    return model == Model::K2 ? 576 : 384;
}

void SimulatedPrinter::powerOn()
{
    m_state.pluggedIn = true;
    ++m_state.plugging;
    m_state.key = kPowerOnKey;
    m_state.faults.bytesUntilGone = -1;
    m_state.faults.outHalted = m_state.faults.inHalted = false;
    loseSession();
}

void SimulatedPrinter::putInRoll()
{
    m_roll = PaperRoll(headDots(m_state.model));
    ++m_rollNumber;
}

void SimulatedPrinter::reset(Model model)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const int plugging = m_state.plugging;
        m_state = PrinterReport();
        m_state.model = model;
        m_state.plugging = plugging;
        m_decoder = FrameDecoder();
        putInRoll();
        m_feeds.clear();
        m_records.clear();
        powerOn();
    }
    emit pluggedInChanged(true);
    emit conditionChanged();
    emit paperChanged();
}

void SimulatedPrinter::unplug()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_state.pluggedIn)
            return;
        m_state.pluggedIn = false;
    }
    emit pluggedInChanged(false);
}

void SimulatedPrinter::plugIn()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_state.pluggedIn)
            return;
        powerOn();
    }
    emit pluggedInChanged(true);
}

void SimulatedPrinter::plugIn(Model model)
{
    bool newRoll = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        newRoll = model != m_state.model;
        if (m_state.pluggedIn && !newRoll)
            return;
        m_state.model = model;
        if (newRoll)
            putInRoll();
        powerOn();
    }
    emit pluggedInChanged(true);
    if (newRoll)
        emit paperChanged();
}

void SimulatedPrinter::say(const QByteArray& bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    queueReply(bytes);
}

void SimulatedPrinter::setCondition(Condition condition)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_state.condition == condition)
            return;
        m_state.condition = condition;
    }
    emit conditionChanged();
}

PrinterReport SimulatedPrinter::report() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    PrinterReport report = m_state;
    report.paperLines = m_roll.lineCount();
    report.fedLines = m_roll.fedLines();
    report.feeds = QVector<int>(m_feeds.begin(), m_feeds.end());
    report.skippedBytes = m_decoder.skippedBytes();
    return report;
}

QImage SimulatedPrinter::paper(qint64 firstLine) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_roll.picture(firstLine);
}

PaperLook SimulatedPrinter::lookAtPaper(qint64 firstLine, int lines) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    PaperLook look;
    look.roll = m_rollNumber;
    look.headDots = m_roll.headDots();
    look.firstKeptLine = m_roll.firstKeptLine();
    look.lineCount = m_roll.lineCount();
    look.firstLine = std::max(firstLine, look.firstKeptLine);
    look.picture = m_roll.picture(firstLine, lines);
    return look;
}

QByteArray SimulatedPrinter::jobLines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_roll.jobLines();
}

QVector<FrameRecord> SimulatedPrinter::frames(qint64 firstNumber) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto first = std::partition_point(m_records.begin(), m_records.end(),
                                            [&](const FrameRecord& record) { return record.number < firstNumber; });
    return QVector<FrameRecord>(first, m_records.end());
}
