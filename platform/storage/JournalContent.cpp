// The bytes of a journal file.
//
//   0  16  "VELDRAK-Journal" and a line feed
//  16   8  length of the whole file
//  24  32  SHA-256 of all that follows
//  56      number of files; for each: name, old and new size, changes, mark (position -1: none), shared
//
// Numbers are little-endian and 64 bits wide. Names (UTF-8) and stretches stand behind their length. A change is its
// position, what stood there and what is to stand there.
#include <QCryptographicHash>

#include "platform/storage/Journal.h"
#include "platform/storage/StorageError.h"

namespace storage {

namespace {

constexpr QByteArrayView magic("VELDRAK-Journal\n");
constexpr qsizetype headSize = 56;
constexpr qsizetype hashAt = 24;

class Writer
{
public:
    void number(qint64 value)
    {
        std::byte bytes[8];
        writeLE(MutableBytes(bytes), 0, static_cast<std::uint64_t>(value));
        m_bytes.append(reinterpret_cast<const char *>(bytes), sizeof bytes);
    }
    void bytes(const QByteArray &value)
    {
        number(value.size());
        m_bytes += value;
    }
    void change(const Change &value)
    {
        number(value.position);
        bytes(value.before);
        bytes(value.after);
    }
    const QByteArray &content() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/// Throws StorageError::Damaged at the end of the bytes.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : m_bytes(bytes)
    { }
    qint64 number()
    {
        const auto value = static_cast<qint64>(readLE<std::uint64_t>(bytesOf(m_bytes), m_at));
        m_at += 8;
        return value;
    }
    QByteArray bytes()
    {
        const qint64 size = number();
        requireBytes(static_cast<std::size_t>(m_bytes.size()), m_at, static_cast<std::size_t>(size));
        const QByteArray value = m_bytes.mid(static_cast<qsizetype>(m_at), size);
        m_at += static_cast<std::size_t>(size);
        return value;
    }
    Change change()
    {
        Change value;
        value.position = number();
        value.before = bytes();
        value.after = bytes();
        return value;
    }

private:
    const QByteArray &m_bytes;
    std::size_t m_at = headSize;
};

bool isSound(const FileChanges &file, const Change &change)
{
    return change.position >= 0 && change.position <= file.newSize - change.after.size()
        && change.before.size() == std::clamp<qint64>(file.oldSize - change.position, 0, change.after.size());
}

bool isSound(const FileChanges &file)
{
    return file.oldSize >= 0 && file.newSize >= file.oldSize
        && std::ranges::all_of(file.changes, [&](const Change &change) { return isSound(file, change); })
        && (!file.mark || isSound(file, *file.mark));
}

} // namespace

QByteArray Journal::encode(std::span<const FileChanges> files)
{
    Writer body;
    body.number(static_cast<qint64>(files.size()));
    for (const FileChanges &file : files) {
        body.bytes(file.name.toUtf8());
        body.number(file.oldSize);
        body.number(file.newSize);
        body.number(static_cast<qint64>(file.changes.size()));
        for (const Change &change : file.changes)
            body.change(change);
        body.change(file.mark.value_or(Change{-1, {}, {}}));
        body.number(file.shared ? 1 : 0);
    }
    Writer length;
    length.number(headSize + body.content().size());
    return magic.toByteArray() + length.content() + QCryptographicHash::hash(body.content(), QCryptographicHash::Sha256)
        + body.content();
}

std::optional<std::vector<FileChanges>> Journal::decode(const QByteArray &content)
{
    if (content.size() < headSize || !content.startsWith(magic)
        || readLE<std::uint64_t>(bytesOf(content), 16) != static_cast<std::uint64_t>(content.size())
        || QCryptographicHash::hash(QByteArrayView(content).sliced(headSize), QCryptographicHash::Sha256)
            != QByteArrayView(content).sliced(hashAt, headSize - hashAt))
        return std::nullopt;
    try {
        Reader reader(content);
        std::vector<FileChanges> files;
        for (qint64 left = reader.number(); left > 0; --left) {
            FileChanges file;
            file.name = QString::fromUtf8(reader.bytes());
            file.oldSize = reader.number();
            file.newSize = reader.number();
            for (qint64 changes = reader.number(); changes > 0; --changes)
                file.changes.push_back(reader.change());
            if (Change mark = reader.change(); mark.position >= 0)
                file.mark = std::move(mark);
            file.shared = reader.number() != 0;
            if (!isSound(file))
                return std::nullopt;
            files.push_back(std::move(file));
        }
        return files;
    } catch (const StorageError &) {
        return std::nullopt; // its own numbers point beyond its end
    }
}

} // namespace storage
