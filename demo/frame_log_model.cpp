#include "demo/frame_log_model.h"

#include <QBrush>
#include <QColor>
#include <QDateTime>
#include <QFont>

#include <algorithm>

namespace {

struct CodeMeaning
{
    quint8 code;
    const char* text;
};

const CodeMeaning kMeanings[] = {
    {0x00, QT_TRANSLATE_NOOP("FrameLogModel", "打印数据")},
    {0x04, QT_TRANSLATE_NOOP("FrameLogModel", "查询固件版本")},
    {0x06, QT_TRANSLATE_NOOP("FrameLogModel", "查询型号")},
    {0x08, QT_TRANSLATE_NOOP("FrameLogModel", "查询蓝牙地址")},
    {0x0A, QT_TRANSLATE_NOOP("FrameLogModel", "查询序列号")},
    {0x0C, QT_TRANSLATE_NOOP("FrameLogModel", "查询状态")},
    {0x0E, QT_TRANSLATE_NOOP("FrameLogModel", "查询电池电压")},
    {0x10, QT_TRANSLATE_NOOP("FrameLogModel", "查询电池状态")},
    {0x12, QT_TRANSLATE_NOOP("FrameLogModel", "查询打印头温度")},
    {0x15, QT_TRANSLATE_NOOP("FrameLogModel", "查询工厂标记")},
    {0x17, QT_TRANSLATE_NOOP("FrameLogModel", "查询蓝牙状态")},
    {0x18, QT_TRANSLATE_NOOP("FrameLogModel", "设置密钥")},
    {0x1A, QT_TRANSLATE_NOOP("FrameLogModel", "走纸")},
    {0x1B, QT_TRANSLATE_NOOP("FrameLogModel", "打印自检页")},
    {0x1C, QT_TRANSLATE_NOOP("FrameLogModel", "查询浓度")},
    {0x1F, QT_TRANSLATE_NOOP("FrameLogModel", "查询自动关机时间")},
    {0x23, QT_TRANSLATE_NOOP("FrameLogModel", "查询主板版本")},
    {0x25, QT_TRANSLATE_NOOP("FrameLogModel", "查询硬件信息")},
    {0x28, QT_TRANSLATE_NOOP("FrameLogModel", "查询最大间隙")},
    {0x2A, QT_TRANSLATE_NOOP("FrameLogModel", "查询纸张类型")},
    {0x2D, QT_TRANSLATE_NOOP("FrameLogModel", "查询国家代码")},
    {0x30, QT_TRANSLATE_NOOP("FrameLogModel", "查询打印模式")},
    {0x34, QT_TRANSLATE_NOOP("FrameLogModel", "查询打印长度")},
};

const QColor kWrong(0xb4, 0x23, 0x18);

QFont boldFont()
{
    QFont font; // takes everything else from the view
    font.setBold(true);
    return font;
}

} // namespace

FrameLogModel::FrameLogModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

QString FrameLogModel::meaningOf(quint8 code)
{
    const auto* meaning = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                       [code](const CodeMeaning& each) { return each.code == code; });
    return meaning == std::end(kMeanings) ? tr("未知命令") : tr(meaning->text);
}

QStringList FrameLogModel::widestTexts(int column)
{
    FrameRecord frame;
    frame.tag = 0xFF;
    frame.length = 0xFFFF;
    QStringList texts{text(frame, column)};
    frame.crcOk = true;
    texts += text(frame, column);
    for (const CodeMeaning& meaning : kMeanings) {
        frame.code = meaning.code;
        texts += text(frame, column);
    }
    return texts;
}

void FrameLogModel::append(const QVector<FrameRecord>& frames)
{
    auto first = std::find_if(frames.begin(), frames.end(),
                              [this](const FrameRecord& frame) { return frame.number >= m_nextNumber; });
    if (first == frames.end())
        return;
    m_nextNumber = frames.last().number + 1;
    const int added = std::min<int>(static_cast<int>(frames.end() - first), kKeptRows);
    const int surplus = m_frames.size() + added - kKeptRows;
    if (surplus > 0) {
        beginRemoveRows({}, 0, surplus - 1);
        m_frames.remove(0, surplus);
        endRemoveRows();
    }
    beginInsertRows({}, m_frames.size(), m_frames.size() + added - 1);
    m_frames += frames.mid(frames.size() - added);
    endInsertRows();
}

void FrameLogModel::clear()
{
    beginResetModel();
    m_frames.clear();
    endResetModel();
}

void FrameLogModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    if (!m_frames.isEmpty())
        emit dataChanged(index(0, 0), index(m_frames.size() - 1, ColumnCount - 1));
}

int FrameLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_frames.size();
}

int FrameLogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString FrameLogModel::text(const FrameRecord& frame, int column)
{
    switch (column) {
    case Time:
        return QDateTime::fromMSecsSinceEpoch(frame.msSinceEpoch).toString(QStringLiteral("hh:mm:ss.zzz"));
    case Code:
        return QStringLiteral("0x%1").arg(frame.code, 2, 16, QLatin1Char('0'));
    case Meaning:
        return meaningOf(frame.code);
    case Tag:
        return QString::number(frame.tag);
    case Length:
        return QString::number(frame.length);
    case Crc:
        return frame.crcOk ? tr("正确") : tr("✗ 错误");
    default:
        return {};
    }
}

QVariant FrameLogModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FrameRecord& frame = m_frames.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(frame, index.column());
    case Qt::ToolTipRole:
        return frame.crcOk ? QVariant() : tr("CRC 与数据不符，打印机忽略了这一帧");
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter |
                   (index.column() == Tag || index.column() == Length ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ForegroundRole:
        return frame.crcOk ? QVariant() : QBrush(kWrong);
    case Qt::FontRole:
        return frame.crcOk ? QVariant() : boldFont();
    default:
        return {};
    }
}

QVariant FrameLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignVCenter | (section == Tag || section == Length ? Qt::AlignRight : Qt::AlignLeft));
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Time:
        return tr("时间");
    case Code:
        return tr("代码");
    case Meaning:
        return tr("含义");
    case Tag:
        return tr("标签");
    case Length:
        return tr("长度");
    case Crc:
        return tr("CRC");
    default:
        return {};
    }
}
