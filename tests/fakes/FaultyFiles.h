#pragma once

#include <cerrno>
#include <map>
#include <memory>
#include <vector>

#include "platform/storage/FileSystem.h"
#include "platform/storage/StorageError.h"

/// The files of a folder: name and content.
using FolderContent = std::map<QString, QByteArray>;

FolderContent readFolder(const QString &folder);
/// Leaves these files in the folder, and no others.
void writeFolder(const QString &folder, const FolderContent &content);

/// What goes wrong, and when.
struct Fault {
    enum class Of { Changes, Readings, All };

    Of of = Of::Changes;
    int at = 0; ///< the operation, counted from 1; 0: none
    int error = EIO; ///< of the operating system; 0 lets a read meet the end of the file
    bool lasting = false; ///< all operations of that kind fail from then on
    bool partly = false; ///< a write writes the sectors of its first half
    bool kill = false; ///< it and everything after it fails, as if the program had ended
};

/// Everything that was changed through files, in its order.
class Recording
{
public:
    enum class Kind { Write, Resize, Sync, Create, Remove, Rename, SyncFolder };
    struct Operation {
        Kind kind;
        int file = 0; ///< by which the operations of one file are known, whatever its name
        QString name{}; ///< of a file that is made, removed or renamed
        QString newName{};
        qint64 position = 0; ///< or the new length
        QByteArray bytes{};
    };

    std::size_t size() const { return m_operations.size(); }
    const std::vector<Operation> &operations() const { return m_operations; }
    /// A folder as the disk may have it when the power fails after that many operations: what was not flushed has
    /// happened in part (by sectors of 512 bytes), names up to some point. Each seed gives another outcome; 0 is that
    /// nothing of it has happened, 1 that all has, 2 that all has but half of the last write.
    FolderContent afterPowerLoss(std::size_t operations, unsigned seed) const;

private:
    friend class FaultyFiles;
    explicit Recording(const QString &folder);
    int fileAt(const QString &name) const;
    void add(const Operation &operation);

    std::map<QString, int> m_names{}; // now
    std::map<QString, int> m_firstNames{};
    std::vector<QByteArray> m_firstContent{}; // by file
    std::vector<Operation> m_operations{};
};

/// The machine's files, with faults. Counts the operations from start() on. Must outlive the files it opened.
///
/// Changes   write, resize, sync, create, remove, rename, syncFolderOf
/// Readings  open, read, size, tryLock, isStillThere, exists
class FaultyFiles final : public storage::FileSystem
{
public:
    /// Begins to count anew; whatever went wrong before is over.
    void start(const Fault &fault = {});
    /// Whether the fault has happened.
    bool hasStruck() const { return m_struck; }
    int readings() const { return m_readings; }
    /// Begins to write down what changes in a folder.
    Recording &record(const QString &folder);

    std::unique_ptr<storage::File> open(const QString &path, storage::Access access) override;
    std::unique_ptr<storage::File> create(const QString &path) override;
    bool exists(const QString &path) const override;
    void remove(const QString &path) override;
    void rename(const QString &from, const QString &to) override;
    void syncFolderOf(const QString &path) override;

private:
    friend class FaultyFile;
    using ErrorOf = storage::StorageError (*)(int, const QString &, const QString &);
    /// Counts an operation; throws if it is to fail.
    void count(Fault::Of of, const QString &path, ErrorOf errorOf = storage::fileError) const;
    int counted() const;
    void note(const Recording::Operation &operation);

    Fault m_fault{};
    mutable int m_changes = 0;
    mutable int m_readings = 0;
    mutable bool m_struck = false;
    std::unique_ptr<Recording> m_recording{};
};
