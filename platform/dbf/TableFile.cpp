// Reading through the writes that a transaction holds back.
#include "platform/dbf/TableFile.h"

#include <algorithm>

#include <QFileInfo>

namespace dbf {

TableFile::TableFile(storage::FileSystem &files, const QString &path, bool forWriting)
    : TableFile(storage::openAsFarAsPossible(files, path, forWriting))
{ }

TableFile::TableFile(storage::OpenedFile opened)
    : m_file(std::move(opened.file))
    , m_whyReadOnly(std::move(opened.whyReadOnly))
{ }

void TableFile::requireWritable() const
{
    if (m_whyReadOnly)
        throw *m_whyReadOnly;
}

qint64 TableFile::heldEnd() const
{
    return m_held.empty() ? 0 : m_held.rbegin()->first + m_held.rbegin()->second.size();
}

qint64 TableFile::size() const
{
    return std::max(m_file->size(), heldEnd());
}

void TableFile::read(qint64 position, storage::MutableBytes into) const
{
    const qint64 end = position + static_cast<qint64>(into.size());
    if (m_held.empty() || end > heldEnd()) {
        m_file->read(position, into);
    } else {
        const qint64 there = std::clamp<qint64>(m_file->size() - position, 0, end - position);
        m_file->read(position, into.first(static_cast<std::size_t>(there)));
        std::ranges::fill(into.subspan(static_cast<std::size_t>(there)), std::byte{0});
    }
    auto piece = m_held.upper_bound(position);
    if (piece != m_held.begin())
        --piece;
    for (; piece != m_held.end() && piece->first < end; ++piece) {
        const auto &[begin, bytes] = *piece;
        const qint64 from = std::max(begin, position);
        const qint64 to = std::min(begin + bytes.size(), end);
        if (from < to)
            std::ranges::copy(storage::bytesOf(bytes).subspan(std::size_t(from - begin), std::size_t(to - from)),
                              into.subspan(std::size_t(from - position)).begin());
    }
}

QByteArray TableFile::read(qint64 position, qint64 size) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    read(position, std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(size))));
    return bytes;
}

TableFile::Replaced TableFile::hold(qint64 position, const QByteArray &bytes)
{
    const qint64 end = position + bytes.size();
    Replaced replaced{position, end};
    auto piece = m_held.upper_bound(position);
    if (piece != m_held.begin() && std::prev(piece)->first + std::prev(piece)->second.size() > position)
        --piece;
    while (piece != m_held.end() && piece->first < end) {
        replaced.begin = std::min(replaced.begin, piece->first);
        replaced.end = std::max(replaced.end, piece->first + piece->second.size());
        replaced.pieces.insert(m_held.extract(piece++));
    }
    // What of them lies before and behind stays.
    for (const auto &[begin, old] : replaced.pieces) {
        if (begin < position)
            m_held[begin] = old.first(position - begin);
        if (begin + old.size() > end)
            m_held[end] = old.sliced(end - begin);
    }
    m_held[position] = bytes;
    return replaced;
}

void TableFile::undo(const Replaced &replaced)
{
    m_held.erase(m_held.lower_bound(replaced.begin), m_held.lower_bound(replaced.end));
    m_held.insert(replaced.pieces.begin(), replaced.pieces.end());
}

storage::FileChanges TableFile::changes() const
{
    const qint64 size = m_file->size();
    storage::FileChanges changes;
    changes.name = QFileInfo(path()).fileName();
    changes.shared = true;
    std::vector<QByteArray> contents;
    for (const auto &[position, bytes] : m_held) {
        if (m_file->read(position, std::clamp<qint64>(size - position, 0, bytes.size())) == bytes)
            continue;
        changes.stretches.push_back({position, bytes.size()});
        contents.push_back(bytes);
    }
    changes.content = [contents = std::move(contents)](std::size_t i) { return contents[i]; };
    // Without an append the length is nobody's business: others may append meanwhile.
    changes.newSize = heldEnd();
    changes.oldSize = std::min(size, changes.newSize);
    return changes;
}

} // namespace dbf
