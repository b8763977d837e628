// Changing files as a whole: the order of writing and flushing, and the way back.
#include "platform/storage/Journal.h"

#include <algorithm>

#include "platform/storage/JournalRecord.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

/// The length that a journal has from the beginning: enough for most changes.
constexpr qint64 usualSize = 64 << 10;
/// If it is longer than this afterwards, the room is given back.
constexpr qint64 greatestSize = 4 << 20;
/// The stash begins on a page of the disk of its own.
constexpr qint64 stashStart = 4096;
constexpr qsizetype writeSize = 1 << 20;

bool isAppended(const FileChanges &file, const Stretch &stretch)
{
    return stretch.position + stretch.size > file.oldSize;
}

/// Whether the length is none of the change's business.
bool leavesLength(const FileChanges &file)
{
    return file.shared && file.newSize == file.oldSize;
}

/// Writes stretches that lie one behind the other at once.
class JoinedWrites
{
public:
    explicit JoinedWrites(File &file)
        : m_file(file)
    { }
    void add(qint64 position, const QByteArray &bytes)
    {
        if (position != m_position + m_bytes.size() || m_bytes.size() >= writeSize) {
            flush();
            m_position = position;
        }
        m_bytes += bytes;
    }
    void flush()
    {
        if (!m_bytes.isEmpty())
            m_file.write(m_position, bytesOf(m_bytes));
        m_bytes.clear();
    }

private:
    File &m_file;
    qint64 m_position = 0;
    QByteArray m_bytes{};
};

/// New stretches first: if the disk is full, the old content is still whole.
void apply(File &file, const FileChanges &changes)
{
    JoinedWrites writes(file);
    const auto writeAll = [&](bool appended) {
        for (std::size_t i = 0; i < changes.stretches.size(); ++i) {
            if (isAppended(changes, changes.stretches[i]) == appended)
                writes.add(changes.stretches[i].position, changes.content(i));
        }
        writes.flush();
    };
    writeAll(true);
    if (changes.mark)
        file.write(changes.mark->position, bytesOf(changes.mark->after));
    writeAll(false);
    file.sync();
}

/// The length first: if this is interrupted, too, no sector may be half old, half new.
void takeBack(RecordReader &record, std::span<File *const> files)
{
    for (std::size_t i = 0; i < files.size(); ++i) {
        const FileChanges &changes = record.files()[i];
        if (!leavesLength(changes) && files[i]->size() != changes.oldSize)
            files[i]->resize(changes.oldSize);
    }
    record.forEach([&](std::size_t i, const Stretch &stretch, const std::vector<Piece> &pieces) {
        const QByteArray now = files[i]->read(stretch.position, sizeBefore(record.files()[i], stretch));
        QByteArray before = now;
        for (const Piece &piece : pieces)
            before.replace(piece.oldAt, piece.old.size(), piece.old);
        if (before != now)
            files[i]->write(stretch.position, bytesOf(before));
    });
    for (File *file : files)
        file->sync();
}

/// Whether a piece is as it was, but marked.
bool isMarked(const FileChanges &file, qint64 position, QByteArrayView now, std::uint64_t before)
{
    if (!file.mark)
        return false;
    const qint64 at = file.mark->position - position;
    const qsizetype size = file.mark->after.size();
    if (at < 0 || at + size > now.size() || now.sliced(at, size) != file.mark->after)
        return false;
    return checksum(now.toByteArray().replace(at, size, file.mark->before)) == before;
}

/// What of the change stands in the files.
struct Standing {
    bool isOurs = true; ///< each sector is as it was, as it was to be, or marked, and the lengths are possible
    bool isComplete = true;
};

Standing standingOf(RecordReader &record, std::span<File *const> files)
{
    Standing standing;
    std::vector<qint64> sizes;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const FileChanges &changes = record.files()[i];
        const qint64 size = files[i] ? files[i]->size() : -1;
        standing.isOurs &= size >= changes.oldSize && (size <= changes.newSize || leavesLength(changes));
        standing.isComplete &= size == changes.newSize || leavesLength(changes);
        sizes.push_back(size);
    }
    if (!standing.isOurs)
        return standing;
    record.forEach([&](std::size_t i, const Stretch &stretch, const std::vector<Piece> &pieces) {
        const FileChanges &changes = record.files()[i];
        const qint64 there = std::clamp(sizes[i] - stretch.position, sizeBefore(changes, stretch), stretch.size);
        const QByteArray now = files[i]->read(stretch.position, there).leftJustified(stretch.size, '\0');
        for (const Piece &piece : pieces) {
            const auto bytes = QByteArrayView(now).sliced(piece.at, piece.size);
            const std::uint64_t sum = checksum(bytes);
            standing.isComplete &= sum == piece.after;
            standing.isOurs &= sum == piece.after || sum == piece.before
                || isMarked(changes, stretch.position + piece.at, bytes, piece.before);
        }
    });
    return standing;
}

} // namespace

Journal::Journal(FileSystem &files, const QString &path)
    : m_files(files)
    , m_path(path)
{ }

/// Another program that shares the journal may have removed it since. One that is found may be from a program that died
/// before its name was on the disk.
File &Journal::file()
{
    if (m_file && !m_file->isStillThere())
        m_file.reset();
    if (!m_file) {
        auto opened = isThere() ? m_files.open(m_path, Access::ReadWrite) : m_files.create(m_path);
        if (const qint64 size = opened->size(); size < usualSize && !hasRecord(*opened))
            opened->write(size, bytesOf(QByteArray(usualSize - size, '\0')));
        m_files.syncFolderOf(m_path);
        m_end = opened->size();
        m_file = std::move(opened);
    }
    return *m_file;
}

/// Without a flush: a finished change whose record still counts is found to be complete.
void Journal::forget()
{
    dropRecord(*m_file);
    shorten();
}

void Journal::shorten()
{
    m_stashEnd = 0;
    if (m_end <= greatestSize)
        return;
    m_file->resize(usualSize);
    m_end = usualSize;
}

void Journal::stash(qint64 position, Bytes bytes)
{
    File &journal = m_stashEnd == 0 ? file() : *m_file;
    journal.write(stashStart + position, bytes);
    m_stashEnd = std::max(m_stashEnd, stashStart + position + static_cast<qint64>(bytes.size()));
    m_end = std::max(m_end, m_stashEnd);
}

QByteArray Journal::stashed(qint64 position, qint64 size) const
{
    return m_file->read(stashStart + position, size);
}

void Journal::dropStash() noexcept
{
    if (m_stashEnd == 0)
        return;
    try {
        shorten();
    } catch (const StorageError &) {
        // The next commit gives the room back.
    }
}

void Journal::commit(std::span<const Part> parts)
{
    File &journal = m_stashEnd == 0 ? file() : *m_file;
    try {
        m_end = std::max(m_end, writeRecord(journal, std::max(m_stashEnd, firstRecord), parts));
        journal.sync();
    } catch (...) {
        // Whatever it holds, the files are as before: at the worst a change that never began is taken back.
        try {
            forget();
        } catch (const StorageError &) {
            m_interrupted = true;
        }
        throw;
    }
    try {
        for (const Part &part : parts)
            apply(part.file, part.changes);
    } catch (...) {
        undo(parts);
        throw;
    }
    try {
        forget();
    } catch (const StorageError &) {
        // The change is on the disk; its record will be found to be complete.
        m_file.reset();
        m_stashEnd = 0;
    }
}

/// Takes back what a failed commit has written. The failure is the one to tell: if this one fails, too, the next
/// recover() goes on from here.
void Journal::undo(std::span<const Part> parts)
{
    m_interrupted = true;
    try {
        std::vector<File *> files;
        for (const Part &part : parts)
            files.push_back(&part.file);
        auto record = RecordReader::open(*m_file);
        if (!record)
            return;
        takeBack(*record, files);
        forget();
        m_interrupted = false;
    } catch (const std::exception &) {
        m_stashEnd = 0;
    }
}

bool Journal::isHot() const
{
    if (m_file && m_file->isStillThere())
        return hasRecord(*m_file);
    if (!isThere())
        return false;
    try {
        return hasRecord(*m_files.open(m_path, Access::Read));
    } catch (const StorageError &error) {
        // Another program has removed it just now, which nobody does to one that counts.
        if (error.kind() != StorageError::Missing)
            throw;
        return false;
    }
}

Journal::Found Journal::recover(const std::function<File *(const FileChanges &changes)> &fileOf)
{
    if (!isHot()) {
        m_interrupted = false;
        return Found::Nothing;
    }
    File &journal = file();
    Found found = Found::Nothing;
    if (auto record = RecordReader::open(journal)) {
        std::vector<File *> opened;
        for (const FileChanges &changes : record->files())
            opened.push_back(fileOf(changes));
        const Standing standing = standingOf(*record, opened);
        if (!standing.isOurs) {
            setAside();
            return Found::Foreign;
        }
        if (standing.isComplete && !m_interrupted) { // a failure that was told stays one
            for (File *file : opened)
                file->sync(); // the program may have died before it did
            found = Found::Complete;
        } else {
            takeBack(*record, opened);
            found = Found::TakenBack;
        }
    }
    forget();
    m_interrupted = false;
    return found;
}

void Journal::setAside()
{
    m_file.reset();
    QString other = m_path + u".fremd"_s;
    for (int number = 2; m_files.exists(other); ++number)
        other = m_path + u".fremd%1"_s.arg(number);
    m_files.rename(m_path, other);
    m_interrupted = false;
}

void Journal::remove()
{
    m_file.reset();
    try {
        if (isThere() && !isHot())
            m_files.remove(m_path);
    } catch (const StorageError &error) {
        if (error.kind() != StorageError::FolderReadOnly && error.kind() != StorageError::NoPermission)
            throw;
    }
}

} // namespace storage
