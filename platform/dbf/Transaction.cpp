// Writes held back and committed as a whole, and the locks that make this safe among several programs.
#include "platform/dbf/Transaction.h"

#include <algorithm>

#include "platform/dbf/Layout.h"
#include "platform/storage/Patience.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

/// When the rows are safe. The date says nothing about them: if it stays the old one, no harm is done, and the
/// statement has not failed.
void putDate(storage::File &file)
{
    try {
        const QByteArray today = todayBytes();
        if (file.read(datePosition, today.size()) != today)
            file.write(datePosition, storage::bytesOf(today));
    } catch (const StorageError &) {
        return;
    }
}

} // namespace

Transaction::Transaction(WriteState &state)
    : m_state(state)
{
    Q_ASSERT(!state.running);
    m_state.running = this;
}

Transaction::~Transaction()
{
    if (m_state.running == this)
        end();
}

/// Each file once; a table's memos (.fpt) come before its records (.dbf), which refer to them.
std::vector<TableFile *> Transaction::changedFiles() const
{
    std::set<TableFile *> changed;
    for (const auto &[file, replaced] : m_writes)
        changed.insert(file);
    std::vector<TableFile *> files(changed.begin(), changed.end());
    std::ranges::sort(files, [](const TableFile *left, const TableFile *right) {
        return left->path().compare(right->path(), Qt::CaseInsensitive) > 0;
    });
    return files;
}

void Transaction::commit()
{
    const std::vector<TableFile *> files = changedFiles();
    if (!files.empty()) {
        FolderJournal::Turn turn(m_state.journal);
        std::vector<storage::Journal::Part> parts;
        for (TableFile *file : files) {
            if (!file->file().isStillThere()) {
                throw StorageError(StorageError::Missing,
                                   u"%1 wurde inzwischen gelöscht oder ersetzt"_s.arg(file->path()));
            }
            if (storage::FileChanges changes = file->changes(); !changes.stretches.empty())
                parts.push_back({file->file(), std::move(changes)});
        }
        if (!parts.empty())
            turn.commit(parts);
        for (TableFile *file : files) {
            if (file->path().endsWith(u".dbf"_s, Qt::CaseInsensitive))
                putDate(file->file());
        }
    }
    end();
}

void Transaction::end() noexcept
{
    for (const auto &[file, position] : m_locks)
        file->file().unlock({position, 1});
    m_locks.clear();
    for (const auto &[file, replaced] : m_writes)
        file->dropHeld();
    m_writes.clear();
    m_state.running = nullptr;
}

void Transaction::lock(TableFile &file, qint64 position, const QString &what)
{
    if (holds(file, position))
        return;
    const auto tryLock = [&] {
        if (!file.file().tryLock({position, 1}, storage::LockKind::Exclusive))
            return false;
        m_locks.insert({&file, position});
        if (!m_state.journal.isHot())
            return true;
        // Perhaps of a program that was killed with this lock. Taking its writes back needs the lock itself.
        file.file().unlock({position, 1});
        m_locks.erase({&file, position});
        m_state.journal.trySettle();
        return false;
    };
    if (!storage::retryForAWhile(tryLock)) {
        throw StorageError(StorageError::Locked,
                           u"%1: %2 ist durch ein anderes Programm gesperrt"_s.arg(file.path(), what));
    }
}

void Transaction::write(TableFile &file, qint64 position, const QByteArray &bytes)
{
    m_writes.emplace_back(&file, file.hold(position, bytes));
}

void Transaction::undoTo(std::size_t mark) noexcept
{
    for (; m_writes.size() > mark; m_writes.pop_back())
        m_writes.back().first->undo(m_writes.back().second);
}

Step::Step(WriteState &state)
{
    if (state.readOnly)
        throw StorageError(StorageError::ReadOnly, u"Die Datenbank wurde nur zum Lesen geöffnet"_s);
    state.journal.settle();
    if (!state.running)
        m_own = std::make_unique<Transaction>(state);
    m_transaction = state.running;
    m_mark = m_transaction->mark();
}

Step::~Step()
{
    if (!m_done)
        m_transaction->undoTo(m_mark);
}

void Step::done()
{
    m_done = true;
    if (m_own)
        m_own->commit();
}

} // namespace dbf
