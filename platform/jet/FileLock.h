#pragma once

#include <QFile>

namespace jet {

/// Keeps other programs from writing the file while we do. Held from making to end.
///
/// Errors  StorageError::Locked when another holder does not let go within a second.
class FileLock
{
public:
    explicit FileLock(QFile &file);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

private:
    int m_handle;
};

/// Throws StorageError::Locked if the lock file of that name (".ldb", beside the database) shows a user who has the
/// database open. A lock file without such a user is left over from a crash and means nothing.
void requireNoOtherUser(const QString &lockFile);

} // namespace jet
