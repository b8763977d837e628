// The bytes of a journal file, read: whatever they are.
#include "platform/storage/JournalFormat.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using namespace storage::journal;

namespace storage {

namespace {

[[noreturn]] void cutOff(const File &journal)
{
    throw StorageError(StorageError::Damaged, u"%1 ist abgeschnitten oder beschädigt"_s.arg(journal.path()));
}

bool isSound(const FileChanges &file)
{
    const auto isInside = [&](qint64 position, qint64 size) {
        return position >= 0 && size >= 0 && position <= file.newSize && size <= file.newSize - position;
    };
    return file.oldSize >= 0 && file.newSize >= file.oldSize
        && std::ranges::all_of(file.stretches, [&](const Stretch &s) { return isInside(s.position, s.size); })
        && (!file.mark
            || (isInside(file.mark->position, file.mark->after.size())
                && file.mark->before.size() == file.mark->after.size()));
}

} // namespace

RecordReader::RecordReader(const File &journal, qint64 position, qint64 end)
    : m_journal(&journal)
    , m_begin(position)
    , m_end(end)
    , m_next(position)
{ }

std::optional<RecordReader> RecordReader::open(const File &journal)
{
    if (!hasRecord(journal))
        return std::nullopt;
    const QByteArray head = journal.read(0, headSize);
    const auto position = static_cast<qint64>(readLE<std::uint64_t>(bytesOf(head), 16));
    const auto length = static_cast<qint64>(readLE<std::uint64_t>(bytesOf(head), 24));
    const qint64 size = journal.size();
    if (position < firstRecord || length < 0 || position > size || length > size - position)
        return std::nullopt;
    RecordReader record(journal, position, position + length);
    if (record.sum() != readLE<std::uint64_t>(bytesOf(head), 32))
        return std::nullopt;
    try {
        record.readFiles();
        record.forEach([](std::size_t, const Stretch &, const std::vector<Piece> &) {});
    } catch (const StorageError &error) {
        if (error.kind() != StorageError::Damaged)
            throw;
        return std::nullopt; // its own numbers point beyond its end
    }
    return record;
}

std::uint64_t RecordReader::sum()
{
    Sum sum;
    goTo(m_begin);
    for (qint64 left = m_end - m_begin; left > 0;) {
        const qint64 size = std::min<qint64>(left, bufferSize);
        sum.add(take(size));
        left -= size;
    }
    return sum.value();
}

void RecordReader::readFiles()
{
    goTo(m_begin);
    for (qint64 left = number(); left > 0; --left) {
        FileChanges file;
        file.name = QString::fromUtf8(bytes());
        file.oldSize = number();
        file.newSize = number();
        file.shared = number() != 0;
        Mark mark{.position = number(), .before = bytes(), .after = bytes()};
        if (mark.position >= 0)
            file.mark = std::move(mark);
        for (qint64 stretches = number(); stretches > 0; --stretches) {
            const qint64 position = number();
            file.stretches.push_back({position, number()});
        }
        if (!isSound(file))
            cutOff(*m_journal);
        m_files.push_back(std::move(file));
    }
    m_firstPiece = m_next - (m_buffer.size() - m_taken);
}

void RecordReader::forEach(const Work &work)
{
    goTo(m_firstPiece);
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        for (const Stretch &stretch : m_files[i].stretches)
            work(i, stretch, readPieces(m_files[i], stretch));
    }
}

std::vector<Piece> RecordReader::readPieces(const FileChanges &file, const Stretch &stretch)
{
    const qint64 left = m_end - m_next + m_buffer.size() - m_taken;
    if (stretch.size / sectorSize > left / pieceHead)
        cutOff(*m_journal);
    std::vector<Piece> pieces;
    const qint64 sizeOfOld = sizeBefore(file, stretch);
    forEachPiece(file, stretch, [&](qint64 at, qint64 size) {
        Piece piece{.at = at, .size = size};
        const QByteArray head = take(pieceHead).toByteArray();
        piece.before = readLE<std::uint64_t>(bytesOf(head), 0);
        piece.after = readLE<std::uint64_t>(bytesOf(head), 8);
        piece.oldAt = at + readLE<std::uint16_t>(bytesOf(head), 16);
        piece.old = take(readLE<std::uint16_t>(bytesOf(head), 18)).toByteArray();
        const qint64 end = piece.oldAt + piece.old.size();
        if (!piece.old.isEmpty() && end > std::min(at + size, sizeOfOld))
            cutOff(*m_journal);
        pieces.push_back(std::move(piece));
    });
    return pieces;
}

void RecordReader::goTo(qint64 position)
{
    m_next = position;
    m_buffer.clear();
    m_taken = 0;
}

/// Valid until the next call.
QByteArrayView RecordReader::take(qint64 size)
{
    if (size < 0 || size > m_end - m_next + m_buffer.size() - m_taken)
        cutOff(*m_journal);
    if (size > m_buffer.size() - m_taken) {
        m_buffer.remove(0, m_taken);
        m_taken = 0;
        const qint64 more = std::min(std::max<qint64>(size - m_buffer.size(), bufferSize), m_end - m_next);
        m_buffer += m_journal->read(m_next, more);
        m_next += more;
    }
    m_taken += size;
    return QByteArrayView(m_buffer).sliced(m_taken - size, size);
}

qint64 RecordReader::number()
{
    const QByteArrayView bytes = take(8);
    return static_cast<qint64>(readLE<std::uint64_t>(std::as_bytes(std::span(bytes)), 0));
}

QByteArray RecordReader::bytes()
{
    return take(number()).toByteArray();
}

} // namespace storage
