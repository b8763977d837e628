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
class Luck
{
public:
    explicit Luck(unsigned seed)
        : m_seed(seed)
        , m_random(seed)
    { }
    bool halvesTheLast() const { return m_seed == 2; }
    bool happens() { return isAll() || (m_seed != 0 && m_random() % 2 == 0); }
    std::size_t upTo(std::size_t count) { return m_seed == 0 ? 0 : isAll() ? count : m_random() % (count + 1); }

private:
    bool isAll() const { return m_seed == 1 || m_seed == 2; }

    unsigned m_seed;
    std::mt19937 m_random;
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
    const qsizetype beginning
        = static_cast<qsizetype>(luck.upTo(std::size_t(operation.bytes.size() / sector))) * sector;
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
    Luck luck(seed);
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
        if (i + 1 == operations && luck.halvesTheLast())
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

    qint64 size() const override
    {
        m_files.read(path(), u"Ermitteln der Länge"_s);
        return m_file->size();
    }

    using File::read;
    void read(qint64 position, storage::MutableBytes into) const override
    {
        m_files.read(path(), u"Lesen"_s);
        m_file->read(position, into);
    }

    void write(qint64 position, Bytes bytes) override
    {
        try {
            m_files.change(path(), u"Schreiben"_s);
        } catch (const StorageError &) {
            if (m_files.m_fault.partly && m_files.count(m_files.m_fault.of) == m_files.m_fault.at)
                writeNow(position, bytes.first(bytes.size() / 2 / sector * sector));
            throw;
        }
        writeNow(position, bytes);
    }

    void resize(qint64 size) override
    {
        m_files.change(path(), u"Ändern der Länge"_s);
        m_file->resize(size);
        m_files.note({.kind = Kind::Resize, .file = m_number, .position = size});
    }

    void sync() override
    {
        m_files.change(path(), u"Schreiben auf den Datenträger"_s);
        m_files.note({.kind = Kind::Sync, .file = m_number});
    }

    bool tryLock(storage::ByteRange range, storage::LockKind kind) override
    {
        m_files.read(path(), u"Sperren"_s);
        return m_file->tryLock(range, kind);
    }
    void unlock(storage::ByteRange range) noexcept override { m_file->unlock(range); }

    bool isStillThere() const override
    {
        m_files.read(path(), u"Nachsehen"_s);
        return m_file->isStillThere();
    }

private:
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

FaultyFiles::FaultyFiles(storage::FileSystem &files)
    : m_files(files)
{ }

FaultyFiles::~FaultyFiles() = default;

void FaultyFiles::start(const Fault &fault)
{
    m_fault = fault;
    m_changes = 0;
    m_readings = 0;
    m_struck = false;
}

int FaultyFiles::count(Fault::Of of) const
{
    return (of == Fault::Of::Readings ? 0 : m_changes) + (of == Fault::Of::Changes ? 0 : m_readings);
}

Recording &FaultyFiles::record(const QString &folder)
{
    m_recording.reset(new Recording(folder));
    return *m_recording;
}

/// Counts an operation; whether it is to fail.
bool FaultyFiles::strikes(Fault::Of of) const
{
    ++(of == Fault::Of::Changes ? m_changes : m_readings);
    if (m_struck && m_fault.kill)
        return true;
    if (m_fault.at == 0 || (m_fault.of != Fault::Of::All && m_fault.of != of))
        return false;
    const int now = count(m_fault.of);
    if (now < m_fault.at || (now > m_fault.at && !m_fault.lasting))
        return false;
    m_struck = true;
    return true;
}

void FaultyFiles::read(const QString &path, const QString &what) const
{
    if (!strikes(Fault::Of::Readings))
        return;
    if (m_fault.error == 0)
        throw StorageError(StorageError::Damaged, u"%1 ist abgeschnitten"_s.arg(path));
    throw storage::fileError(m_fault.error, path, what);
}

void FaultyFiles::change(const QString &path, const QString &what)
{
    if (strikes(Fault::Of::Changes))
        throw storage::fileError(m_fault.error, path, what);
}

void FaultyFiles::changeName(const QString &path, const QString &what)
{
    if (strikes(Fault::Of::Changes))
        throw storage::nameError(m_fault.error, path, what);
}

void FaultyFiles::note(const Recording::Operation &operation)
{
    if (m_recording)
        m_recording->add(operation);
}

std::unique_ptr<storage::File> FaultyFiles::open(const QString &path, storage::Access access)
{
    read(path, u"Öffnen"_s);
    auto file = m_files.open(path, access);
    const int number = m_recording ? m_recording->fileAt(QFileInfo(path).fileName()) : 0;
    return std::make_unique<FaultyFile>(*this, std::move(file), number);
}

std::unique_ptr<storage::File> FaultyFiles::create(const QString &path)
{
    changeName(path, u"Anlegen"_s);
    auto file = m_files.create(path);
    const int number = m_recording ? static_cast<int>(m_recording->m_firstContent.size()) : 0;
    note({.kind = Kind::Create, .file = number, .name = QFileInfo(path).fileName()});
    return std::make_unique<FaultyFile>(*this, std::move(file), number);
}

bool FaultyFiles::exists(const QString &path) const
{
    read(path, u"Nachsehen"_s);
    return m_files.exists(path);
}

void FaultyFiles::remove(const QString &path)
{
    changeName(path, u"Löschen"_s);
    m_files.remove(path);
    note({.kind = Kind::Remove, .name = QFileInfo(path).fileName()});
}

void FaultyFiles::rename(const QString &from, const QString &to)
{
    changeName(to, u"Umbenennen"_s);
    const QString name = QFileInfo(from).fileName();
    const int number = m_recording ? m_recording->fileAt(name) : 0;
    m_files.rename(from, to);
    note({.kind = Kind::Rename, .file = number, .name = name, .newName = QFileInfo(to).fileName()});
}

void FaultyFiles::syncFolderOf(const QString &path)
{
    change(QFileInfo(path).path(), u"Schreiben auf den Datenträger"_s);
    note({.kind = Kind::SyncFolder});
}
