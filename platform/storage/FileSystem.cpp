// What all implementations of files share.
#include "platform/storage/FileSystem.h"

namespace storage {

QByteArray File::read(qint64 position, qint64 size) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    read(position, std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(size))));
    return bytes;
}

Bytes bytesOf(const QByteArray &array)
{
    return std::as_bytes(std::span(array.constData(), static_cast<std::size_t>(array.size())));
}

} // namespace storage
