// Files through the calls of the operating system, whose errors keep their meaning.
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>

#include "platform/storage/FileSystem.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

/// Repeats a call that a signal has interrupted.
template <typename Call> auto persistently(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

class Handle
{
public:
    explicit Handle(int number)
        : m_number(number)
    { }
    Handle(Handle &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    { }
    ~Handle()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    int number() const { return m_number; }

private:
    int m_number;
};

class PosixFile final : public File
{
public:
    PosixFile(Handle handle, const QString &path, bool writable)
        : m_handle(std::move(handle))
        , m_path(path)
        , m_writable(writable)
    { }

    QString path() const override { return m_path; }
    bool writable() const override { return m_writable; }

    qint64 size() const override
    {
        struct stat facts { };
        if (fstat(m_handle.number(), &facts) != 0)
            throw fileError(errno, m_path, u"Ermitteln der Länge"_s);
        return facts.st_size;
    }

    using File::read;
    void read(qint64 position, MutableBytes into) const override
    {
        const std::size_t wanted = into.size();
        while (!into.empty()) {
            const ssize_t count
                = persistently([&] { return ::pread(m_handle.number(), into.data(), into.size(), position); });
            if (count < 0)
                throw fileError(errno, m_path, u"Lesen"_s);
            if (count == 0) {
                throw StorageError(StorageError::Damaged,
                                   u"%1 ist abgeschnitten: Ab Stelle %2 fehlen %3 von %4 Bytes"_s.arg(m_path)
                                       .arg(position)
                                       .arg(into.size())
                                       .arg(wanted));
            }
            position += count;
            into = into.subspan(static_cast<std::size_t>(count));
        }
    }

    void write(qint64 position, Bytes bytes) override
    {
        if (!m_writable)
            throw StorageError(StorageError::ReadOnly, u"%1 kann nur gelesen werden"_s.arg(m_path));
        while (!bytes.empty()) {
            const ssize_t count
                = persistently([&] { return ::pwrite(m_handle.number(), bytes.data(), bytes.size(), position); });
            if (count < 0)
                throw fileError(errno, m_path, u"Schreiben"_s);
            position += count;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
    }

    void resize(qint64 size) override
    {
        if (persistently([&] { return ::ftruncate(m_handle.number(), size); }) != 0)
            throw fileError(errno, m_path, u"Ändern der Länge"_s);
    }

    void sync() override
    {
        if (persistently([&] { return ::fdatasync(m_handle.number()); }) != 0)
            throw fileError(errno, m_path, u"Schreiben auf den Datenträger"_s);
    }

    // Locks of the open file description: two files opened by one program exclude each other as two programs do, and
    // the ordinary record locks of others are respected.
    bool tryLock(ByteRange range, LockKind kind) override
    {
        if (setLock(range, kind == LockKind::Shared ? F_RDLCK : F_WRLCK) == 0)
            return true;
        if (errno == EAGAIN || errno == EACCES)
            return false;
        throw fileError(errno, m_path, u"Sperren"_s);
    }

    void unlock(ByteRange range) noexcept override
    {
        // Fails for no valid handle; and closing the file would end the lock, too.
        setLock(range, F_UNLCK);
    }

    bool isStillThere() const override
    {
        struct stat ours { };
        struct stat named { };
        if (fstat(m_handle.number(), &ours) != 0)
            throw fileError(errno, m_path, u"Nachsehen"_s);
        if (::stat(QFile::encodeName(m_path).constData(), &named) != 0) {
            if (errno == ENOENT)
                return false;
            throw fileError(errno, m_path, u"Nachsehen"_s);
        }
        return ours.st_dev == named.st_dev && ours.st_ino == named.st_ino;
    }

private:
    int setLock(ByteRange range, short type) const noexcept
    {
        struct flock lock { };
        lock.l_type = type;
        lock.l_whence = SEEK_SET;
        lock.l_start = range.first;
        lock.l_len = range.size;
        return fcntl(m_handle.number(), F_OFD_SETLK, &lock);
    }

    Handle m_handle;
    QString m_path;
    bool m_writable;
};

int openFlags(Access access)
{
    return (access == Access::ReadWrite ? O_RDWR : O_RDONLY) | O_CLOEXEC;
}

class PosixFileSystem final : public FileSystem
{
public:
    std::unique_ptr<File> open(const QString &path, Access access) override
    {
        const QByteArray name = QFile::encodeName(path);
        Handle handle(persistently([&] { return ::open(name.constData(), openFlags(access)); }));
        if (handle.number() < 0) {
            const int error = errno;
            const bool refused = error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY;
            if (refused && access == Access::ReadWrite && ::access(name.constData(), R_OK) == 0)
                throw StorageError(StorageError::ReadOnly, u"%1 ist schreibgeschützt"_s.arg(path));
            if (error == EISDIR)
                throw StorageError(StorageError::Missing, u"%1 ist keine Datei"_s.arg(path));
            throw fileError(error, path, u"Öffnen"_s);
        }
        struct stat facts { };
        if (fstat(handle.number(), &facts) == 0 && !S_ISREG(facts.st_mode))
            throw StorageError(StorageError::Missing, u"%1 ist keine Datei"_s.arg(path));
        return std::make_unique<PosixFile>(std::move(handle), path, access == Access::ReadWrite);
    }

    std::unique_ptr<File> create(const QString &path) override
    {
        Handle handle(persistently([&] {
            return ::open(QFile::encodeName(path).constData(), openFlags(Access::ReadWrite) | O_CREAT | O_EXCL, 0666);
        }));
        if (handle.number() < 0)
            throw nameError(errno, path, u"Anlegen"_s);
        return std::make_unique<PosixFile>(std::move(handle), path, true);
    }

    bool exists(const QString &path) const override
    {
        struct stat facts { };
        if (::stat(QFile::encodeName(path).constData(), &facts) == 0)
            return true;
        if (errno == ENOENT || errno == ENOTDIR)
            return false;
        throw fileError(errno, path, u"Nachsehen"_s);
    }

    void remove(const QString &path) override
    {
        if (::unlink(QFile::encodeName(path).constData()) != 0)
            throw nameError(errno, path, u"Löschen"_s);
    }

    void rename(const QString &from, const QString &to) override
    {
        if (::renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD, QFile::encodeName(to).constData(),
                        RENAME_NOREPLACE)
            != 0)
            throw nameError(errno, to, u"Umbenennen"_s);
    }

    void syncFolderOf(const QString &path) override
    {
        const QString folder = QFileInfo(path).path();
        const Handle handle(persistently(
            [&] { return ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        // Some network file systems know no flushing of folders; then there is nothing to wait for.
        const bool done = handle.number() >= 0
            && (persistently([&] { return ::fsync(handle.number()); }) == 0 || errno == EINVAL || errno == ENOTSUP);
        if (!done)
            throw fileError(errno, folder, u"Schreiben auf den Datenträger"_s);
    }
};

} // namespace

FileSystem &systemFiles()
{
    static PosixFileSystem files;
    return files;
}

StorageError::Kind errorKind(int systemError)
{
    switch (systemError) {
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
        return StorageError::Missing;
    case EEXIST:
        return StorageError::AlreadyExists;
    case EACCES:
    case EPERM:
        return StorageError::NoPermission;
    case EROFS:
        return StorageError::ReadOnly;
    case ENOSPC:
    case EDQUOT:
        return StorageError::DiskFull;
    case EFBIG:
        return StorageError::FileFull;
    case EBUSY:
    case ETXTBSY:
        return StorageError::Locked;
    case ESTALE:
    case ENOTCONN:
    case ECONNRESET:
    case ECONNABORTED:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETDOWN:
    case ENETUNREACH:
    case ETIMEDOUT:
    case ENODEV:
    case ENXIO:
    case ENOLINK:
    case ENOMEDIUM:
        return StorageError::ConnectionLost;
    default:
        return StorageError::InputOutput;
    }
}

} // namespace storage
