#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <QString>

#include "platform/storage/FileSystem.h"

namespace jet {

/// The lock file beside a database (".ldb"), in which everybody shows up who has the database open.
///
/// Up to 255 users have an entry of 64 bytes each (name of the computer, name of the user) and hold a lock on one byte
/// far behind the file's end while they are in: an entry counts only with its lock, so that the entry of a program that
/// died means nothing. The last one to leave removes the file.
///
/// Which bytes the engine locks for single pages is not publicly known, so nobody may write beside it: we write while
/// no other kind of program is in, and keep newcomers out meanwhile by holding the locks of all free entries. Programs
/// of our own kind hold a second lock, in a range that the engine does not use, and write in turn.
class LockFile
{
public:
    /// Adds us to the users of a database. Waits while somebody writes.
    ///
    /// Errors  StorageError: Locked when no entry got free, FolderReadOnly or NoPermission when the file cannot be made
    ///         or opened.
    LockFile(storage::FileSystem &files, const QString &databasePath);
    ~LockFile();
    LockFile(const LockFile &) = delete;
    LockFile &operator=(const LockFile &) = delete;

    /// Locks out everybody else; false if that is not possible now. Who gets tired of trying calls endWriting(): after
    /// a while of waiting others let us go first.
    bool tryBeginWriting(storage::File &database);
    void endWriting() noexcept;

    /// Runs `work` if nobody else has the database open, and keeps newcomers out meanwhile.
    void ifAlone(const std::function<void()> &work);
    /// Gives up our entry. If nobody else has one, the file is removed, and `ifLast` runs before.
    void leave(const std::function<void()> &ifLast = [] {});

    /// False while somebody has the database, or a part of it, for himself alone.
    static bool isReadable(storage::File &database);

    static QString pathFor(const QString &databasePath);

private:
    bool tryJoin();
    bool takeEntry();
    void writeEntry();
    std::vector<storage::ByteRange> otherEntries() const;
    bool lockOthers();
    bool lockOther(int entry);
    bool isOurTurn();
    void waitOn();
    void unlockAll() noexcept;

    storage::FileSystem &m_files;
    QString m_path;
    std::unique_ptr<storage::File> m_file{};
    int m_entry = 0; // ours, from 1; 0 when we have left
    std::vector<std::pair<storage::File *, storage::ByteRange>> m_writeLocks{};
    std::optional<std::chrono::steady_clock::time_point> m_waitingSince{};
};

} // namespace jet
