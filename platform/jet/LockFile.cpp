// Who has the database open, and who may write.
#include "platform/jet/LockFile.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QSysInfo>

#include "platform/storage/LocalPath.h"
#include "platform/storage/Patience.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::ByteRange;
using storage::LockKind;
using storage::StorageError;

namespace jet {

namespace {

constexpr int entries = 255;
constexpr qint64 entrySize = 64;
constexpr qsizetype nameSize = 32;
// The byte of entry n is this one plus n.
constexpr qint64 userLocks = 0x10000000;
// Our own kind: the same, and the first byte for the one that writes. The engine's own ranges end at 0x6FFFFFFF.
constexpr qint64 ownKind = 0x70000000;
// As far as a database can reach.
constexpr ByteRange wholeDatabase{0, 0x7FFFFFFF};
// Where the engine locks pages and tables.
constexpr ByteRange engineLocks{0x20000000, 0x6FF80100 - 0x20000000};
// Held by the one of our kind who is next, once he has waited for long.
constexpr ByteRange turn{ownKind + 0x1000, 1};
constexpr auto longWait = std::chrono::milliseconds(50);

ByteRange userLock(int entry)
{
    return {userLocks + entry, 1};
}

ByteRange ownKindLock(int entry)
{
    return {ownKind + entry, 1};
}

} // namespace

LockFile::LockFile(storage::FileSystem &files, const QString &databasePath)
    : m_files(files)
    , m_path(pathFor(databasePath))
{
    if (!storage::retryForAWhile([this] { return tryJoin(); }))
        throw StorageError(StorageError::Locked, u"%1 wird von einem anderen Programm benutzt."_s.arg(databasePath));
    m_waitingSince.reset();
    m_writeLocks.reserve(entries + 4); // what is locked must be noted
}

LockFile::~LockFile()
{
    endWriting();
    if (m_entry == 0)
        return;
    try {
        leave();
    } catch (const StorageError &) {
        // The file stays behind; without our lock it means nothing.
    }
}

QString LockFile::pathFor(const QString &databasePath)
{
    const QFileInfo info(databasePath);
    return storage::existingPath(info.path() + u'/' + info.completeBaseName() + u".ldb"_s);
}

bool LockFile::tryJoin()
{
    try {
        if (!m_file || !m_file->isStillThere())
            m_file = m_files.exists(m_path) ? m_files.open(m_path, storage::Access::ReadWrite) : m_files.create(m_path);
    } catch (const StorageError &error) {
        // Somebody was faster with making or removing it.
        if (error.kind() == StorageError::AlreadyExists || error.kind() == StorageError::Missing)
            return false;
        throw;
    }
    if (!takeEntry()) {
        waitOn();
        static_cast<void>(isOurTurn()); // so that those who write all the time let us in
        return false;
    }
    m_file->unlock(turn);
    // The last one to leave may have removed the file between our opening and locking it.
    if (!m_file->isStillThere())
        return false;
    writeEntry();
    return true;
}

bool LockFile::takeEntry()
{
    for (m_entry = 1; m_entry <= entries; ++m_entry) {
        if (!m_file->tryLock(userLock(m_entry), LockKind::Exclusive))
            continue;
        if (m_file->tryLock(ownKindLock(m_entry), LockKind::Exclusive))
            return true;
        m_file->unlock(userLock(m_entry)); // somebody is looking whose it is
        return false;
    }
    return false;
}

void LockFile::writeEntry()
{
    const QByteArray computer = QSysInfo::machineHostName().toLatin1().left(nameSize - 1);
    const QByteArray entry = computer.leftJustified(nameSize, '\0') + QByteArray("Admin").leftJustified(nameSize, '\0');
    m_file->write((m_entry - 1) * entrySize, storage::bytesOf(entry));
}

bool LockFile::tryBeginWriting(storage::File &database)
{
    const auto lock = [this](storage::File &file, ByteRange range) {
        const bool locked = file.tryLock(range, LockKind::Exclusive);
        if (locked)
            m_writeLocks.emplace_back(&file, range);
        return locked;
    };
    try {
        if (isOurTurn() && lock(*m_file, ownKindLock(0)) && lockOthers() && lock(*m_file, engineLocks)
            && lock(database, wholeDatabase)) {
            m_waitingSince.reset();
            m_file->unlock(turn);
            return true;
        }
    } catch (...) {
        endWriting();
        throw;
    }
    unlockAll();
    waitOn();
    return false;
}

/// False while another one is next. Who has just begun to wait does not keep anybody from writing: as long as both have
/// their share, it is faster not to take turns.
bool LockFile::isOurTurn()
{
    if (!m_file->tryLock(turn, LockKind::Exclusive))
        return false;
    const bool isLong = m_waitingSince && std::chrono::steady_clock::now() - *m_waitingSince > longWait;
    if (!isLong)
        m_file->unlock(turn);
    return true;
}

void LockFile::waitOn()
{
    if (!m_waitingSince)
        m_waitingSince = std::chrono::steady_clock::now();
}

std::vector<ByteRange> LockFile::otherEntries() const
{
    std::vector<ByteRange> ranges{{userLocks + 1, m_entry - 1}, {userLocks + m_entry + 1, entries - m_entry}};
    std::erase_if(ranges, [](const ByteRange &range) { return range.size == 0; });
    return ranges;
}

/// Takes the locks of all free entries; false if another kind of program has one.
bool LockFile::lockOthers()
{
    for (const ByteRange &range : otherEntries()) {
        if (m_file->tryLock(range, LockKind::Exclusive)) {
            m_writeLocks.emplace_back(m_file.get(), range);
            continue;
        }
        for (qint64 byte = range.first; byte < range.first + range.size; ++byte) {
            if (!lockOther(static_cast<int>(byte - userLocks)))
                return false;
        }
    }
    return true;
}

bool LockFile::lockOther(int entry)
{
    if (m_file->tryLock(userLock(entry), LockKind::Exclusive)) {
        m_writeLocks.emplace_back(m_file.get(), userLock(entry));
        return true;
    }
    const bool otherKind = m_file->tryLock(ownKindLock(entry), LockKind::Exclusive);
    if (otherKind)
        m_file->unlock(ownKindLock(entry));
    return !otherKind;
}

bool LockFile::isReadable(storage::File &database)
{
    const bool locked = database.tryLock(wholeDatabase, LockKind::Shared);
    if (locked)
        database.unlock(wholeDatabase);
    return locked;
}

void LockFile::endWriting() noexcept
{
    unlockAll();
    m_waitingSince.reset();
    if (m_file)
        m_file->unlock(turn);
}

void LockFile::unlockAll() noexcept
{
    for (; !m_writeLocks.empty(); m_writeLocks.pop_back())
        m_writeLocks.back().first->unlock(m_writeLocks.back().second);
}

void LockFile::ifAlone(const std::function<void()> &work)
{
    std::vector<ByteRange> locked;
    const auto unlock = qScopeGuard([&] {
        for (const ByteRange &range : locked)
            m_file->unlock(range);
    });
    for (const ByteRange &range : otherEntries()) {
        if (!m_file->tryLock(range, LockKind::Exclusive))
            return;
        locked.push_back(range);
    }
    work();
}

void LockFile::leave(const std::function<void()> &ifLast)
{
    m_file->unlock(ownKindLock(m_entry));
    m_file->unlock(userLock(std::exchange(m_entry, 0)));
    // Whoever wants to join now finds no free entry, and then no file.
    if (!m_file->tryLock({userLocks + 1, entries}, LockKind::Exclusive) || !m_file->isStillThere())
        return;
    ifLast();
    m_files.remove(m_path);
}

} // namespace jet
