// What is done to the simulated printer, and what one sees of it. The wire is in simulated_printer.cpp.
#include "simulator/simulated_printer.h"

#include <algorithm>

namespace {

template <typename T>
QVector<T> asVector(const std::deque<T>& records)
{
    return QVector<T>(records.begin(), records.end());
}

} // namespace

int SimulatedPrinter::headDots(Model model)
{
    return model == Model::K2 ? 576 : 384;
}

void SimulatedPrinter::powerOn()
{
    m_pluggedIn = true;
    ++m_plugging;
    m_key = kPowerOnKey;
    m_faults.bytesUntilGone = -1;
    m_faults.outHalted = m_faults.inHalted = false;
    loseSession();
}

void SimulatedPrinter::putInRoll()
{
    m_roll = PaperRoll(headDots(m_model));
    ++m_rollNumber;
}

void SimulatedPrinter::reset(Model model)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_model = model;
        m_condition = Condition::Ready;
        m_faults = Faults();
        m_counts = Counts();
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
        if (!m_pluggedIn)
            return;
        m_pluggedIn = false;
    }
    emit pluggedInChanged(false);
}

void SimulatedPrinter::plugIn()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pluggedIn)
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
        newRoll = model != m_model;
        if (m_pluggedIn && !newRoll)
            return;
        m_model = model;
        if (newRoll)
            putInRoll();
        powerOn();
    }
    emit pluggedInChanged(true);
    if (newRoll)
        emit paperChanged();
}

void SimulatedPrinter::goAwayAfter(qint64 bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.bytesUntilGone = bytes;
}

void SimulatedPrinter::setRefusingWrites(bool refusing)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.refusingWrites = refusing;
}

void SimulatedPrinter::setSilent(bool silent)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.silent = silent;
}

void SimulatedPrinter::setFailingPrepare(bool failing)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.failingPrepare = failing;
}

void SimulatedPrinter::setHoldingBack(bool holdingBack)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.holdingBack = holdingBack;
    m_faults.bytesUntilHolding = -1;
}

void SimulatedPrinter::holdBackAfter(qint64 bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.holdingBack = bytes == 0;
    m_faults.bytesUntilHolding = bytes;
}

void SimulatedPrinter::halt(Endpoint endpoint)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    (endpoint == Endpoint::Out ? m_faults.outHalted : m_faults.inHalted) = true;
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
        if (m_condition == condition)
            return;
        m_condition = condition;
    }
    emit conditionChanged();
}

bool SimulatedPrinter::isPluggedIn() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pluggedIn;
}

int SimulatedPrinter::plugging() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_plugging;
}

SimulatedPrinter::Model SimulatedPrinter::model() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_model;
}

SimulatedPrinter::Condition SimulatedPrinter::condition() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_condition;
}

bool SimulatedPrinter::isHalted(Endpoint endpoint) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return endpoint == Endpoint::Out ? m_faults.outHalted : m_faults.inHalted;
}

quint32 SimulatedPrinter::key() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_key;
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

qint64 SimulatedPrinter::paperLines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_roll.lineCount();
}

QByteArray SimulatedPrinter::jobLines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_roll.jobLines();
}

qint64 SimulatedPrinter::fedLines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_roll.fedLines();
}

QVector<int> SimulatedPrinter::feeds() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return asVector(m_feeds);
}

int SimulatedPrinter::frameCount() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts.frames;
}

int SimulatedPrinter::crcErrorCount() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts.crcErrors;
}

int SimulatedPrinter::keyExchangeCount() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts.keyExchanges;
}

qint64 SimulatedPrinter::skippedBytes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_decoder.skippedBytes();
}

QVector<FrameRecord> SimulatedPrinter::frames(qint64 firstNumber) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto first = std::partition_point(m_records.begin(), m_records.end(),
                                            [&](const FrameRecord& record) { return record.number < firstNumber; });
    return QVector<FrameRecord>(first, m_records.end());
}
