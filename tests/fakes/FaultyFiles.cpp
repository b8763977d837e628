// Files that fail when they are told to, and what a disk may hold after a power failure.
#include "tests/fakes/FaultyFiles.h"

#include <random>
#include <stdexcept>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::StorageError;
using Kind = Recording::Kind;

FolderContent readFolder(const QString &folder)
{
    FolderContent content;
    const QDir dir(folder);
    for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("file of a test not readable");
        content[name] = file.readAll();
    }
    return content;
}

void writeFolder(const QString &folder, const FolderContent &content)
{
    const QDir dir(folder);
    for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden))
        QFile::remove(dir.filePath(name));
    for (const auto &[name, bytes] : content) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("file of a test not written");
    }
}

Recording::Recording(const QString &folder)
{
    for (const auto &[name, bytes] : readFolder(folder)) {
        m_firstNames[name] = static_cast<int>(m_firstContent.size());
        m_firstContent.push_back(bytes);
    }
    m_names = m_firstNames;
}

int Recording::fileAt(const QString &name) const
{
    const auto found = m_names.find(name);
    if (found == m_names.end())
        throw std::logic_error("a file that the recording does not know");
    return found->second;
}

void Recording::add(const Operation &operation)
{
    if (operation.kind == Kind::Create) {
        m_names[operation.name] = operation.file;
        m_firstContent.emplace_back();
    } else if (operation.kind == Kind::Remove) {
        m_names.erase(operation.name);
    } else if (operation.kind == Kind::Rename) {
        m_names[operation.newName] = m_names.at(operation.name);
        m_names.erase(operation.name);
    }
    m_operations.push_back(operation);
}

namespace {

constexpr qint64 sector = 512;

void place(QByteArray &content, qint64 position, const QByteArray &bytes)
{
    if (content.size() < position + bytes.size())
        content.append(position + bytes.size() - content.size(), '\0');
    content.replace(position, bytes.size(), bytes);
}

/// Which of the operations that were not flushed have reached the disk.
struct Luck {
    bool isAll() const { return seed == 1 || seed == 2; }
    bool happens() { return isAll() || (seed != 0 && random() % 2 == 0); }
    std::size_t upTo(std::size_t count) { return seed == 0 ? 0 : isAll() ? count : random() % (count + 1); }

    unsigned seed;
    std::mt19937 random{seed};
};

void change(QByteArray &content, const Recording::Operation &operation, bool flushed, Luck &luck)
{
    if (operation.kind == Kind::Resize && (flushed || luck.happens()))
        content.resize(operation.position, '\0');
    if (operation.kind != Kind::Write)
        return;
    if (flushed)
        return place(content, operation.position, operation.bytes);
    // Of a write all, nothing, its beginning or any sectors.
    const std::size_t kept = luck.upTo(3);
    const auto beginning = sector * static_cast<qsizetype>(luck.upTo(std::size_t(operation.bytes.size() / sector)));
    for (qsizetype at = 0; at < operation.bytes.size();) {
        const qint64 position = operation.position + at;
        const qsizetype size = std::min(sector - position % sector, operation.bytes.size() - at);
        if (kept == 3 || (kept == 2 && luck.happens()) || (kept == 1 && at < beginning))
            place(content, position, operation.bytes.mid(at, size));
        at += size;
    }
}

} // namespace

FolderContent Recording::afterPowerLoss(std::size_t operations, unsigned seed) const
{
    Luck luck{seed};
    std::map<int, std::size_t> flushedTo; // by file; of the folder: -1
    std::vector<const Operation *> names;
    std::size_t namesFlushed = 0;
    for (std::size_t i = 0; i < operations; ++i) {
        const Operation &operation = m_operations[i];
        if (operation.kind == Kind::Sync)
            flushedTo[operation.file] = i;
        else if (operation.kind == Kind::SyncFolder)
            namesFlushed = names.size();
        else if (operation.kind != Kind::Write && operation.kind != Kind::Resize)
            names.push_back(&operation);
    }
    std::vector<QByteArray> contents = m_firstContent;
    for (std::size_t i = 0; i < operations; ++i) {
        Operation operation = m_operations[i];
        if (i + 1 == operations && luck.seed == 2)
            operation.bytes.truncate(operation.bytes.size() / 2 / sector * sector);
        if (operation.kind == Kind::Write || operation.kind == Kind::Resize)
            change(contents[std::size_t(operation.file)], operation, i < flushedTo[operation.file], luck);
    }
    auto present = m_firstNames;
    names.resize(namesFlushed + luck.upTo(names.size() - namesFlushed));
    for (const Operation *operation : names) {
        if (operation->kind == Kind::Rename)
            present[operation->newName] = operation->file;
        if (operation->kind == Kind::Create)
            present[operation->name] = operation->file;
        else
            present.erase(operation->name);
    }
    FolderContent folder;
    for (const auto &[name, file] : present)
        folder[name] = contents[std::size_t(file)];
    return folder;
}

class FaultyFile final : public storage::File
{
public:
    FaultyFile(FaultyFiles &files, std::unique_ptr<storage::File> file, int number)
        : m_files(files)
        , m_file(std::move(file))
        , m_number(number)
    { }

    QString path() const override { return m_file->path(); }
    bool writable() const override { return m_file->writable(); }
    void unlock(storage::ByteRange range) noexcept override { m_file->unlock(range); }

    qint64 size() const override { return looked().size(); }
    using File::read;
    void read(qint64 position, storage::MutableBytes into) const override { looked().read(position, into); }
    bool tryLock(storage::ByteRange range, storage::LockKind kind) override { return looked().tryLock(range, kind); }
    bool isStillThere() const override { return looked().isStillThere(); }

    void write(qint64 position, Bytes bytes) override
    {
        try {
            m_files.count(Fault::Of::Changes, path());
        } catch (const StorageError &) {
            if (m_files.m_fault.partly && m_files.counted() == m_files.m_fault.at)
                writeNow(position, bytes.first(bytes.size() / 2 / sector * sector));
            throw;
        }
        writeNow(position, bytes);
    }
    void resize(qint64 size) override
    {
        m_files.count(Fault::Of::Changes, path());
        m_file->resize(size);
        m_files.note({.kind = Kind::Resize, .file = m_number, .position = size});
    }
    void sync() override
    {
        m_files.count(Fault::Of::Changes, path());
        m_files.note({.kind = Kind::Sync, .file = m_number});
    }

private:
    storage::File &looked() const
    {
        m_files.count(Fault::Of::Readings, path());
        return *m_file;
    }
    void writeNow(qint64 position, Bytes bytes)
    {
        m_file->write(position, bytes);
        const QByteArray copy(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
        m_files.note({.kind = Kind::Write, .file = m_number, .position = position, .bytes = copy});
    }

    FaultyFiles &m_files;
    std::unique_ptr<storage::File> m_file;
    int m_number;
};

void FaultyFiles::start(const Fault &fault)
{
    m_fault = fault;
    m_changes = 0;
    m_readings = 0;
    m_struck = false;
}

int FaultyFiles::counted() const
{
    return (m_fault.of == Fault::Of::Readings ? 0 : m_changes) + (m_fault.of == Fault::Of::Changes ? 0 : m_readings);
}

void FaultyFiles::count(Fault::Of of, const QString &path, ErrorOf errorOf) const
{
    ++(of == Fault::Of::Changes ? m_changes : m_readings);
    const bool concerned = m_fault.at != 0 && (m_fault.of == Fault::Of::All || m_fault.of == of);
    const int now = counted();
    const bool strikes = concerned && (now == m_fault.at || (now > m_fault.at && m_fault.lasting));
    if (!strikes && !(m_struck && m_fault.kill))
        return;
    m_struck = true;
    if (m_fault.error == 0)
        throw StorageError(StorageError::Damaged, u"%1 ist abgeschnitten"_s.arg(path));
    throw errorOf(m_fault.error, path, u"Zugriff"_s);
}

Recording &FaultyFiles::record(const QString &folder)
{
    m_recording.reset(new Recording(folder));
    return *m_recording;
}

void FaultyFiles::note(const Recording::Operation &operation)
{
    if (m_recording)
        m_recording->add(operation);
}

std::unique_ptr<storage::File> FaultyFiles::open(const QString &path, storage::Access access)
{
    count(Fault::Of::Readings, path);
    auto file = storage::systemFiles().open(path, access);
    const int number = m_recording ? m_recording->fileAt(QFileInfo(path).fileName()) : 0;
    return std::make_unique<FaultyFile>(*this, std::move(file), number);
}

std::unique_ptr<storage::File> FaultyFiles::create(const QString &path)
{
    count(Fault::Of::Changes, path, storage::nameError);
    auto file = storage::systemFiles().create(path);
    const int number = m_recording ? static_cast<int>(m_recording->m_firstContent.size()) : 0;
    note({.kind = Kind::Create, .file = number, .name = QFileInfo(path).fileName()});
    return std::make_unique<FaultyFile>(*this, std::move(file), number);
}

bool FaultyFiles::exists(const QString &path) const
{
    count(Fault::Of::Readings, path);
    return storage::systemFiles().exists(path);
}

void FaultyFiles::remove(const QString &path)
{
    count(Fault::Of::Changes, path, storage::nameError);
    storage::systemFiles().remove(path);
    note({.kind = Kind::Remove, .name = QFileInfo(path).fileName()});
}

void FaultyFiles::rename(const QString &from, const QString &to)
{
    count(Fault::Of::Changes, to, storage::nameError);
    const QString name = QFileInfo(from).fileName();
    const int number = m_recording ? m_recording->fileAt(name) : 0;
    storage::systemFiles().rename(from, to);
    note({.kind = Kind::Rename, .file = number, .name = name, .newName = QFileInfo(to).fileName()});
}

void FaultyFiles::syncFolderOf(const QString &path)
{
    count(Fault::Of::Changes, QFileInfo(path).path());
    note({.kind = Kind::SyncFolder});
}
