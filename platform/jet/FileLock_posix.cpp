// Locks of a whole file, and those that other engines set in the lock file beside it.
#include "platform/jet/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

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
// One byte for each user who has the database open, far behind the lock file's end.
constexpr off_t userLocksAt = 0x10000001;
constexpr off_t userLocks = 255;

} // namespace

FileLock::FileLock(QFile &file)
    : m_handle(file.handle())
{
    const QDeadlineTimer deadline(patienceMs);
    while (flock(m_handle, LOCK_EX | LOCK_NB) != 0) {
        if (deadline.hasExpired()) {
            throw StorageError(StorageError::Locked,
                               u"%1 wird gerade von einem anderen Programm geändert."_s.arg(file.fileName()));
        }
        QThread::msleep(pauseMs);
    }
}

FileLock::~FileLock()
{
    flock(m_handle, LOCK_UN);
}

void requireNoOtherUser(const QString &lockFile)
{
    QFile file(lockFile);
    if (!QFileInfo::exists(lockFile) || !file.open(QIODevice::ReadOnly))
        return;
    struct flock lock { };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = userLocksAt;
    lock.l_len = userLocks;
    if (fcntl(file.handle(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK)
        throw StorageError(StorageError::Locked, u"%1 zeigt, dass die Datenbank geöffnet ist."_s.arg(lockFile));
}

} // namespace jet
