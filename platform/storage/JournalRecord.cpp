// The bytes of a journal file, written.
#include "platform/storage/JournalFormat.h"

using namespace storage::journal;

namespace storage {

namespace {

/// Of the file's length: growing costs a second write to the disk, so it is not done at every statement.
constexpr qint64 growth = 64 << 10;

/// A range of bytes; empty while nothing was added.
struct Hull {
    void add(qint64 from, qint64 to)
    {
        if (from >= to)
            return;
        begin = empty() ? from : std::min(begin, from);
        end = std::max(end, to);
    }
    bool empty() const { return end == 0; }

    qint64 begin = 0;
    qint64 end = 0;
};

Hull difference(QByteArrayView left, QByteArrayView right)
{
    Hull hull;
    if (left == right)
        return hull;
    const auto first = std::ranges::mismatch(left, right).in1 - left.begin();
    qsizetype last = left.size();
    while (left[last - 1] == right[last - 1])
        --last;
    hull.add(first, last);
    return hull;
}

/// Collects the bytes of a record and writes them whenever they are many.
class Writer
{
public:
    Writer(File &journal, qint64 position)
        : m_journal(journal)
        , m_begin(position)
        , m_written(position == firstRecord ? 0 : position)
        , m_buffer(position == firstRecord ? sectorSize : 0, '\0')
        , m_summed(m_buffer.size())
    { }

    template <typename Number> void number(Number value)
    {
        const qsizetype at = m_buffer.size();
        m_buffer.resize(at + qsizetype(sizeof value));
        const auto bytes = std::as_writable_bytes(std::span(m_buffer.data() + at, sizeof value));
        writeLE(bytes, 0, static_cast<std::make_unsigned_t<Number>>(value));
    }
    void raw(QByteArrayView bytes)
    {
        m_buffer += bytes;
        if (m_buffer.size() >= bufferSize)
            flush();
    }
    void bytes(const QByteArray &value)
    {
        number(qint64(value.size()));
        raw(value);
    }
    /// The head last: in the same write if all is in memory still.
    qint64 finish()
    {
        const qint64 end = m_written + m_buffer.size();
        sumUp();
        const QByteArray head = headFor(end);
        const bool isWhole = m_written == 0;
        if (isWhole)
            m_buffer.replace(0, head.size(), head);
        if (end > m_journal.size())
            m_buffer.append((growth - end % growth) % growth, '\0');
        flush();
        if (!isWhole)
            m_journal.write(0, bytesOf(head));
        return end;
    }

private:
    void sumUp()
    {
        m_sum.add(QByteArrayView(m_buffer).sliced(m_summed));
        m_summed = m_buffer.size();
    }
    void flush()
    {
        sumUp();
        m_journal.write(m_written, bytesOf(m_buffer));
        m_written += m_buffer.size();
        m_buffer.clear();
        m_summed = 0;
    }
    QByteArray headFor(qint64 end) const
    {
        QByteArray head = magic.toByteArray().leftJustified(headSize, '\0');
        const auto bytes = std::as_writable_bytes(std::span(head.data(), std::size_t(head.size())));
        writeLE(bytes, 16, static_cast<std::uint64_t>(m_begin));
        writeLE(bytes, 24, static_cast<std::uint64_t>(end - m_begin));
        writeLE(bytes, 32, m_sum.value());
        return head;
    }

    File &m_journal;
    qint64 m_begin;
    qint64 m_written; // up to there
    QByteArray m_buffer;
    qsizetype m_summed; // of the buffer
    Sum m_sum{};
};

void writeFile(Writer &record, const FileChanges &file)
{
    record.bytes(file.name.toUtf8());
    record.number(file.oldSize);
    record.number(file.newSize);
    record.number(qint64(file.shared ? 1 : 0));
    const Mark mark = file.mark.value_or(Mark{-1, {}, {}});
    record.number(mark.position);
    record.bytes(mark.before);
    record.bytes(mark.after);
    record.number(static_cast<qint64>(file.stretches.size()));
    for (const Stretch &stretch : file.stretches) {
        record.number(stretch.position);
        record.number(stretch.size);
    }
}

void writePieces(Writer &record, const FileChanges &file, const Stretch &stretch, const QByteArray &there,
                 const QByteArray &content)
{
    const QByteArray padded = there.size() < content.size() ? there.leftJustified(content.size(), '\0') : there;
    forEachPiece(file, stretch, [&](qint64 at, qint64 size) {
        const auto before = QByteArrayView(padded).sliced(at, size);
        const auto after = QByteArrayView(content).sliced(at, size);
        Hull changed = difference(before, after);
        if (file.mark) {
            const qint64 markAt = file.mark->position - stretch.position - at;
            changed.add(std::max<qint64>(markAt, 0), std::min(markAt + file.mark->after.size(), size));
        }
        changed.end = std::min(changed.end, std::max<qint64>(there.size() - at, 0));
        changed.begin = std::min(changed.begin, changed.end);
        const std::uint64_t sumBefore = checksum(before);
        record.number(sumBefore);
        record.number(before == after ? sumBefore : checksum(after));
        record.number(static_cast<std::uint16_t>(changed.begin));
        record.number(static_cast<std::uint16_t>(changed.end - changed.begin));
        record.raw(before.sliced(changed.begin, changed.end - changed.begin));
    });
}

} // namespace

std::uint64_t checksum(QByteArrayView bytes)
{
    return XXH3_64bits(bytes.data(), static_cast<std::size_t>(bytes.size()));
}

qint64 sizeBefore(const FileChanges &file, const Stretch &stretch)
{
    return std::clamp<qint64>(file.oldSize - stretch.position, 0, stretch.size);
}

qint64 writeRecord(File &journal, qint64 position, std::span<const Journal::Part> parts)
{
    Writer record(journal, position);
    record.number(static_cast<qint64>(parts.size()));
    for (const Journal::Part &part : parts)
        writeFile(record, part.changes);
    for (const auto &[file, changes] : parts) {
        for (std::size_t i = 0; i < changes.stretches.size(); ++i) {
            const Stretch &stretch = changes.stretches[i];
            const QByteArray there = file.read(stretch.position, sizeBefore(changes, stretch));
            writePieces(record, changes, stretch, there, changes.content(i));
        }
    }
    return record.finish();
}

bool hasRecord(const File &journal)
{
    return journal.size() >= sectorSize && journal.read(0, magic.size()) == magic;
}

void dropRecord(File &journal)
{
    journal.write(0, bytesOf(QByteArray(magic.size(), '\0')));
}

} // namespace storage
