// Byte locks through open file descriptions, so that two opened databases of one program also respect each other.
#include "platform/dbf/File.h"

#include <cerrno>
#include <fcntl.h>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

int setLock(const QFile &file, qint64 position, short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = position;
    lock.l_len = 1;
    return fcntl(file.handle(), F_OFD_SETLK, &lock);
}

} // namespace

bool File::tryLock(qint64 position, Lock kind)
{
    if (setLock(m_file, position, kind == Lock::Shared ? F_RDLCK : F_WRLCK) == 0)
        return true;
    if (errno == EAGAIN || errno == EACCES)
        return false;
    throw StorageError(StorageError::InputOutput, u"%1: Sperren nicht möglich: %2"_s.arg(path(), qt_error_string()));
}

void File::unlock(qint64 position) noexcept
{
    // Fails for no valid handle; and closing the file would end the lock, too.
    setLock(m_file, position, F_UNLCK);
}

} // namespace dbf
