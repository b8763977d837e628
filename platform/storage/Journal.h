#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/storage/FileSystem.h"

namespace storage {

/// A part of a file that gets new content.
struct Stretch {
    qint64 position = 0;
    qint64 size = 0;
};

/// Bytes that stand in a file while it is being changed, over a part of one of the stretches.
struct Mark {
    qint64 position = 0;
    QByteArray before{}; ///< what stands there; as long as `after`
    QByteArray after{};
};

/// All that is to change in one file, in the order of writing.
struct FileChanges {
    QString name{}; ///< by which the file is found again, see Journal::recover
    qint64 oldSize = 0;
    qint64 newSize = 0; ///< not below oldSize
    std::vector<Stretch> stretches{};
    /// What is to stand in the stretch of that number, exactly as long. Asked for more than once, so that not all of it
    /// has to be in memory.
    std::function<QByteArray(std::size_t)> content{};
    std::optional<Mark> mark{};
    /// Others may write other stretches of the file after a crash, and append to it: its length counts only where it
    /// is to change, and what was appended must be ours to be taken back.
    bool shared = false;
};

/// Changes files as a whole or not at all, also if the program is killed or the power fails half-way.
///
/// What is about to be overwritten goes to a file beside, and on to the disk, before the first byte changes. A record
/// that counts in that file is therefore that of an interrupted change, which is taken back. It is bound to the files
/// by their content: a stretch that is neither old nor new belongs to somebody else's file, which is left as it is.
///
/// The file keeps its length between changes: a disk writes over what is there in a fraction of the time that it takes
/// to let a file grow.
///
/// Locking is the caller's: nobody else may write the files, or use the journal, during commit() and recover(), and
/// from the first stash() on. Memory: a few MiB, however much changes. Flushes: one for the journal, one for each
/// changed file; one more for the folder when the journal is first used.
class Journal
{
public:
    Journal(FileSystem &files, const QString &path);

    struct Part {
        File &file;
        FileChanges changes;
    };
    /// Throws StorageError, and whatever the changes' content throws: then nothing has changed, or isInterrupted()
    /// tells that not even that is sure yet.
    void commit(std::span<const Part> parts);

    enum class Found {
        Nothing, ///< no journal, or one that was never finished: no file was touched
        TakenBack,
        Complete, ///< everything had reached the disk, only the end of the journal was missing
        Foreign ///< not of these files; it was given another name
    };
    /// Looks for an interrupted change and ends it. `fileOf` gives the file, open for writing, that was committed under
    /// the name in these changes, whose content is not known; nullptr if there is none.
    Found recover(const std::function<File *(const FileChanges &changes)> &fileOf);

    /// Keeps bytes for the next commit outside of memory, `position` counting from 0; without a flush.
    void stash(qint64 position, Bytes bytes);
    QByteArray stashed(qint64 position, qint64 size) const;
    /// Gives the room back; commit() does it, too.
    void dropStash() noexcept;

    bool isThere() const { return m_files.exists(m_path); }
    /// Whether a record counts, which only an interrupted change leaves.
    bool isHot() const;
    /// Whether a failed commit could not be taken back: the files must not be used before recover() has done it.
    bool isInterrupted() const { return m_interrupted; }
    /// Removes the file unless it is hot. Where that is not allowed it stays, and does no harm.
    void remove();

private:
    File &file();
    void forget();
    void shorten();
    void undo(std::span<const Part> parts);
    void setAside();

    FileSystem &m_files;
    QString m_path;
    std::unique_ptr<File> m_file{}; // once it was needed
    bool m_interrupted = false;
    qint64 m_stashEnd = 0; // 0: nothing is stashed
    qint64 m_end = 0; // as far as it was written since it was last short
};

} // namespace storage
