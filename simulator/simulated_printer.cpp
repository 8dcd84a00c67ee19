#include "simulator/simulated_printer.h"

#include "simulator/replies.h"

#include <QDateTime>

#include <algorithm>

namespace {

constexpr quint8 kPrintData = 0x00;
constexpr quint8 kSetKey = 0x18;
constexpr quint8 kFeed = 0x1A;
constexpr quint8 kSelfTest = 0x1B;
constexpr int kSelfTestLines = 32;

template <typename T>
void remember(std::deque<T>* records, const T& record)
{
    records->push_back(record);
    if (records->size() > SimulatedPrinter::kKeptRecords)
        records->pop_front();
}

} // namespace

SimulatedPrinter::SimulatedPrinter(Model model, QObject* parent)
    : QObject(parent)
    , m_roll(headDots(model))
{
    m_state.model = model;
    qRegisterMetaType<FrameRecord>();
}

int SimulatedPrinter::receive(const unsigned char* data, int length, int plugging)
{
    if (!data || length < 0)
        return kBadArgument;
    QVector<FrameRecord> received;
    int result = 0;
    bool paperMoved = false;
    bool wentAway = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!isConnected(plugging))
            return kUnplugged;
        if (m_state.faults.refusingWrites || m_state.faults.outHalted)
            return kRefused;
        if (m_state.faults.bytesUntilHolding == 0)
            return 0;
        const qint64 linesBefore = m_roll.lineCount();
        result = takeBytes(data, length, &received);
        paperMoved = m_roll.lineCount() != linesBefore;
        wentAway = !m_state.pluggedIn;
    }
    for (const FrameRecord& record : qAsConst(received))
        emit frameReceived(record);
    if (paperMoved)
        emit paperChanged();
    if (wentAway)
        emit pluggedInChanged(false);
    return result;
}

bool SimulatedPrinter::isConnected(int plugging) const
{
    return m_state.pluggedIn && (plugging == kAnyPlugging || plugging == m_state.plugging);
}

int SimulatedPrinter::takeBytes(const unsigned char* data, int length, QVector<FrameRecord>* received)
{
    PrinterFaults& faults = m_state.faults;
    const bool leaves = faults.bytesUntilGone >= 0 && faults.bytesUntilGone <= length;
    const int taken = leaves ? static_cast<int>(faults.bytesUntilGone) : length;
    if (faults.bytesUntilGone >= 0)
        faults.bytesUntilGone -= taken;
    if (faults.bytesUntilHolding >= 0)
        faults.bytesUntilHolding = std::max<qint64>(0, faults.bytesUntilHolding - taken);
    m_decoder.append(data, taken);
    handleFrames(received);
    if (leaves)
        m_state.pluggedIn = false;
    return taken == length ? length : kUnplugged;
}

void SimulatedPrinter::handleFrames(QVector<FrameRecord>* received)
{
    WireFrame frame;
    while (m_decoder.next(&frame)) {
        FrameRecord record;
        record.code = frame.code;
        record.tag = frame.tag;
        record.length = static_cast<quint16>(frame.payload.size());
        record.crcOk = frame.seal == sealOf(frame.payload, frame.code == kSetKey ? kKeyMask : m_state.key);
        record.msSinceEpoch = QDateTime::currentMSecsSinceEpoch();
        record.number = m_nextFrame++;
        remember(&m_records, record);
        received->append(record);
        if (!record.crcOk) {
            ++m_state.crcErrors;
            continue;
        }
        ++m_state.frames;
        obey(frame);
    }
}

void SimulatedPrinter::obey(const WireFrame& frame)
{
    if (frame.tag == 1) {
        obeyTagged(frame);
        return;
    }
    if (frame.payload.size() != 2)
        return;
    if (frame.code == kFeed) {
        feed(frame.payload);
        return;
    }
    if (frame.payload != QByteArray(2, '\0'))
        return;
    if (frame.code == kSelfTest)
        printSelfTest();
    answer(frame.code);
}

void SimulatedPrinter::obeyTagged(const WireFrame& frame)
{
    if (frame.code == kSetKey)
        takeKey(frame.payload);
    else if (frame.code == kPrintData && m_state.condition == Condition::Ready)
        m_roll.burn(frame.payload);
}

void SimulatedPrinter::takeKey(const QByteArray& payload)
{
    if (payload.size() != 4)
        return;
    m_state.key = wireNumber32(payload.constData()) ^ kKeyMask;
    ++m_state.keyExchanges;
}

void SimulatedPrinter::feed(const QByteArray& payload)
{
    const int lines = wireNumber16(payload.constData());
    remember(&m_feeds, lines);
    if (m_state.condition == Condition::Ready)
        m_roll.feed(lines);
    if (!m_state.faults.silent)
        queueReply(sealedFrame(kFeed, 0, payload, m_state.key));
}

void SimulatedPrinter::printSelfTest()
{
    if (m_state.condition != Condition::Ready)
        return;
    // A chequered band with squares of 8 dots, between two solid lines.
    QByteArray pattern;
    for (int line = 0; line < kSelfTestLines; ++line) {
        const bool solid = line == 0 || line == kSelfTestLines - 1;
        for (int column = 0; column < m_roll.lineBytes(); ++column)
            pattern.append(solid || (column + line / 8) % 2 == 0 ? '\xFF' : '\0');
    }
    m_roll.burnOwnPattern(pattern);
}

void SimulatedPrinter::answer(quint8 query)
{
    DeviceFacts facts;
    facts.model = m_state.model == Model::K2 ? "Quillbox_K2" : "Quillbox_K1";
    facts.statusByte = static_cast<quint8>(m_state.condition);
    facts.printedLines = m_roll.lineCount();
    const Reply reply = replyTo(query, facts);
    if (reply.known && !m_state.faults.silent)
        queueReply(sealedFrame(reply.code, 0, reply.payload, m_state.key));
}

void SimulatedPrinter::queueReply(const QByteArray& frame)
{
    if (m_replyBytes + frame.size() > kReplyBufferBytes)
        return;
    m_replies.push_back(frame);
    m_replyBytes += frame.size();
}

int SimulatedPrinter::readReplies(unsigned char* buffer, int capacity, int plugging)
{
    if (!buffer || capacity < 0)
        return kBadArgument;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!isConnected(plugging))
        return kUnplugged;
    if (m_state.faults.inHalted)
        return kRefused;
    int filled = 0;
    while (filled < capacity && !m_replies.empty()) {
        const QByteArray bytes = takeOldest(capacity - filled);
        std::copy(bytes.cbegin(), bytes.cend(), buffer + filled);
        filled += bytes.size();
    }
    return filled;
}

QByteArray SimulatedPrinter::takeTransfer(int capacity)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_state.pluggedIn || m_state.faults.inHalted || m_replies.empty() || capacity <= 0)
        return {};
    return takeOldest(capacity);
}

QByteArray SimulatedPrinter::takeOldest(int capacity)
{
    QByteArray& oldest = m_replies.front();
    QByteArray bytes = oldest.left(capacity);
    oldest.remove(0, bytes.size());
    if (oldest.isEmpty())
        m_replies.pop_front();
    m_replyBytes -= bytes.size();
    return bytes;
}

int SimulatedPrinter::prepare(int* plugging)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_state.pluggedIn)
        return kUnplugged;
    if (m_state.faults.failingPrepare)
        return kRefused;
    m_state.faults.outHalted = m_state.faults.inHalted = false;
    loseSession();
    if (plugging)
        *plugging = m_state.plugging;
    return 0;
}

void SimulatedPrinter::clearHalt(Endpoint endpoint)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (endpoint == Endpoint::In) {
        m_state.faults.inHalted = false;
        return;
    }
    m_state.faults.outHalted = false;
    loseHalves();
}

void SimulatedPrinter::loseHalves()
{
    m_decoder.clear();
    m_roll.dropPartialLine();
}

void SimulatedPrinter::loseSession()
{
    loseHalves();
    m_replies.clear();
    m_replyBytes = 0;
}
