#include "update/partial_file.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace {

std::filesystem::path pathOf(const QString& name)
{
#ifdef Q_OS_WIN
    return name.toStdWString();
#else
    return QFile::encodeName(name).toStdString();
#endif
}

} // namespace

bool PartialFile::claim(const QString& name)
{
    if (name.isEmpty())
        return false;
    if (m_lock && name == m_name)
        return true;
    auto lock = std::make_unique<QLockFile>(name + QStringLiteral(".lock"));
    if (!lock->tryLock(0) && lock->error() == QLockFile::LockFailedError)
        return false;
    m_lock = std::move(lock);
    m_name = name;
    return true;
}

void PartialFile::release()
{
    m_lock.reset();
}

QString PartialFile::name() const
{
    return m_name;
}

bool PartialFile::append(const QByteArray& chunk)
{
    QFile file(m_name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return true;
    const bool written = file.write(chunk) == chunk.size() && file.flush(); // a full disk shows in either
    m_error = file.errorString();
    return written;
}

QString PartialFile::errorString() const
{
    return m_error;
}

bool PartialFile::exists() const
{
    return QFile::exists(m_name);
}

qint64 PartialFile::size() const
{
    return QFileInfo(m_name).size();
}

bool PartialFile::replace(const QString& target) const
{
    // QFile::rename() takes no name that is taken, and with the old file removed first a failure would lose both.
    std::error_code error;
    std::filesystem::rename(pathOf(m_name), pathOf(target), error);
    return !error;
}
