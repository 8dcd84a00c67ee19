#pragma once

#include "simulator/frame_decoder.h"
#include "simulator/paper_roll.h"

#include <QImage>
#include <QMetaType>
#include <QObject>
#include <QVector>

#include <deque>
#include <mutex>

/// One frame that reached the device.
struct FrameRecord
{
    quint8 code = 0;
    quint8 tag = 0;
    quint16 length = 0; ///< payload bytes
    bool crcOk = false;
    qint64 msSinceEpoch = 0;
    qint64 number = 0; ///< counted from 0 for the whole life of the printer, resets included
};
Q_DECLARE_METATYPE(FrameRecord)

/// The paper at one moment; what stands here belongs together although lines keep coming.
struct PaperLook
{
    int roll = 0; ///< grows with every new roll
    int headDots = 0;
    qint64 firstKeptLine = 0; ///< the lines before it are gone
    qint64 lineCount = 0;     ///< dot lines since the roll was put in
    qint64 firstLine = 0;     ///< the first line of `picture`
    QImage picture;           ///< as SimulatedPrinter::paper() gives it
};

/// What is wrong with the device, until it is told otherwise or reset.
struct PrinterFaults
{
    bool refusingWrites = false;
    bool silent = false; ///< obeys, but answers nothing; what it says unasked still comes
    bool failingPrepare = false;
    bool outHalted = false; ///< that endpoint refuses everything until its halt is cleared
    bool inHalted = false;
    /// It unplugs itself once it has taken so many further bytes; the write that would go beyond them fails, but the
    /// bytes up to there have arrived. Negative: it stays.
    qint64 bytesUntilGone = -1;
    /// It takes so many further bytes and what comes with the last of them; then it takes nothing, and loses nothing,
    /// as out of paper with a full buffer. Negative: it never holds back.
    qint64 bytesUntilHolding = -1;
};

/// What one sees of the device at one moment.
struct PrinterReport
{
    enum class Model { K1, K2 };
    /// What the device reports in its status byte. Other than Ready, it takes jobs and feeds but no paper moves.
    enum class Condition : quint8 { Ready = 0, PaperOut = 1, CoverOpen = 16 };

    Model model = Model::K1;
    Condition condition = Condition::Ready;
    PrinterFaults faults;
    bool pluggedIn = true;
    int plugging = 0; ///< grows with every plugging in
    quint32 key = kPowerOnKey;
    qint64 paperLines = 0; ///< dot lines that came out since the roll was put in
    qint64 fedLines = 0;   ///< those of them that feeds left blank
    QVector<int> feeds;    ///< dot lines of each feed command, also the feeds of 0 lines
    int frames = 0;        ///< frames whose CRC was right
    int crcErrors = 0;     ///< frames that were whole and had another CRC
    int keyExchanges = 0;
    qint64 skippedBytes = 0; ///< bytes that belonged to no frame
};

/// A printer in software: the device's side of the wire, and its paper.
///
/// Every function may be called from any thread. The signals come from the thread that called receive(), after the
/// printer's lock is released, so a slot may call the printer back; across threads they arrive queued.
class SimulatedPrinter : public QObject
{
    Q_OBJECT

public:
    using Model = PrinterReport::Model;
    using Condition = PrinterReport::Condition;
    enum class Endpoint { In, Out }; ///< as the client sees them

    // Errors of the wire; all negative, and a port reports them by portNumber().
    static constexpr int kBadArgument = -2;
    static constexpr int kUnplugged = -4;
    static constexpr int kRefused = -9; ///< also of a halted endpoint

    /// For receive() and readReplies(): whichever connection is the living one.
    static constexpr int kAnyPlugging = -1;
    static constexpr int kKeptRecords = 4096;           ///< frames and feeds remembered, the newest
    static constexpr int kReplyBufferBytes = 64 * 1024; ///< a reply that does not fit is lost

    explicit SimulatedPrinter(Model model = Model::K1, QObject* parent = nullptr);

    static int headDots(Model model);

    // The wire.

    /// Takes bytes as a bulk OUT endpoint brings them, cut anywhere.
    /// @param data      `length` bytes
    /// @param plugging  `plugging` of the report that the caller's connection was opened with; an older one is dead
    /// @return          bytes taken: all of them, or none while it holds back; kUnplugged, kRefused or kBadArgument
    int receive(const unsigned char* data, int length, int plugging = kAnyPlugging);
    /// Hands over what the device wants to say, replies joined and cut as `capacity` demands. Returns at once.
    /// @return  bytes put into `buffer`, 0 when there is nothing; kUnplugged, kRefused or kBadArgument
    int readReplies(unsigned char* buffer, int capacity, int plugging = kAnyPlugging);
    /// At most one reply, as one transfer of a bulk IN endpoint would bring it; the rest of a cut one comes next.
    QByteArray takeTransfer(int capacity);
    /// Ends a halt. Of the Out endpoint, halted or not, it also forgets a half-received frame and a half-filled line.
    void clearHalt(Endpoint endpoint);
    /// Starts a new session: clears both halts and forgets replies nobody fetched. The key stays.
    /// @param plugging  receives the value for receive() and readReplies(); may be null
    /// @return          0, kUnplugged or kRefused
    int prepare(int* plugging = nullptr);

    // What happens to the device.

    /// Power-on state: plugged in, obedient, nothing counted, a new roll. Connections opened before are dead.
    void reset(Model model = Model::K1);
    void unplug();
    /// Plugs it in again, with the key it has at power-on. Paper and counts stay. Nothing happens when it is in.
    void plugIn();
    /// Plugs in a device of this model, with a new roll when it is another model.
    void plugIn(Model model);
    /// Changes what is wrong with the device, between two transfers.
    /// @param change  takes PrinterFaults& and calls no function of the printer
    template <class Change>
    void fault(Change change)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change(m_state.faults);
    }
    /// Sends something that nobody asked for, right or wrong, as one reply.
    void say(const QByteArray& bytes);
    void setCondition(Condition condition);

    // What one sees of it.

    PrinterReport report() const;
    /// The paper from line `firstLine` on, numbered from 0 for a new roll, feeds included: head width × lines, black
    /// dots on white, Format_Mono whose colour 1 is black. The roll keeps PaperRoll::kKeptLines lines; null when
    /// there are none. A copy: cheap for the tail, costly for a long roll.
    QImage paper(qint64 firstLine = 0) const;
    /// The same for at most `lines` lines, with the facts that tell which lines they are. Cheap for a screenful
    /// anywhere on the roll; for none it gives the facts alone.
    PaperLook lookAtPaper(qint64 firstLine, int lines) const;
    /// Bytes of the lines that jobs burnt, headDots / 8 a line; no feeds, no self-test page.
    QByteArray jobLines() const;
    /// The remembered frames from this number on.
    QVector<FrameRecord> frames(qint64 firstNumber = 0) const;

signals:
    void frameReceived(const FrameRecord& frame);
    void paperChanged();
    void pluggedInChanged(bool pluggedIn);
    void conditionChanged();

private:
    // All of these with m_mutex held.
    bool isConnected(int plugging) const;
    int takeBytes(const unsigned char* data, int length, QVector<FrameRecord>* received);
    void handleFrames(QVector<FrameRecord>* received);
    void obey(const WireFrame& frame);
    void obeyTagged(const WireFrame& frame);
    void takeKey(const QByteArray& payload);
    void feed(const QByteArray& payload);
    void printSelfTest();
    void answer(quint8 query);
    void queueReply(const QByteArray& frame);
    QByteArray takeOldest(int capacity);
    void loseHalves();
    void loseSession();
    void powerOn();
    void putInRoll();

    mutable std::mutex m_mutex; ///< not QMutex: the thread sanitizer does not see into an uninstrumented Qt
    PrinterReport m_state;      ///< but for the feeds, the lines and the skipped bytes, which report() fills in
    FrameDecoder m_decoder;
    PaperRoll m_roll;
    int m_rollNumber = 0;
    qint64 m_nextFrame = 0;
    std::deque<QByteArray> m_replies;
    int m_replyBytes = 0;
    std::deque<int> m_feeds;
    std::deque<FrameRecord> m_records;
};
