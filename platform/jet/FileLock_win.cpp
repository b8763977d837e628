// Locks of a whole file, and those that other engines set in the lock file beside it.
#include "platform/jet/FileLock.h"

#include <io.h>
#include <windows.h>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

namespace {

constexpr int patienceMs = 1000;
constexpr unsigned long pauseMs = 20;
// Locks keep others from reading the bytes as well, so ours lies far behind the largest file.
constexpr DWORD lockAt = 0x7FFFFFFE;
// One byte for each user who has the database open, far behind the lock file's end.
constexpr DWORD userLocksAt = 0x10000001;
constexpr DWORD userLocks = 255;

bool tryLock(int handle, DWORD at, DWORD size)
{
    OVERLAPPED place{};
    place.Offset = at;
    const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(handle));
    return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, size, 0, &place) != 0;
}

void unlock(int handle, DWORD at, DWORD size)
{
    OVERLAPPED place{};
    place.Offset = at;
    UnlockFileEx(reinterpret_cast<HANDLE>(_get_osfhandle(handle)), 0, size, 0, &place);
}

} // namespace

FileLock::FileLock(QFile &file)
    : m_handle(file.handle())
{
    const QDeadlineTimer deadline(patienceMs);
    while (!tryLock(m_handle, lockAt, 1)) {
        if (deadline.hasExpired()) {
            throw StorageError(StorageError::Locked,
                               u"%1 wird gerade von einem anderen Programm geändert."_s.arg(file.fileName()));
        }
        QThread::msleep(pauseMs);
    }
}

FileLock::~FileLock()
{
    unlock(m_handle, lockAt, 1);
}

void requireNoOtherUser(const QString &lockFile)
{
    QFile file(lockFile);
    if (!QFileInfo::exists(lockFile) || !file.open(QIODevice::ReadOnly))
        return;
    if (!tryLock(file.handle(), userLocksAt, userLocks))
        throw StorageError(StorageError::Locked, u"%1 zeigt, dass die Datenbank geöffnet ist."_s.arg(lockFile));
    unlock(file.handle(), userLocksAt, userLocks);
}

} // namespace jet
