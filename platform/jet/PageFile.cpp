// The file as pages: opening it, reading through the cache, scopes of changes.
#include "platform/jet/PageFile.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/Format.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/Patience.h"

using namespace Qt::StringLiterals;
using storage::readLE;
using storage::StorageError;

namespace jet {

namespace {

constexpr std::size_t cacheBytes = 8U << 20;
/// Nobody takes it for a database, whether by its name or by the short one of eight and three letters.
const QString journalEnding = u".vjn"_s;

bool isForbidden(const StorageError &error)
{
    return error.kind() == StorageError::ReadOnly || error.kind() == StorageError::FolderReadOnly
        || error.kind() == StorageError::NoPermission;
}

} // namespace

QStringList PageFile::besides()
{
    return {journalEnding};
}

PagesChanged::PagesChanged(const QString &path)
    : StorageError(Locked, u"%1 wird gerade von einem anderen Programm geändert."_s.arg(path))
{ }

PageFile::PageFile(storage::FileSystem &files, const storage::OpenRequest &request)
    : m_files(files)
    , m_path(request.path)
    , m_journal(files, request.path + journalEnding)
{
    auto [file, whyReadOnly] = storage::openAsFarAsPossible(files, m_path, !request.readOnly);
    m_file = std::move(file);
    m_whyReadOnly = std::move(whyReadOnly);
    const QByteArray start = m_file->read(0, std::min<qint64>(m_file->size(), FileHeader::bytesNeeded));
    m_header = FileHeader::parse(storage::bytesOf(start));
    m_pageSize = formatOf(*this).pageSize;
    if (!m_header.password.isEmpty() && m_header.password != request.password)
        throw StorageError(StorageError::WrongPassword, u"%1: Das Kennwort ist nicht gültig."_s.arg(request.path));
    joinUsers();
    settle();
    if (m_lockFile && m_journal.isThere())
        m_lockFile->ifAlone([this] { m_journal.remove(); }); // a killed program has left it
    const qint64 size = m_file->size();
    if (size % static_cast<qint64>(m_pageSize) != 0) {
        throw StorageError(StorageError::Damaged,
                           u"%1: Die Länge von %2 Bytes ist kein Vielfaches der Seitengröße %3; die letzte Seite ist "
                           "abgeschnitten."_s.arg(request.path)
                               .arg(size)
                               .arg(m_pageSize));
    }
    m_cache.emplace(cacheBytes / m_pageSize);
    look(readCommitArea());
}

PageFile::~PageFile()
{
    m_levels.clear();
    if (!m_lockFile)
        return;
    try {
        m_lockFile->leave([this] { m_journal.remove(); });
    } catch (const StorageError &) {
        // What stays behind is the next one's to use or to take away.
    }
}

std::unique_ptr<PageFile> PageFile::create(storage::FileSystem &files, const QString &path, const FileHeader &header)
{
    const Page first = header.toPage();
    const auto file = files.create(path);
    file->write(0, first);
    return std::make_unique<PageFile>(files, storage::OpenRequest{path, header.password, false});
}

/// Where no lock file can be made, nobody could see us: then we only read.
void PageFile::joinUsers()
{
    try {
        m_lockFile = std::make_unique<LockFile>(m_files, m_path);
        if (!storage::retryForAWhile([this] { return LockFile::isReadable(*m_file); }))
            throw StorageError(StorageError::Locked, u"%1 wird von einem anderen Programm benutzt."_s.arg(m_path));
    } catch (const StorageError &error) {
        if (!isForbidden(error))
            throw;
        if (!readOnly())
            m_whyReadOnly = StorageError(StorageError::FolderReadOnly, error.text());
    }
}

void PageFile::requireWritable() const
{
    if (m_whyReadOnly)
        throw *m_whyReadOnly;
}

void PageFile::refresh()
{
    if (!m_levels.empty())
        return;
    QByteArray area = readCommitArea();
    if (m_journal.isInterrupted() || isMarked(area)) {
        settle();
        area = readCommitArea();
    }
    look(std::move(area));
}

/// Takes note of the file's state and forgets the pages of another one.
void PageFile::look(QByteArray area)
{
    const auto pages = static_cast<PageNo>(m_file->size() / static_cast<qint64>(m_pageSize));
    if (area == m_commitArea && pages == m_pageCount)
        return;
    m_commitArea = std::move(area);
    m_pageCount = pages;
    m_cache->clear();
    m_sound.clear();
    ++m_generation;
}

bool PageFile::isAsLastSeen() const
{
    const auto isSame = [this] { return readCommitArea() == m_commitArea; };
    // Two who write leave the same mark; without a journal it is that of a program that was interrupted long ago.
    return isSame() && (!isMarked(m_commitArea) || (!m_journal.isHot() && isSame()));
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
    if (const auto slot = stashSlot(number)) {
        const QByteArray bytes = m_journal.stashed(positionOf(*slot), static_cast<qint64>(m_pageSize));
        std::ranges::copy(storage::bytesOf(bytes), page->begin());
    } else {
        m_file->read(positionOf(number), *page);
        // Whoever writes changes the commit area before the first page.
        if (m_levels.empty() && !isAsLastSeen())
            throw PagesChanged(m_path);
    }
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
    if (number < m_sound.size())
        m_sound[number] = false;
    return *found->second;
}

void PageFile::noteSound(PageNo number)
{
    if (number >= m_sound.size())
        m_sound.resize(std::max<std::size_t>(m_pageCount, number + 1U));
    m_sound[number] = true;
}

PageNo PageFile::append()
{
    requireScope();
    if ((std::uint64_t{m_pageCount} + 1) * m_pageSize > formatOf(*this).fileSizeLimit)
        throw StorageError(StorageError::FileFull, u"%1: Die Datenbank hat ihre größte Länge erreicht."_s.arg(path()));
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

std::shared_ptr<Page> PageFile::findChanged(PageNo number) const
{
    for (auto level = m_levels.rbegin(); level != m_levels.rend(); ++level) {
        if (const auto found = level->pages.find(number); found != level->pages.end())
            return found->second;
    }
    return nullptr;
}

PageScope::PageScope(PageFile &file, PageUse use)
    : m_file(file)
{
    m_file.begin(use);
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
