// New files: made without flushes, flushed once, renamed.
#include "platform/storage/NewFile.h"

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

class UnflushedFile final : public File
{
public:
    explicit UnflushedFile(std::unique_ptr<File> file)
        : m_file(std::move(file))
    { }

    QString path() const override { return m_file->path(); }
    bool writable() const override { return m_file->writable(); }
    qint64 size() const override { return m_file->size(); }
    using File::read;
    void read(qint64 position, MutableBytes into) const override { m_file->read(position, into); }
    void write(qint64 position, Bytes bytes) override { m_file->write(position, bytes); }
    void resize(qint64 size) override { m_file->resize(size); }
    void sync() override { }
    bool tryLock(ByteRange range, LockKind kind) override { return m_file->tryLock(range, kind); }
    void unlock(ByteRange range) noexcept override { m_file->unlock(range); }
    bool isStillThere() const override { return m_file->isStillThere(); }

private:
    std::unique_ptr<File> m_file;
};

} // namespace

std::unique_ptr<File> NewFile::Unflushed::open(const QString &path, Access access)
{
    return std::make_unique<UnflushedFile>(m_files.open(path, access));
}

std::unique_ptr<File> NewFile::Unflushed::create(const QString &path)
{
    return std::make_unique<UnflushedFile>(m_files.create(path));
}

NewFile::NewFile(FileSystem &files, const QString &path, const QStringList &besides)
    : m_files(files)
    , m_unflushed(files)
    , m_finalPath(path)
    , m_path(path + u".neu"_s)
    , m_besides(besides)
{
    if (m_files.exists(path))
        throw StorageError(StorageError::AlreadyExists, u"%1 gibt es schon."_s.arg(path));
    clear();
}

NewFile::~NewFile()
{
    if (m_kept)
        return;
    try {
        clear();
    } catch (const StorageError &) {
        // What stays behind is removed next time; the failure before is the one to tell.
    }
}

void NewFile::clear()
{
    for (const QString &ending : m_besides + QStringList{QString()}) {
        if (m_files.exists(m_path + ending))
            m_files.remove(m_path + ending);
    }
}

void NewFile::finish()
{
    m_files.open(m_path, Access::ReadWrite)->sync();
    m_files.rename(m_path, m_finalPath);
    m_path = m_finalPath;
    m_files.syncFolderOf(m_path);
}

} // namespace storage
