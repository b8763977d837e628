// Files through the calls of Windows, whose errors keep their meaning.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <algorithm>
#include <utility>

#include <windows.h>

#include <QDir>
#include <QFileInfo>

#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

constexpr int diskQuotaExceeded = 1295; // not named in every header
constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

int lastError()
{
    return static_cast<int>(GetLastError());
}

class Handle
{
public:
    explicit Handle(HANDLE handle)
        : m_handle(handle)
    { }
    Handle(Handle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE))
    { }
    ~Handle()
    {
        if (isOpen())
            CloseHandle(m_handle);
    }
    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

private:
    HANDLE m_handle;
};

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

Handle openHandle(const QString &path, DWORD access, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL)
{
    return Handle(CreateFileW(wide(native(path)), access, shareAll, nullptr, disposition, flags, nullptr));
}

OVERLAPPED at(qint64 position)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

/// What one call takes at most.
DWORD stretch(std::size_t size)
{
    return static_cast<DWORD>(std::min<std::size_t>(size, 1U << 30));
}

class WindowsFile final : public File
{
public:
    WindowsFile(Handle handle, const QString &path, bool writable)
        : m_handle(std::move(handle))
        , m_path(path)
        , m_writable(writable)
    { }

    QString path() const override { return m_path; }
    bool writable() const override { return m_writable; }

    qint64 size() const override
    {
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(m_handle.get(), &size))
            throw fileError(lastError(), m_path, u"Ermitteln der Länge"_s);
        return size.QuadPart;
    }

    using File::read;
    void read(qint64 position, MutableBytes into) const override
    {
        const std::size_t wanted = into.size();
        while (!into.empty()) {
            OVERLAPPED place = at(position);
            DWORD count = 0;
            if (!ReadFile(m_handle.get(), into.data(), stretch(into.size()), &count, &place)
                && GetLastError() != ERROR_HANDLE_EOF)
                throw fileError(lastError(), m_path, u"Lesen"_s);
            if (count == 0) {
                throw StorageError(StorageError::Damaged,
                                   u"%1 ist abgeschnitten: Ab Stelle %2 fehlen %3 von %4 Bytes"_s.arg(m_path)
                                       .arg(position)
                                       .arg(into.size())
                                       .arg(wanted));
            }
            position += count;
            into = into.subspan(count);
        }
    }

    void write(qint64 position, Bytes bytes) override
    {
        requireWritable();
        while (!bytes.empty()) {
            OVERLAPPED place = at(position);
            DWORD count = 0;
            if (!WriteFile(m_handle.get(), bytes.data(), stretch(bytes.size()), &count, &place))
                throw fileError(lastError(), m_path, u"Schreiben"_s);
            position += count;
            bytes = bytes.subspan(count);
        }
    }

    void resize(qint64 size) override
    {
        requireWritable();
        LARGE_INTEGER end{};
        end.QuadPart = size;
        if (!SetFilePointerEx(m_handle.get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(m_handle.get()))
            throw fileError(lastError(), m_path, u"Ändern der Länge"_s);
    }

    void sync() override
    {
        if (!FlushFileBuffers(m_handle.get()))
            throw fileError(lastError(), m_path, u"Schreiben auf den Datenträger"_s);
    }

    bool tryLock(ByteRange range, LockKind kind) override
    {
        OVERLAPPED place = at(range.first);
        const OVERLAPPED size = at(range.size);
        const DWORD exclusive = kind == LockKind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0;
        if (LockFileEx(m_handle.get(), exclusive | LOCKFILE_FAIL_IMMEDIATELY, 0, size.Offset, size.OffsetHigh, &place))
            return true;
        const int error = lastError();
        if (error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING)
            return false;
        throw fileError(error, m_path, u"Sperren"_s);
    }

    void unlock(ByteRange range) noexcept override
    {
        // Fails for no valid handle; and closing the file would end the lock, too.
        OVERLAPPED place = at(range.first);
        const OVERLAPPED size = at(range.size);
        UnlockFileEx(m_handle.get(), 0, size.Offset, size.OffsetHigh, &place);
    }

    bool isStillThere() const override
    {
        FILE_STANDARD_INFO state{};
        BY_HANDLE_FILE_INFORMATION ours{};
        if (!GetFileInformationByHandleEx(m_handle.get(), FileStandardInfo, &state, sizeof state)
            || !GetFileInformationByHandle(m_handle.get(), &ours))
            throw fileError(lastError(), m_path, u"Nachsehen"_s);
        if (state.DeletePending)
            return false;
        const Handle namesake = openHandle(m_path, 0, OPEN_EXISTING);
        if (!namesake.isOpen() && errorKind(lastError()) == StorageError::Missing)
            return false;
        BY_HANDLE_FILE_INFORMATION named{};
        if (!namesake.isOpen() || !GetFileInformationByHandle(namesake.get(), &named))
            throw fileError(lastError(), m_path, u"Nachsehen"_s);
        return ours.dwVolumeSerialNumber == named.dwVolumeSerialNumber && ours.nFileIndexHigh == named.nFileIndexHigh
            && ours.nFileIndexLow == named.nFileIndexLow;
    }

private:
    void requireWritable() const
    {
        if (!m_writable)
            throw StorageError(StorageError::ReadOnly, u"%1 kann nur gelesen werden"_s.arg(m_path));
    }

    Handle m_handle;
    QString m_path;
    bool m_writable;
};

class WindowsFileSystem final : public FileSystem
{
public:
    std::unique_ptr<File> open(const QString &path, Access access) override
    {
        const bool writing = access == Access::ReadWrite;
        Handle handle = openHandle(path, writing ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ, OPEN_EXISTING);
        if (!handle.isOpen()) {
            const int error = lastError();
            const StorageError::Kind kind = errorKind(error);
            const bool refused = kind == StorageError::NoPermission || kind == StorageError::ReadOnly;
            if (refused && QFileInfo(path).isDir())
                throw StorageError(StorageError::Missing, u"%1 ist keine Datei"_s.arg(path));
            if (refused && writing && openHandle(path, GENERIC_READ, OPEN_EXISTING).isOpen())
                throw StorageError(StorageError::ReadOnly, u"%1 ist schreibgeschützt"_s.arg(path));
            throw fileError(error, path, u"Öffnen"_s);
        }
        return std::make_unique<WindowsFile>(std::move(handle), path, writing);
    }

    std::unique_ptr<File> create(const QString &path) override
    {
        Handle handle = openHandle(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
        if (!handle.isOpen())
            throw nameError(lastError(), path, u"Anlegen"_s);
        return std::make_unique<WindowsFile>(std::move(handle), path, true);
    }

    bool exists(const QString &path) const override
    {
        if (GetFileAttributesW(wide(native(path))) != INVALID_FILE_ATTRIBUTES)
            return true;
        const int error = lastError();
        if (errorKind(error) == StorageError::Missing)
            return false;
        throw fileError(error, path, u"Nachsehen"_s);
    }

    void remove(const QString &path) override
    {
        if (!DeleteFileW(wide(native(path))))
            throw nameError(lastError(), path, u"Löschen"_s);
    }

    void rename(const QString &from, const QString &to) override
    {
        if (!MoveFileExW(wide(native(from)), wide(native(to)), MOVEFILE_WRITE_THROUGH))
            throw nameError(lastError(), to, u"Umbenennen"_s);
    }

    void syncFolderOf(const QString &path) override
    {
        const QString folder = QFileInfo(path).path();
        const Handle handle = openHandle(folder, GENERIC_WRITE, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
        if (handle.isOpen() && FlushFileBuffers(handle.get()))
            return;
        // Some file systems and users may not flush folders; then there is nothing to wait for.
        const int error = lastError();
        if (error != ERROR_ACCESS_DENIED && error != ERROR_INVALID_FUNCTION && error != ERROR_NOT_SUPPORTED)
            throw fileError(error, folder, u"Schreiben auf den Datenträger"_s);
    }
};

} // namespace

FileSystem &systemFiles()
{
    static WindowsFileSystem files;
    return files;
}

StorageError::Kind errorKind(int systemError)
{
    switch (systemError) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return StorageError::Missing;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return StorageError::AlreadyExists;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
        return StorageError::NoPermission;
    case ERROR_WRITE_PROTECT:
        return StorageError::ReadOnly;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case diskQuotaExceeded:
        return StorageError::DiskFull;
    case ERROR_FILE_TOO_LARGE:
        return StorageError::FileFull;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_BUSY:
        return StorageError::Locked;
    case ERROR_NETNAME_DELETED:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_REM_NOT_LIST:
    case ERROR_ADAP_HDW_ERR:
    case ERROR_VC_DISCONNECTED:
    case ERROR_SEM_TIMEOUT:
    case ERROR_NOT_READY:
    case ERROR_FILE_INVALID:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_CONNECTION_UNAVAIL:
    case ERROR_CONNECTION_ABORTED:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
        return StorageError::ConnectionLost;
    default:
        return StorageError::InputOutput;
    }
}

} // namespace storage
