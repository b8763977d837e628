// The file as pages: opening, reading through the cache, and writing what a scope has changed.
#include "platform/jet/PageFile.h"

#include <algorithm>

#include <QFileInfo>
#include <QScopeGuard>

#include "platform/jet/Damage.h"
#include "platform/jet/Format.h"
#include "platform/jet/Rc4.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::StorageError;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::size_t cacheBytes = 8U << 20;
constexpr qint64 commitAreaSize = 512;
// A word of the commit area: what it is at least, and what it is while somebody writes.
constexpr std::uint16_t settled = 0x100;
constexpr char writing[2] = {0, 0};

QString lockFileOf(const QString &path)
{
    const QFileInfo info(path);
    return info.path() + u'/' + info.completeBaseName() + u".ldb"_s;
}

} // namespace

PageFile::PageFile(const storage::OpenRequest &request)
    : m_file(request.path)
{
    openFile(request.readOnly);
    const QByteArray start = readRaw(0, std::min<qint64>(m_file.size(), FileHeader::bytesNeeded));
    m_header = FileHeader::parse(std::as_bytes(std::span(start.constData(), static_cast<std::size_t>(start.size()))));
    m_pageSize = formatOf(*this).pageSize;
    if (!m_header.password.isEmpty() && m_header.password != request.password)
        throw StorageError(StorageError::WrongPassword, u"%1: Das Kennwort ist nicht gültig."_s.arg(request.path));
    const qint64 size = m_file.size();
    if (size % static_cast<qint64>(m_pageSize) != 0) {
        throw StorageError(StorageError::Damaged,
                           u"%1: Die Länge von %2 Bytes ist kein Vielfaches der Seitengröße %3; die letzte Seite ist "
                           "abgeschnitten."_s.arg(request.path)
                               .arg(size)
                               .arg(m_pageSize));
    }
    m_pageCount = static_cast<PageNo>(size / static_cast<qint64>(m_pageSize));
    m_cache.emplace(cacheBytes / m_pageSize);
    m_commitArea = readCommitArea();
}

std::unique_ptr<PageFile> PageFile::create(const QString &path, const FileHeader &header)
{
    const Page first = header.toPage();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        const bool exists = QFileInfo::exists(path);
        throw StorageError(exists ? StorageError::AlreadyExists : StorageError::InputOutput,
                           exists ? u"%1 gibt es schon."_s.arg(path) : u"%1: %2"_s.arg(path, file.errorString()));
    }
    const auto size = static_cast<qint64>(first.size());
    if (file.write(reinterpret_cast<const char *>(first.data()), size) != size || !file.flush())
        throw StorageError(StorageError::InputOutput, u"%1: %2"_s.arg(path, file.errorString()));
    file.close();
    return std::make_unique<PageFile>(storage::OpenRequest{path, header.password, false});
}

void PageFile::openFile(bool readOnly)
{
    if (!QFileInfo(m_file.fileName()).isFile())
        throw StorageError(StorageError::Missing, u"%1 gibt es nicht."_s.arg(m_file.fileName()));
    m_readOnly = readOnly || !m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered | QIODevice::ExistingOnly);
    if (m_readOnly && !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw StorageError(StorageError::InputOutput, u"%1: %2"_s.arg(m_file.fileName(), m_file.errorString()));
}

void PageFile::refresh()
{
    if (!m_levels.empty())
        return;
    QByteArray area = readCommitArea();
    const auto pages = static_cast<PageNo>(m_file.size() / static_cast<qint64>(m_pageSize));
    if (area == m_commitArea && pages == m_pageCount)
        return;
    m_commitArea = std::move(area);
    m_pageCount = pages;
    m_cache->clear();
    ++m_generation;
}

PagePtr PageFile::read(PageNo number)
{
    if (auto changed = findChanged(number))
        return changed;
    if (auto cached = m_cache->find(number))
        return cached;
    if (number >= m_pageCount)
        damaged(number, u"liegt hinter dem Ende der Datei (%1 Seiten)"_s.arg(m_pageCount));
    auto page = std::make_shared<Page>(m_pageSize);
    const auto size = static_cast<qint64>(m_pageSize);
    if (!m_file.seek(size * number) || m_file.read(reinterpret_cast<char *>(page->data()), size) != size)
        damaged(number, u"lässt sich nicht lesen: %1"_s.arg(m_file.errorString()));
    cipher(number, *page);
    m_cache->put(number, page);
    return page;
}

Page &PageFile::modify(PageNo number)
{
    requireScope();
    auto &pages = m_levels.back().pages;
    auto found = pages.find(number);
    if (found == pages.end())
        found = pages.emplace(number, std::make_shared<Page>(*read(number))).first;
    return *found->second;
}

PageNo PageFile::append()
{
    requireScope();
    if ((std::uint64_t{m_pageCount} + 1) * m_pageSize > formatOf(*this).fileSizeLimit)
        throw StorageError(StorageError::DiskFull, u"%1: Die Datenbank hat ihre größte Länge erreicht."_s.arg(path()));
    const PageNo number = m_pageCount++;
    m_levels.back().pages[number] = std::make_shared<Page>(m_pageSize);
    return number;
}

PageNo PageFile::allocate()
{
    UsageMap free(*this, globalFreeMap);
    const PageNo number = free.next(globalMapPage + 1, m_pageCount);
    if (number < m_pageCount) {
        free.remove(number);
        Page &page = modify(number);
        std::fill(page.begin(), page.end(), std::byte{0});
        return number;
    }
    free.extendFree(m_pageCount, [this] { return append(); });
    const PageNo added = append();
    free.remove(added);
    return added;
}

void PageFile::release(PageNo number)
{
    UsageMap free(*this, globalFreeMap);
    free.extendFree(number, [this] { return append(); });
    free.add(number);
}

void PageFile::requireScope() const
{
    Q_ASSERT_X(!m_levels.empty(), "PageFile", "a change outside of a write scope");
}

void PageFile::begin()
{
    if (m_readOnly)
        throw StorageError(StorageError::ReadOnly, u"%1 ist nur zum Lesen geöffnet."_s.arg(path()));
    if (m_levels.empty()) {
        requireNoOtherUser(lockFileOf(path()));
        m_lock.emplace(m_file);
        auto unlock = qScopeGuard([this] { m_lock.reset(); });
        refresh();
        checkCommitArea();
        unlock.dismiss();
    }
    m_levels.push_back({{}, m_pageCount});
}

void PageFile::commit()
{
    if (m_levels.size() == 1) {
        commitToFile(m_levels.back());
        for (auto &[number, page] : m_levels.back().pages)
            m_cache->put(number, page);
        m_levels.clear();
        m_lock.reset();
        return;
    }
    Level inner = std::move(m_levels.back());
    m_levels.pop_back();
    for (auto &[number, page] : inner.pages) {
        auto &outer = m_levels.back().pages[number];
        // Swapped, not replaced: the outer scope's callers hold references to their copies.
        if (outer)
            outer->swap(*page);
        else
            outer = std::move(page);
    }
}

void PageFile::rollback()
{
    m_pageCount = m_levels.back().pageCount;
    m_levels.pop_back();
    ++m_generation;
    if (m_levels.empty())
        m_lock.reset();
}

/// New pages first: if the disk is full, the old content is still whole. Page 0 is the last, with a counter that tells
/// other programs that the file has changed.
void PageFile::commitToFile(const Level &level)
{
    if (level.pages.empty())
        return;
    Page &first = modify(0);
    const std::size_t at = formatOf(*this).commitArea;
    const auto next = static_cast<std::uint16_t>(readLE<std::uint16_t>(first, at) + 1);
    writeLE(MutableBytes(first), at, std::max(next, settled));

    std::vector<PageNo> old;
    try {
        for (const auto &[number, page] : level.pages) {
            if (number >= level.pageCount)
                writePage(number, *page);
            else if (number != 0)
                old.push_back(number);
        }
    } catch (const StorageError &) {
        m_file.resize(static_cast<qint64>(m_pageSize) * level.pageCount);
        throw;
    }
    std::sort(old.begin(), old.end());
    overwrite(old, level);
    m_commitArea = readCommitArea();
}

void PageFile::overwrite(const std::vector<PageNo> &numbers, const Level &level)
{
    const auto size = static_cast<qint64>(m_pageSize);
    const auto commitArea = static_cast<qint64>(formatOf(*this).commitArea);
    std::vector<QByteArray> before;
    before.reserve(numbers.size());
    for (const PageNo number : numbers)
        before.push_back(readRaw(size * number, size));
    std::size_t written = 0;
    try {
        writeRaw(commitArea, writing, sizeof writing);
        for (; written < numbers.size(); ++written)
            writePage(numbers[written], *level.pages.at(numbers[written]));
        writePage(0, *level.pages.at(0));
    } catch (const StorageError &) {
        for (std::size_t i = 0; i <= written && i < numbers.size(); ++i)
            writeRaw(size * numbers[i], before[i].constData(), size);
        writeRaw(commitArea, m_commitArea.constData(), sizeof writing);
        m_file.resize(size * level.pageCount);
        throw;
    }
}

std::shared_ptr<Page> PageFile::findChanged(PageNo number) const
{
    for (auto level = m_levels.rbegin(); level != m_levels.rend(); ++level) {
        if (const auto found = level->pages.find(number); found != level->pages.end())
            return found->second;
    }
    return nullptr;
}

void PageFile::cipher(PageNo number, MutableBytes page) const
{
    if (m_header.pageKey == 0 || number == 0)
        return;
    std::byte key[4]{};
    writeLE(MutableBytes(key), 0, m_header.pageKey ^ number);
    rc4(key, page);
}

QByteArray PageFile::readRaw(qint64 at, qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    if (!m_file.seek(at) || m_file.read(bytes.data(), size) != size)
        throw StorageError(StorageError::InputOutput, u"%1: %2"_s.arg(path(), m_file.errorString()));
    return bytes;
}

void PageFile::writeRaw(qint64 at, const char *bytes, qint64 size)
{
    if (m_file.seek(at) && m_file.write(bytes, size) == size)
        return;
    const bool full = m_file.error() == QFileDevice::ResourceError;
    throw StorageError(full ? StorageError::DiskFull : StorageError::InputOutput,
                       u"%1: %2"_s.arg(path(), m_file.errorString()));
}

void PageFile::writePage(PageNo number, const Page &page)
{
    Page bytes = page;
    cipher(number, bytes);
    writeRaw(static_cast<qint64>(m_pageSize) * number, reinterpret_cast<const char *>(bytes.data()),
             static_cast<qint64>(m_pageSize));
}

QByteArray PageFile::readCommitArea()
{
    return readRaw(static_cast<qint64>(formatOf(*this).commitArea), commitAreaSize);
}

void PageFile::checkCommitArea() const
{
    const auto words = std::as_bytes(std::span(m_commitArea.constData(), static_cast<std::size_t>(commitAreaSize)));
    for (std::size_t at = 0; at < words.size(); at += 2) {
        if (readLE<std::uint16_t>(words, at) < settled) {
            throw StorageError(StorageError::Damaged,
                               u"%1: Ein Schreibvorgang wurde unterbrochen; die Datenbank muss erst repariert "
                               "werden."_s.arg(path()));
        }
    }
}

PageScope::PageScope(PageFile &file)
    : m_file(file)
{
    m_file.begin();
}

PageScope::~PageScope()
{
    if (m_open)
        m_file.rollback();
}

void PageScope::commit()
{
    m_file.commit();
    m_open = false;
}

} // namespace jet
