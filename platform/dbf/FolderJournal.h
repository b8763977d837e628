#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/storage/FileSystem.h"
#include "platform/storage/Journal.h"
#include "platform/storage/StorageError.h"

namespace dbf {

/// The journal of a folder's tables, and whose turn it is to use it: programs of our kind commit one after another.
///
/// Owns       the journal file, which goes with the last one who has used it; what a killed program has left goes with
///            the next one who comes.
/// Errors     throws StorageError: Locked while another program has its turn for too long, or holds what an
///            interrupted commit has left to be taken back; the rest as storage::Journal does.
class FolderJournal
{
public:
    /// `files` must outlive the object.
    FolderJournal(storage::FileSystem &files, const QString &folder);
    ~FolderJournal();
    FolderJournal(const FolderJournal &) = delete;
    FolderJournal &operator=(const FolderJournal &) = delete;

    storage::FileSystem &files() const { return m_files; }

    /// Waits until nobody is committing. If the one who did is gone, what it has left is taken back.
    void settle();
    bool trySettle();
    /// Whether somebody is committing, or was interrupted at it.
    bool isHot() const { return m_journal.isHot(); }

    /// While it lives, no other program of our kind commits, makes or drops tables; nothing interrupted is left.
    class Turn
    {
    public:
        explicit Turn(FolderJournal &journal);
        ~Turn();
        Turn(const Turn &) = delete;
        Turn &operator=(const Turn &) = delete;

        void commit(std::span<const storage::Journal::Part> parts);

    private:
        FolderJournal &m_journal;
    };

private:
    void takeAway();
    bool tryTurn();
    bool tryTurnAndRecover();
    void endTurn() noexcept;
    storage::File *reopen(const storage::FileChanges &changes, std::vector<std::unique_ptr<storage::File>> &opened);

    storage::FileSystem &m_files;
    QString m_folder;
    QString m_path;
    storage::Journal m_journal;
    std::unique_ptr<storage::File> m_turn{}; // the journal file once more, for the lock
    std::optional<storage::StorageError> m_whyNotOurs{}; // why we could not have our turn at all
};

} // namespace dbf
