// Byte locks of Windows, which the other programs there set and respect.
#include "platform/dbf/File.h"

#include <io.h>
#include <windows.h>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

HANDLE handleOf(const QFile &file)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(file.handle()));
}

OVERLAPPED at(qint64 position)
{
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

} // namespace

bool File::tryLock(qint64 position, Lock kind)
{
    OVERLAPPED place = at(position);
    const DWORD exclusive = kind == Lock::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0;
    if (LockFileEx(handleOf(m_file), exclusive | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return true;
    const DWORD error = GetLastError();
    if (error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING)
        return false;
    throw StorageError(StorageError::InputOutput,
                       u"%1: Sperren nicht möglich: %2"_s.arg(path(), qt_error_string(static_cast<int>(error))));
}

void File::unlock(qint64 position) noexcept
{
    // Fails for no valid handle; and closing the file would end the lock, too.
    OVERLAPPED place = at(position);
    UnlockFileEx(handleOf(m_file), 0, 1, 0, &place);
}

} // namespace dbf
