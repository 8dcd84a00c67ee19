#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// The file that a transfer writes before it is whole. A lock file beside it, "<name>.lock", keeps it to one
/// transfer, of this process or another; one that a crash left behind is broken. The lock goes with the object.
class PartialFile
{
public:
    /// Takes a name, and lets go of the one before; what lies there stays. A folder that takes no lock takes no file
    /// either, which shows later.
    /// @return  false: another transfer has it, or it is empty; nothing was touched
    bool claim(const QString& name);
    void release(); ///< for others; the name is remembered
    QString name() const;

    /// Writes behind what is there. The file is closed in between, so that nobody who looks at it is locked out; a
    /// chunk for which it cannot be opened is dropped.
    /// @return  false: the disk did not take all of it
    bool append(const QByteArray& chunk);
    QString errorString() const; ///< after append() failed
    bool exists() const;
    qint64 size() const; ///< bytes; 0 where there is no file
    /// Gives the file the name of another one, which it replaces in one step.
    /// @return  false: both are as they were
    bool replace(const QString& target) const;

private:
    QString m_name;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock; ///< null: released
};
