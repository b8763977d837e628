// The folder as a database: its tables by name, made and dropped.
#include "platform/dbf/Database.h"

#include <QDir>
#include <QRegularExpression>

#include "platform/storage/LocalPath.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

// What a table's files are called while it is made or dropped: a crash leaves no half table behind.
const QString unfinished = u".neu"_s;
const QString dropped = u".weg"_s;

} // namespace

Database::Database(storage::FileSystem &files, const QString &folder, bool readOnly)
    : m_files(files)
    , m_folder(folder)
    , m_state{{files, folder}, readOnly}
{ }

QStringList Database::tableNames() const
{
    if (!QFileInfo(m_folder).isReadable()) {
        throw StorageError(m_files.exists(m_folder) ? StorageError::NoPermission : StorageError::Missing,
                           u"Der Ordner %1 lässt sich nicht lesen"_s.arg(m_folder));
    }
    QStringList names;
    const QFileInfoList files = QDir(m_folder).entryInfoList({u"*.dbf"_s}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        names += file.completeBaseName();
    return names;
}

QString Database::pathOf(const QString &table, const QString &suffix) const
{
    return storage::existingPath(QDir(m_folder).filePath(table + suffix));
}

Table *Database::find(const QString &name)
{
    m_state.journal.settle();
    const auto known = m_tables.find(name.toUpper());
    if (known != m_tables.end())
        return known->second.get();
    // A name is not a path out of the folder.
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\'))
        return nullptr;
    const QString path = pathOf(name, u".dbf"_s);
    if (!m_files.exists(path) || QFileInfo(path).isDir())
        return nullptr;
    auto table = std::make_unique<Table>(path, m_state);
    return m_tables.emplace(name.toUpper(), std::move(table)).first->second.get();
}

storage::Table *Database::table(const QString &name)
{
    return find(name);
}

int Database::compareTexts(QStringView left, QStringView right) const
{
    return left.compare(right, Qt::CaseSensitive);
}

std::unique_ptr<storage::WriteScope> Database::beginWrite()
{
    m_state.journal.settle();
    return std::make_unique<Transaction>(m_state);
}

void Database::requireWritable() const
{
    if (m_state.readOnly)
        throw StorageError(StorageError::ReadOnly, u"%1 wurde nur zum Lesen geöffnet"_s.arg(m_folder));
}

void Database::requireChangeable() const
{
    requireWritable();
    if (m_state.running) {
        throw StorageError(
            StorageError::Unsupported,
            u"%1: Tabellen werden nicht innerhalb einer Transaktion angelegt oder gelöscht"_s.arg(m_folder));
    }
}

void Database::createTable(const storage::TableSchema &schema)
{
    requireChangeable();
    static const QRegularExpression validName(u"^[A-Za-z0-9_-]{1,60}$"_s);
    if (!validName.match(schema.name).hasMatch()) {
        throw StorageError(
            StorageError::Unsupported,
            u"„%1“ ist kein Tabellenname: erlaubt sind Buchstaben, Ziffern, Strich und Unterstrich"_s.arg(schema.name),
            schema.name);
    }
    const QByteArray content = newTable(schema);
    const FolderJournal::Turn turn(m_state.journal);
    const QString name = schema.name.toUpper();
    if (m_files.exists(pathOf(name, u".DBF"_s))) {
        throw StorageError(StorageError::AlreadyExists, u"Die Tabelle %1 gibt es schon"_s.arg(schema.name),
                           schema.name);
    }
    removeLeavings(name);
    try {
        makeFiles(name, content, needsMemoFile(schema));
    } catch (const StorageError &) {
        try {
            removeLeavings(name);
        } catch (const StorageError &) {
            // The first failure is the one to tell; the leavings are in nobody's way.
        }
        throw;
    }
}

/// The memo file gets its name first: alone it is no table yet.
void Database::makeFiles(const QString &table, const QByteArray &content, bool withMemos)
{
    const QString path = pathOf(table, u".DBF"_s);
    const QString memoPath = pathOf(table, u".FPT"_s);
    if (withMemos)
        makeFile(memoPath + unfinished, MemoFile::newFile());
    makeFile(path + unfinished, content);
    if (withMemos)
        m_files.rename(memoPath + unfinished, memoPath);
    m_files.rename(path + unfinished, path);
    m_files.syncFolderOf(path);
}

/// A new file, whole on the disk.
void Database::makeFile(const QString &path, const QByteArray &content)
{
    const auto file = m_files.create(path);
    file->write(0, storage::bytesOf(content));
    file->sync();
}

/// Removes what an interrupted making or dropping of a table has left. Memos of somebody else's are none of that.
void Database::removeLeavings(const QString &table)
{
    const QString path = pathOf(table, u".DBF"_s);
    const QString memoPath = pathOf(table, u".FPT"_s);
    if (m_files.exists(path))
        return;
    const bool wasDropped = m_files.exists(path + dropped);
    if (m_files.exists(memoPath) && (wasDropped || isEmptyMemoFile(memoPath)))
        m_files.remove(memoPath);
    for (const QString &left : {path + dropped, path + unfinished, memoPath + unfinished}) {
        if (m_files.exists(left))
            m_files.remove(left);
    }
}

bool Database::isEmptyMemoFile(const QString &path) const
{
    const QByteArray empty = MemoFile::newFile();
    const auto file = m_files.open(path, storage::Access::Read);
    return file->size() == empty.size() && file->read(0, empty.size()) == empty;
}

void Database::createIndex(const QString &table, const storage::Index &index)
{
    throw StorageError(StorageError::Unsupported,
                       u"%1: Indizes können in diesem Format nicht angelegt werden"_s.arg(table), index.name);
}

void Database::createRelationship(const storage::Relationship &relationship)
{
    throw StorageError(StorageError::Unsupported,
                       u"%1: Beziehungen gibt es in diesem Format nicht"_s.arg(relationship.table), relationship.name);
}

void Database::dropTable(const QString &name)
{
    requireChangeable();
    Table *table = find(name);
    if (!table)
        throw StorageError(StorageError::NoSuchTable, u"Die Tabelle %1 gibt es nicht"_s.arg(name), name);
    table->requireNoIndex();
    const FolderJournal::Turn turn(m_state.journal);
    const QString path = table->file().path();
    const std::optional<QString> memoPath = table->memoPath();
    m_tables.erase(name.toUpper()); // closes its files
    if (!memoPath || !m_files.exists(*memoPath)) {
        m_files.remove(path);
    } else {
        // Under this name it tells that the memo file is none any more.
        m_files.rename(path, path + dropped);
        try {
            m_files.remove(*memoPath);
        } catch (const StorageError &) {
            m_files.rename(path + dropped, path);
            throw;
        }
        m_files.remove(path + dropped);
    }
    m_files.syncFolderOf(path);
}

} // namespace dbf
