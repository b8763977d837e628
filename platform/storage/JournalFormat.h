#pragma once

#include <algorithm>
#include <memory>
#include <new>

#include <xxhash.h>

#include "platform/storage/JournalRecord.h"

/// The bytes of a journal file: a head of one sector, and the record that it makes count.
///
///   0  16  "VELDRAK-Journal2", or zeros if no record counts
///  16   8  where the record begins
///  24   8  its length
///  32   8  its checksum
///
/// Record: number of files; for each its name, old and new size, shared, mark (position, -1 if there is none; what
/// stands there; what is to), number of stretches, and for each its position and size. Then all stretches again in that
/// order, in pieces that end with a sector of the file, or where it ended before:
///
///   0   8  checksum of the piece as it was (zeros behind the old end)
///   8   8  checksum of the piece as it is to be
///  16   2  where in the piece the first byte differs; the bytes of a mark always do
///  18   2  number of bytes up to the last that differs, then these bytes as they were
///
/// Numbers are little-endian, those without a size 64 bits wide. Texts (UTF-8) and bytes stand behind their length.
/// Checksums are XXH3, 64 bits.
namespace storage::journal {

constexpr QByteArrayView magic("VELDRAK-Journal2");
constexpr qint64 headSize = 40;
constexpr qint64 pieceHead = 20;
constexpr qsizetype bufferSize = 1 << 20;

struct FreeState {
    void operator()(XXH3_state_t *state) const { XXH3_freeState(state); }
};

/// A checksum over bytes that come in parts.
class Sum
{
public:
    Sum()
    {
        if (!m_state)
            throw std::bad_alloc();
        XXH3_64bits_reset(m_state.get());
    }
    void add(QByteArrayView bytes)
    {
        XXH3_64bits_update(m_state.get(), bytes.data(), static_cast<std::size_t>(bytes.size()));
    }
    std::uint64_t value() const { return XXH3_64bits_digest(m_state.get()); }

private:
    std::unique_ptr<XXH3_state_t, FreeState> m_state{XXH3_createState()};
};

/// Cuts at the old end, too: that is where the way back begins.
template <typename Work> void forEachPiece(const FileChanges &file, const Stretch &stretch, const Work &work)
{
    for (qint64 at = 0; at < stretch.size;) {
        const qint64 position = stretch.position + at;
        qint64 size = std::min(sectorSize - position % sectorSize, stretch.size - at);
        if (position < file.oldSize)
            size = std::min(size, file.oldSize - position);
        work(at, size);
        at += size;
    }
}

} // namespace storage::journal
