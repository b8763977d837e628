// Writing: who may, what a scope has changed as one change of the file, and what an interrupted one has left.
#include <algorithm>

#include "platform/jet/Format.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/Rc4.h"
#include "platform/storage/Patience.h"

using namespace Qt::StringLiterals;
using storage::MutableBytes;
using storage::readLE;
using storage::StorageError;
using storage::writeLE;

namespace jet {

namespace {

constexpr qint64 commitAreaSize = 512;
// A word of the commit area: what it is at least, and what it is while somebody writes.
constexpr std::uint16_t settled = 0x100;
constexpr char writing[2] = {0, 0};
/// What the outermost scope keeps in memory, if it need not keep all.
constexpr std::size_t keptBytes = 8U << 20;

} // namespace

void PageFile::begin(PageUse use)
{
    requireWritable();
    if (m_levels.empty()) {
        if (!storage::retryForAWhile([this] { return m_lockFile->tryBeginWriting(*m_file); })) {
            m_lockFile->endWriting();
            throw StorageError(
                StorageError::Locked,
                u"%1: Ein anderes Programm hat die Datenbank geöffnet oder ändert sie gerade."_s.arg(path()));
        }
        try {
            recover(*m_file);
            look(readCommitArea());
            checkCommitArea();
        } catch (...) {
            m_lockFile->endWriting();
            throw;
        }
    }
    stashIfMany();
    m_levels.push_back({{}, m_pageCount, use});
}

void PageFile::commit()
{
    if (m_levels.size() == 1) {
        commitToFile(m_levels.back());
        keepInCache(m_levels.back());
        m_levels.clear();
        m_stashSlots.clear();
        m_stashed = 0;
        m_lockFile->endWriting();
        return;
    }
    auto &inner = m_levels.back().pages;
    auto &outer = m_levels[m_levels.size() - 2].pages;
    outer.reserve(outer.size() + inner.size()); // from here on nothing can fail
    for (auto &[number, page] : inner) {
        // Swapped, not replaced: the outer scope's callers hold references to their copies.
        if (const auto known = outer.find(number); known != outer.end())
            known->second->swap(*page);
    }
    outer.merge(inner);
    m_levels.pop_back();
}

void PageFile::keepInCache(const Level &level)
{
    try {
        for (const auto &[number, page] : level.pages)
            m_cache->put(number, page);
    } catch (const std::bad_alloc &) {
        m_cache->clear(); // it only saves reading
    }
}

void PageFile::rollback()
{
    m_pageCount = m_levels.back().pageCount;
    m_levels.pop_back();
    m_sound.clear();
    ++m_generation;
    if (!m_levels.empty())
        return;
    if (m_stashed != 0) {
        m_cache->clear(); // it has pages of the scope
        m_stashSlots.clear();
        m_stashed = 0;
        m_journal.dropStash();
    }
    m_lockFile->endWriting();
}

/// A statement may change more than there is room for in memory.
void PageFile::stashIfMany()
{
    if (m_levels.size() != 1)
        return;
    Level &level = m_levels.front();
    if (level.use != PageUse::ByInnerScopes || level.pages.size() * m_pageSize <= keptBytes)
        return;
    for (const auto &[number, page] : level.pages) {
        m_stashSlots.resize(std::max<std::size_t>(m_stashSlots.size(), m_pageCount));
        std::uint32_t &slot = m_stashSlots[number];
        if (slot == 0)
            slot = ++m_stashed;
        m_journal.stash(positionOf(slot - 1), storage::bytesOf(encrypted(number, *page)));
    }
    keepInCache(level);
    level.pages.clear();
}

std::optional<std::uint32_t> PageFile::stashSlot(PageNo number) const
{
    if (number >= m_stashSlots.size() || m_stashSlots[number] == 0)
        return std::nullopt;
    return m_stashSlots[number] - 1;
}

/// Waits until nobody is writing. If the one who did is gone, what it has left is taken back.
void PageFile::settle()
{
    const bool done = storage::retryForAWhile([this] { return trySettle(); });
    if (m_lockFile)
        m_lockFile->endWriting();
    if (!done)
        throw StorageError(StorageError::Locked, u"%1 wird gerade von einem anderen Programm geändert."_s.arg(path()));
}

bool PageFile::trySettle()
{
    if (!m_journal.isHot())
        return true;
    std::unique_ptr<storage::File> opened;
    std::unique_ptr<LockFile> joined;
    if (readOnly())
        opened = m_files.open(m_path, storage::Access::ReadWrite);
    if (!m_lockFile)
        joined = std::make_unique<LockFile>(m_files, m_path);
    storage::File &file = opened ? *opened : *m_file;
    LockFile &lockFile = joined ? *joined : *m_lockFile;
    if (!lockFile.tryBeginWriting(file))
        return false;
    try {
        recover(file);
        m_journal.remove();
    } catch (const StorageError &) {
        lockFile.endWriting();
        throw;
    }
    lockFile.endWriting();
    return true;
}

void PageFile::recover(storage::File &file)
{
    m_journal.recover([&file](const storage::FileChanges &) { return &file; });
}

/// Page 0 comes last, with a counter that tells other programs that the file has changed.
void PageFile::commitToFile(const Level &level)
{
    if (level.pages.empty() && m_stashed == 0)
        return;
    Page &first = modify(0);
    const std::size_t at = formatOf(*this).commitArea;
    const auto next = static_cast<std::uint16_t>(readLE<std::uint16_t>(first, at) + 1);
    writeLE(MutableBytes(first), at, std::max(next, settled));
    QByteArray area(reinterpret_cast<const char *>(first.data()) + at, commitAreaSize);
    const storage::Journal::Part part{*m_file, changesOf(level)};
    m_journal.commit({&part, 1});
    m_commitArea.swap(area);
}

storage::FileChanges PageFile::changesOf(const Level &level) const
{
    storage::FileChanges changes;
    changes.oldSize = positionOf(level.pageCount);
    changes.newSize = positionOf(m_pageCount);
    const std::vector<PageNo> numbers = changedPages(level);
    for (const PageNo number : numbers)
        changes.stretches.push_back({positionOf(number), static_cast<qint64>(m_pageSize)});
    changes.content = [this, &level, numbers](std::size_t i) { return newContent(level, numbers[i]); };
    changes.mark = {static_cast<qint64>(formatOf(*this).commitArea), m_commitArea.first(sizeof writing),
                    QByteArray(writing, sizeof writing)};
    return changes;
}

/// In the order of writing.
std::vector<PageNo> PageFile::changedPages(const Level &level) const
{
    std::vector<PageNo> numbers;
    for (const auto &[number, page] : level.pages) {
        if (number != 0 && !stashSlot(number))
            numbers.push_back(number);
    }
    for (PageNo number = 1; number < m_stashSlots.size(); ++number) {
        if (stashSlot(number))
            numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    numbers.push_back(0);
    return numbers;
}

QByteArray PageFile::newContent(const Level &level, PageNo number) const
{
    if (const auto found = level.pages.find(number); found != level.pages.end())
        return encrypted(number, *found->second);
    return m_journal.stashed(positionOf(*stashSlot(number)), static_cast<qint64>(m_pageSize));
}

void PageFile::cipher(PageNo number, MutableBytes page) const
{
    if (m_header.pageKey == 0 || number == 0)
        return;
    std::byte key[4]{};
    writeLE(MutableBytes(key), 0, m_header.pageKey ^ number);
    rc4(key, page);
}

QByteArray PageFile::encrypted(PageNo number, const Page &page) const
{
    Page bytes = page;
    cipher(number, bytes);
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QByteArray PageFile::readCommitArea() const
{
    return m_file->read(static_cast<qint64>(formatOf(*this).commitArea), commitAreaSize);
}

bool PageFile::isMarked(const QByteArray &commitArea)
{
    return commitArea.startsWith(QByteArrayView(writing, sizeof writing));
}

void PageFile::checkCommitArea() const
{
    const storage::Bytes words = storage::bytesOf(m_commitArea);
    for (std::size_t at = 0; at < words.size(); at += 2) {
        if (readLE<std::uint16_t>(words, at) < settled) {
            throw StorageError(StorageError::Damaged,
                               u"%1: Ein Schreibvorgang wurde unterbrochen; die Datenbank muss erst repariert "
                               "werden."_s.arg(path()));
        }
    }
}

} // namespace jet
