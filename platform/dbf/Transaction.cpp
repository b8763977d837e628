// Undoing of writes from before-images, and the locks that make this safe among several programs.
#include "platform/dbf/Transaction.h"

#include <chrono>
#include <thread>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

void WriteState::requireSound() const
{
    if (!fault.isEmpty())
        throw StorageError(StorageError::InputOutput, u"Eine Änderung ließ sich nicht zurücknehmen: %1"_s.arg(fault));
}

Transaction::Transaction(WriteState &state)
    : m_state(state)
{
    Q_ASSERT(!state.running);
    m_state.running = this;
}

Transaction::~Transaction()
{
    if (m_committed)
        return;
    undoTo(0);
    end();
}

void Transaction::commit()
{
    Q_ASSERT(!m_committed);
    m_committed = true;
    end();
}

void Transaction::end() noexcept
{
    for (const auto &[file, position] : m_locks)
        file->unlock(position);
    m_locks.clear();
    m_undo.clear();
    m_state.running = nullptr;
}

void Transaction::lock(File &file, qint64 position, const QString &what)
{
    if (holds(file, position))
        return;
    if (!retryForASecond([&] { return file.tryLock(position, File::Lock::Exclusive); })) {
        throw StorageError(StorageError::Locked,
                           u"%1: %2 ist durch ein anderes Programm gesperrt"_s.arg(file.path(), what));
    }
    m_locks.insert({&file, position});
}

void Transaction::write(File &file, qint64 position, storage::Bytes bytes)
{
    const qint64 oldSize = file.size();
    const qint64 end = position + static_cast<qint64>(bytes.size());
    QByteArray before;
    if (position < oldSize)
        before = file.read(position, std::min(end, oldSize) - position);
    m_undo.push_back([&file, position, end, oldSize, before] {
        if (!before.isEmpty())
            file.write(position, bytesOf(before));
        if (end > oldSize)
            file.resize(oldSize);
    });
    file.write(position, bytes);
}

void Transaction::undoTo(std::size_t mark) noexcept
{
    for (; m_undo.size() > mark; m_undo.pop_back()) {
        try {
            m_undo.back()();
        } catch (const StorageError &error) {
            m_state.fault = error.text();
        }
    }
}

Step::Step(WriteState &state)
{
    state.requireSound();
    if (state.readOnly)
        throw StorageError(StorageError::ReadOnly, u"Die Datenbank wurde nur zum Lesen geöffnet"_s);
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

bool retryForASecond(const std::function<bool()> &attempt)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 1s;
    while (!attempt()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

} // namespace dbf
