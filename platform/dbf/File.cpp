// Positioned, unbuffered file access with errors that name the file.
#include "platform/dbf/File.h"

#include <QFileInfo>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

[[noreturn]] void fail(const QFile &file, const QString &what)
{
    const auto kind = file.error() == QFileDevice::ResourceError ? StorageError::DiskFull : StorageError::InputOutput;
    throw StorageError(kind, u"%1: %2: %3"_s.arg(file.fileName(), what, file.errorString()));
}

void writeAll(QFile &file, storage::Bytes bytes)
{
    const auto size = static_cast<qint64>(bytes.size());
    if (file.write(reinterpret_cast<const char *>(bytes.data()), size) != size)
        fail(file, u"Schreiben nicht möglich"_s);
}

} // namespace

File::File(const QString &path, bool forWriting)
    : m_file(path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        throw StorageError(StorageError::Missing, u"Die Datei %1 gibt es nicht"_s.arg(path));
    const auto mode = forWriting && info.isWritable() ? QIODevice::ReadWrite : QIODevice::ReadOnly;
    if (!m_file.open(mode | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        fail(m_file, u"Öffnen nicht möglich"_s);
}

void File::create(const QString &path, storage::Bytes content)
{
    QFile file(path);
    if (QFileInfo::exists(path))
        throw StorageError(StorageError::AlreadyExists, u"Die Datei %1 gibt es schon"_s.arg(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        fail(file, u"Anlegen nicht möglich"_s);
    try {
        writeAll(file, content);
    } catch (const StorageError &) {
        file.remove();
        throw;
    }
}

QString File::name() const
{
    return QFileInfo(m_file.fileName()).fileName();
}

void File::read(qint64 position, storage::MutableBytes into) const
{
    const auto size = static_cast<qint64>(into.size());
    const qint64 count = m_file.seek(position) ? m_file.read(reinterpret_cast<char *>(into.data()), size) : -1;
    if (count < 0)
        fail(m_file, u"Lesen nicht möglich"_s);
    if (count < size) {
        throw StorageError(StorageError::Damaged,
                           u"%1 ist abgeschnitten: Ab Stelle %2 fehlen %3 von %4 Bytes"_s.arg(m_file.fileName())
                               .arg(position)
                               .arg(size - count)
                               .arg(size));
    }
}

QByteArray File::read(qint64 position, qint64 size) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    read(position, std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(size))));
    return bytes;
}

void File::write(qint64 position, storage::Bytes bytes)
{
    if (!writable())
        throw StorageError(StorageError::ReadOnly, u"%1 kann nur gelesen werden"_s.arg(m_file.fileName()));
    if (!m_file.seek(position))
        fail(m_file, u"Schreiben nicht möglich"_s);
    writeAll(m_file, bytes);
}

void File::resize(qint64 size)
{
    if (!m_file.resize(size))
        fail(m_file, u"Kürzen nicht möglich"_s);
}

storage::Bytes bytesOf(const QByteArray &array)
{
    return std::as_bytes(std::span(array.constData(), static_cast<std::size_t>(array.size())));
}

} // namespace dbf
