#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/storage/Journal.h"

namespace storage {

/// What a disk writes as a whole, at the least.
constexpr qint64 sectorSize = 512;

/// A part of a stretch that stands on the disk as it was or as it is to be, and never in between.
struct Piece {
    qint64 at = 0; ///< in the stretch
    qint64 size = 0;
    std::uint64_t before = 0; ///< checksum of what was there, with zeros behind the file's old end
    std::uint64_t after = 0;
    qint64 oldAt = 0; ///< in the stretch: from the first byte that differs to the last, as they were
    QByteArray old{};
};

std::uint64_t checksum(QByteArrayView bytes);

/// How much of a stretch lay in the file before.
qint64 sizeBefore(const FileChanges &file, const Stretch &stretch);

/// Where a record begins in a journal that keeps nothing else.
constexpr qint64 firstRecord = sectorSize;

/// Writes what is to change, and what stands there now, as the record that counts in a journal; in steps of limited
/// size, without a flush. Returns where it ends.
qint64 writeRecord(File &journal, qint64 position, std::span<const Journal::Part> parts);

/// Whether a journal has a head that makes a record count; the record may be damaged all the same.
bool hasRecord(const File &journal);
/// From now on no record counts; without a flush.
void dropRecord(File &journal);

/// The record that counts in a journal, read in steps of limited size. The journal must outlive it.
class RecordReader
{
public:
    /// Nothing if the record is cut off or damaged.
    static std::optional<RecordReader> open(const File &journal);

    /// What was to change; their content is unknown.
    const std::vector<FileChanges> &files() const { return m_files; }
    /// Calls `work` for all stretches in the order of writing. `file` counts in files().
    using Work = std::function<void(std::size_t file, const Stretch &stretch, const std::vector<Piece> &pieces)>;
    void forEach(const Work &work);

private:
    RecordReader(const File &journal, qint64 position, qint64 end);
    std::uint64_t sum();
    void readFiles();
    std::vector<Piece> readPieces(const FileChanges &file, const Stretch &stretch);
    void goTo(qint64 position);
    QByteArrayView take(qint64 size);
    qint64 number();
    QByteArray bytes();

    const File *m_journal;
    qint64 m_begin;
    qint64 m_end;
    qint64 m_firstPiece = 0;
    qint64 m_next; // what is not in the buffer yet
    QByteArray m_buffer{};
    qsizetype m_taken = 0; // of the buffer
    std::vector<FileChanges> m_files{};
};

} // namespace storage
