#include "demo/frame_log_model.h"

#include <QColor>
#include <QCoreApplication>
#include <QDateTime>
#include <QFont>

#include <algorithm>

#include <algorithm>

namespace {

const char* const kHeaders[FrameLogModel::ColumnCount] = {
    QT_TRANSLATE_NOOP("FrameLogModel", "时间"), QT_TRANSLATE_NOOP("FrameLogModel", "代码"),
    QT_TRANSLATE_NOOP("FrameLogModel", "含义"), QT_TRANSLATE_NOOP("FrameLogModel", "标记"),
    QT_TRANSLATE_NOOP("FrameLogModel", "长度"), QT_TRANSLATE_NOOP("FrameLogModel", "CRC")};

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

/// What the printer takes a code for, in the user's language.
QString meaningOf(quint8 code)
{
    const auto* meaning = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                       [code](const CodeMeaning& each) { return each.code == code; });
    return meaning == std::end(kMeanings) ? FrameLogModel::tr("未知命令") : FrameLogModel::tr(meaning->text);
}

QString textOf(const FrameRecord& frame, int column)
{
    switch (column) {
    case FrameLogModel::Time:
        return QDateTime::fromMSecsSinceEpoch(frame.msSinceEpoch).toString(QStringLiteral("hh:mm:ss.zzz"));
    case FrameLogModel::Code:
        return QStringLiteral("0x%1").arg(frame.code, 2, 16, QLatin1Char('0'));
    case FrameLogModel::Meaning:
        return meaningOf(frame.code);
    case FrameLogModel::Tag:
        return QString::number(frame.tag);
    case FrameLogModel::Length:
        return QString::number(frame.length);
    default:
        return frame.crcOk ? FrameLogModel::tr("正确") : FrameLogModel::tr("✗ 错误");
    }
}

int alignmentOf(int column)
{
    const bool number = column == FrameLogModel::Tag || column == FrameLogModel::Length;
    return static_cast<int>(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
}

} // namespace

int FrameLogModel::append(const QVector<FrameRecord>& frames)
{
    if (frames.isEmpty())
        return 0;
    m_nextNumber = frames.last().number + 1;
    beginInsertRows({}, m_frames.size(), m_frames.size() + frames.size() - 1);
    m_frames += frames;
    endInsertRows();
    const int surplus = m_frames.size() - kKeptRows;
    if (surplus <= 0)
        return 0;
    beginRemoveRows({}, 0, surplus - 1);
    m_frames.remove(0, surplus);
    endRemoveRows();
    return surplus;
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
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant FrameLogModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FrameRecord& frame = m_frames.at(index.row());
    if (role == Qt::DisplayRole)
        return textOf(frame, index.column());
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(index.column());
    if (frame.crcOk)
        return {};
    if (role == Qt::ToolTipRole)
        return tr("CRC 与数据不符，打印机忽略了这一帧");
    if (role == Qt::ForegroundRole)
        return kWrong;
    if (role == Qt::FontRole) {
        QFont bold; // takes everything else from the view
        bold.setBold(true);
        return bold;
    }
    return {};
}

QVariant FrameLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr(kHeaders[section]);
    return {};
}
