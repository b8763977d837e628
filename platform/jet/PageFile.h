#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <QByteArray>
#include <QFile>
#include <QString>

#include "platform/jet/FileHeader.h"
#include "platform/jet/FileLock.h"
#include "platform/jet/PageCache.h"
#include "platform/jet/PageStore.h"
#include "platform/storage/Bytes.h"
#include "platform/storage/Storage.h"

namespace jet {

/// The pages of an open Jet file: decrypted, cached, written at the commit of a scope.
///
/// Owns     the file handle.
/// Errors   StorageError: Missing, NotThisFormat, WrongPassword, Locked, Damaged, ReadOnly, DiskFull, InputOutput.
/// Threads  only the one that opened it.
class PageFile final : public PageStore
{
public:
    /// A file that may not be written is opened for reading whatever the request says.
    explicit PageFile(const storage::OpenRequest &request);
    /// Makes a new file that consists of its header; its content follows in a write scope. AlreadyExists if there is
    /// a file of that name.
    static std::unique_ptr<PageFile> create(const QString &path, const FileHeader &header);

    QString path() const { return m_file.fileName(); }
    const FileHeader &header() const { return m_header; }
    bool readOnly() const { return m_readOnly; }
    /// Changes whenever pages differ from what was read before although this object has not written them: after an
    /// undone scope, or when another program has written.
    std::uint64_t generation() const { return m_generation; }
    /// Looks whether another program has written to the file since the last look, and forgets what was read if so.
    /// Call it where a new piece of work begins.
    void refresh();

    bool isJet4() const override { return m_header.jet4; }
    std::size_t pageSize() const override { return m_pageSize; }
    PageNo pageCount() const override { return m_pageCount; }
    PagePtr read(PageNo number) override;
    Page &modify(PageNo number) override;
    PageNo allocate() override;
    void release(PageNo number) override;
    /// Adds a zeroed page at the end of the file; the map of free pages is the caller's matter.
    PageNo append();

private:
    friend class PageScope;
    /// One write scope: its copies of pages, and the file's length when it began.
    struct Level {
        std::unordered_map<PageNo, std::shared_ptr<Page>> pages;
        PageNo pageCount;
    };

    void openFile(bool readOnly);
    void requireScope() const;
    void begin();
    void commit();
    void rollback();
    void commitToFile(const Level &level);
    void overwrite(const std::vector<PageNo> &numbers, const Level &level);
    std::shared_ptr<Page> findChanged(PageNo number) const;
    void cipher(PageNo number, storage::MutableBytes page) const;
    QByteArray readRaw(qint64 at, qint64 size);
    void writeRaw(qint64 at, const char *bytes, qint64 size);
    void writePage(PageNo number, const Page &page);
    QByteArray readCommitArea();
    void checkCommitArea() const;

    QFile m_file;
    FileHeader m_header{};
    std::size_t m_pageSize = 0;
    PageNo m_pageCount = 0;
    bool m_readOnly = true;
    std::uint64_t m_generation = 0;
    QByteArray m_commitArea{}; // as last seen
    std::optional<PageCache> m_cache{};
    std::vector<Level> m_levels{}; // nested scopes, the innermost last
    std::optional<FileLock> m_lock{}; // while a scope is open
};

/// Groups changes of pages: at its end they are undone unless committed. May be nested; the outermost commit writes.
class PageScope
{
public:
    explicit PageScope(PageFile &file);
    ~PageScope();
    PageScope(const PageScope &) = delete;
    PageScope &operator=(const PageScope &) = delete;

    void commit();

private:
    PageFile &m_file;
    bool m_open = true;
};

} // namespace jet
