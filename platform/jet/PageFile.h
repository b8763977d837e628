#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/jet/FileHeader.h"
#include "platform/jet/LockFile.h"
#include "platform/jet/PageCache.h"
#include "platform/jet/PageStore.h"
#include "platform/storage/FileSystem.h"
#include "platform/storage/Journal.h"
#include "platform/storage/Storage.h"
#include "platform/storage/StorageError.h"

namespace jet {

/// A page was read that another program has written after those read before it: what they say together means nothing.
/// Whoever can begin anew, after refresh(), catches it.
class PagesChanged final : public storage::StorageError
{
public:
    explicit PagesChanged(const QString &path);
};

/// Whether a write scope's pages may be referred to all the time, or only within the scopes inside it: then those of
/// the outermost scope need not stay in memory.
enum class PageUse { Referenced, ByInnerScopes };

/// The pages of an open Jet file: decrypted, cached, written at the commit of a scope, whole or not at all.
///
/// Owns     the file handle, and our part in the lock file beside it.
/// Errors   StorageError: Missing, NotThisFormat, WrongPassword, Locked, Damaged, ReadOnly, FolderReadOnly,
///          NoPermission, DiskFull, FileFull, ConnectionLost, InputOutput.
/// Threads  only the one that opened it.
class PageFile final : public PageStore
{
public:
    /// A file that may not be written is opened for reading whatever the request says. What an interrupted commit has
    /// left is taken back first. `files` must outlive the object.
    PageFile(storage::FileSystem &files, const storage::OpenRequest &request);
    ~PageFile() override;
    /// Makes a new file that consists of its header; its content follows in a write scope. AlreadyExists if there is
    /// a file of that name.
    static std::unique_ptr<PageFile> create(storage::FileSystem &files, const QString &path, const FileHeader &header);

    /// The endings of the files beside a database that is being written.
    static QStringList besides();

    QString path() const { return m_path; }
    const FileHeader &header() const { return m_header; }
    bool readOnly() const { return m_whyReadOnly.has_value(); }
    /// Throws why the file cannot be written, if so: ReadOnly, FolderReadOnly, NoPermission.
    void requireWritable() const;
    /// Changes whenever pages differ from what was read before although this object has not written them: after an
    /// undone scope, or when another program has written.
    std::uint64_t generation() const { return m_generation; }
    /// Looks whether another program has written to the file since the last look, and forgets what was read if so.
    /// Call it where a new piece of work begins. Waits while somebody writes.
    void refresh();

    bool isJet4() const override { return m_header.jet4; }
    std::size_t pageSize() const override { return m_pageSize; }
    PageNo pageCount() const override { return m_pageCount; }
    PagePtr read(PageNo number) override;
    Page &modify(PageNo number) override;
    PageNo allocate() override;
    void release(PageNo number) override;
    bool isSound(PageNo number) const override { return number < m_sound.size() && m_sound[number]; }
    void noteSound(PageNo number) override;
    /// Adds a zeroed page at the end of the file; the map of free pages is the caller's matter.
    PageNo append();

private:
    friend class PageScope;
    /// One write scope: its copies of pages, and the file's length when it began.
    struct Level {
        std::unordered_map<PageNo, std::shared_ptr<Page>> pages;
        PageNo pageCount;
        PageUse use;
    };

    void joinUsers();
    bool isAsLastSeen() const;
    static bool isMarked(const QByteArray &commitArea);
    void settle();
    bool trySettle();
    void recover(storage::File &file);
    void look(QByteArray commitArea);
    void requireScope() const;
    void begin(PageUse use);
    void commit();
    void rollback();
    void stashIfMany();
    void keepInCache(const Level &level);
    std::optional<std::uint32_t> stashSlot(PageNo number) const;
    qint64 positionOf(PageNo number) const { return static_cast<qint64>(m_pageSize) * number; }
    void commitToFile(const Level &level);
    storage::FileChanges changesOf(const Level &level) const;
    std::vector<PageNo> changedPages(const Level &level) const;
    QByteArray newContent(const Level &level, PageNo number) const;
    std::shared_ptr<Page> findChanged(PageNo number) const;
    void cipher(PageNo number, storage::MutableBytes page) const;
    QByteArray encrypted(PageNo number, const Page &page) const;
    QByteArray readCommitArea() const;
    void checkCommitArea() const;

    storage::FileSystem &m_files;
    QString m_path;
    std::unique_ptr<storage::File> m_file{};
    std::unique_ptr<LockFile> m_lockFile{}; // none where a reader may not make one
    storage::Journal m_journal;
    std::optional<storage::StorageError> m_whyReadOnly{};
    FileHeader m_header{};
    std::size_t m_pageSize = 0;
    PageNo m_pageCount = 0;
    std::uint64_t m_generation = 0;
    QByteArray m_commitArea{}; // as last seen
    std::optional<PageCache> m_cache{};
    std::vector<bool> m_sound{}; // by page number
    std::vector<Level> m_levels{}; // nested scopes, the innermost last
    std::vector<std::uint32_t> m_stashSlots{}; // by page: of the outermost scope's pages, from 1; 0: in no slot
    std::uint32_t m_stashed = 0; // how many slots there are
};

/// Groups changes of pages: at its end they are undone unless committed. May be nested; the outermost commit writes.
class PageScope
{
public:
    explicit PageScope(PageFile &file, PageUse use = PageUse::Referenced);
    ~PageScope();
    PageScope(const PageScope &) = delete;
    PageScope &operator=(const PageScope &) = delete;

    void commit();

private:
    PageFile &m_file;
    bool m_open = true;
};

/// Runs `work`, which only reads, again as long as another program's writing gets in between.
template <typename Work> auto unhurried(PageFile &file, const Work &work)
{
    constexpr int attempts = 100;
    for (int attempt = 1;; ++attempt) {
        try {
            return work();
        } catch (const PagesChanged &) {
            if (attempt == attempts)
                throw;
            file.refresh();
        }
    }
}

} // namespace jet
