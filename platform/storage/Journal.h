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

/// New content for a stretch of a file.
struct Change {
    qint64 position = 0;
    QByteArray before{}; ///< what stands there; shorter than `after` where the stretch reaches beyond the file's end
    QByteArray after{};
};

/// All that is to change in one file, in the order of writing.
struct FileChanges {
    QString name{}; ///< by which the file is found again, see Journal::recover
    qint64 oldSize = 0;
    qint64 newSize = 0; ///< not below oldSize
    std::vector<Change> changes{};
    /// Bytes that stand in the file while it is being changed, over a stretch that one of the changes covers.
    std::optional<Change> mark{};
    /// Others may write other stretches of the file after a crash, and append to it: its length counts only where it
    /// is to change, and what was appended must be ours to be taken back.
    bool shared = false;
};

/// Changes files as a whole or not at all, also if the program is killed or the power fails half-way.
///
/// What is about to be overwritten goes to a file beside, and on to the disk, before the first byte changes. A journal
/// that is found with content is therefore that of an interrupted change, which is taken back. It is bound to the files
/// by their content: a stretch that is neither old nor new belongs to somebody else's file, which is left as it is.
///
/// Locking is the caller's: nobody else may write the files, or use the journal, during commit() and recover().
/// Flushes: one for the journal, one for each changed file; one more for the folder when the journal is first used.
class Journal
{
public:
    Journal(FileSystem &files, const QString &path);

    struct Part {
        File &file;
        FileChanges changes;
    };
    /// Throws StorageError: then nothing has changed, or isInterrupted() tells that not even that is sure yet.
    void commit(std::span<const Part> parts);

    enum class Found {
        Nothing, ///< no journal, or one that was never finished: no file was touched
        TakenBack,
        Complete, ///< everything had reached the disk, only the end of the journal was missing
        Foreign ///< not of these files; it was given another name
    };
    /// Looks for an interrupted change and ends it. `fileOf` gives the file, open for writing, that was committed under
    /// the name in these changes; nullptr if there is none.
    Found recover(const std::function<File *(const FileChanges &changes)> &fileOf);

    bool isThere() const { return m_files.exists(m_path); }
    /// Whether there is a journal with content, which only an interrupted change leaves.
    bool isHot() const;
    /// Whether a failed commit could not be taken back: the files must not be used before recover() has done it.
    bool isInterrupted() const { return m_interrupted; }
    /// Removes the file unless it has content. Where that is not allowed it stays, and does no harm.
    void remove();

    /// The content of a journal file; and back, with nothing for what is not complete.
    static QByteArray encode(std::span<const FileChanges> files);
    static std::optional<std::vector<FileChanges>> decode(const QByteArray &content);

private:
    File &file();
    void forget();

    FileSystem &m_files;
    QString m_path;
    std::unique_ptr<File> m_file{}; // once it was needed
    bool m_interrupted = false;
};

} // namespace storage
