// Whose turn it is to commit, and what those who were killed in theirs have left.
#include "platform/dbf/FolderJournal.h"

#include <QDir>

#include "platform/dbf/Layout.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/Patience.h"

using namespace Qt::StringLiterals;
using storage::Access;
using storage::ByteRange;
using storage::LockKind;
using storage::StorageError;

namespace dbf {

namespace {

/// Nobody takes it for a table or a database, whether by its name or by the short one of eight and three letters.
constexpr QStringView journalName = u"Tabellen.vjn";
/// Far behind any content of the journal.
constexpr ByteRange turnLock{qint64{1} << 40, 1};
/// Shared by all who have used the journal and will again.
constexpr ByteRange usersLock{turnLock.first + 2, 1};

/// What a program that writes this stretch of a file locks.
ByteRange lockOf(bool memos, const storage::Stretch &stretch)
{
    if (memos || stretch.position == recordCountPosition)
        return {lockBase, 1};
    return {lockBase + stretch.position, stretch.size};
}

} // namespace

FolderJournal::FolderJournal(storage::FileSystem &files, const QString &folder)
    : m_files(files)
    , m_folder(folder)
    , m_path(QDir(folder).filePath(journalName.toString()))
    , m_journal(files, m_path)
{
    try {
        if (m_journal.isThere())
            takeAway();
    } catch (const StorageError &error) {
        // Who may only read leaves it to others, and perhaps somebody was faster.
        if (error.kind() != StorageError::ReadOnly && error.kind() != StorageError::NoPermission
            && error.kind() != StorageError::Missing)
            throw;
    }
}

FolderJournal::~FolderJournal()
{
    if (!m_turn)
        return;
    try {
        if (m_turn->isStillThere())
            takeAway();
    } catch (const StorageError &) {
        // It stays behind, and tells the next one whether there is something to take back.
    }
}

/// Removes the file unless somebody else uses it, or it has content.
void FolderJournal::takeAway()
{
    const auto file = m_turn ? std::move(m_turn) : m_files.open(m_path, Access::ReadWrite);
    file->unlock(usersLock);
    if (file->tryLock(turnLock, LockKind::Exclusive) && file->tryLock(usersLock, LockKind::Exclusive)
        && file->isStillThere())
        m_journal.remove();
}

/// Whoever removes the file has its turn meanwhile: a lock counts only if the file is still there.
bool FolderJournal::tryTurn()
{
    if (m_turn && !m_turn->isStillThere())
        m_turn.reset();
    try {
        if (!m_turn && m_files.exists(m_path))
            m_turn = m_files.open(m_path, Access::ReadWrite);
        if (!m_turn) {
            m_turn = m_files.create(m_path);
            m_files.syncFolderOf(m_path);
        }
        if (!m_turn->tryLock(usersLock, LockKind::Shared)) {
            m_turn.reset(); // somebody is taking it away
            return false;
        }
    } catch (const StorageError &error) {
        // Somebody was faster with making or removing it.
        if (error.kind() == StorageError::AlreadyExists || error.kind() == StorageError::Missing)
            return false;
        throw;
    }
    if (!m_turn->tryLock(turnLock, LockKind::Exclusive))
        return false;
    if (m_turn->isStillThere())
        return true;
    m_turn.reset();
    return false;
}

void FolderJournal::endTurn() noexcept
{
    if (m_turn)
        m_turn->unlock(turnLock);
}

/// False also if other programs hold what is to be taken back.
bool FolderJournal::tryTurnAndRecover()
{
    try {
        if (!tryTurn())
            return false;
        std::vector<std::unique_ptr<storage::File>> opened;
        m_journal.recover([&](const storage::FileChanges &changes) { return reopen(changes, opened); });
        // A journal of other files was put aside, and our lock with it.
        if (m_turn->isStillThere())
            return true;
        m_turn.reset();
        return false;
    } catch (const StorageError &error) {
        endTurn();
        if (error.kind() == StorageError::Locked)
            return false;
        throw;
    }
}

/// Opens a file for taking back its changes, and locks them as whoever had made them.
storage::File *FolderJournal::reopen(const storage::FileChanges &changes,
                                     std::vector<std::unique_ptr<storage::File>> &opened)
{
    const QString path = storage::existingPath(QDir(m_folder).filePath(changes.name));
    if (changes.name.contains(u'/') || changes.name.contains(u'\\') || !m_files.exists(path))
        return nullptr;
    opened.push_back(m_files.open(path, Access::ReadWrite));
    storage::File &file = *opened.back();
    const bool memos = !path.endsWith(u".dbf"_s, Qt::CaseInsensitive);
    for (const storage::Stretch &stretch : changes.stretches) {
        if (!file.tryLock(lockOf(memos, stretch), LockKind::Exclusive))
            throw StorageError(StorageError::Locked, u"%1 wird von einem anderen Programm benutzt"_s.arg(path));
    }
    return &file;
}

bool FolderJournal::trySettle()
{
    m_whyNotOurs.reset();
    if (!isHot())
        return true;
    try {
        if (!tryTurnAndRecover())
            return false;
        endTurn();
        return true;
    } catch (const StorageError &error) {
        // Who may only read cannot have a turn, and waits for that of others.
        if (error.kind() != StorageError::ReadOnly && error.kind() != StorageError::NoPermission)
            throw;
        m_whyNotOurs = error;
        return false;
    }
}

void FolderJournal::settle()
{
    if (storage::retryForAWhile([this] { return trySettle(); }))
        return;
    if (m_whyNotOurs) {
        throw StorageError(
            m_whyNotOurs->kind(),
            u"Eine unterbrochene Änderung lässt sich nicht zurücknehmen: %1"_s.arg(m_whyNotOurs->text()));
    }
    throw StorageError(StorageError::Locked, u"%1: Ein anderes Programm ändert gerade Tabellen"_s.arg(m_folder));
}

FolderJournal::Turn::Turn(FolderJournal &journal)
    : m_journal(journal)
{
    if (!storage::retryForAWhile([&journal] { return journal.tryTurnAndRecover(); })) {
        throw StorageError(StorageError::Locked,
                           u"%1: Ein anderes Programm ändert gerade Tabellen"_s.arg(journal.m_folder));
    }
}

FolderJournal::Turn::~Turn()
{
    m_journal.endTurn();
}

void FolderJournal::Turn::commit(std::span<const storage::Journal::Part> parts)
{
    m_journal.m_journal.commit(parts);
}

} // namespace dbf
