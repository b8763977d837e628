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

void removeFile(const QString &path)
{
    QFile file(path);
    if (!file.remove()) {
        throw StorageError(StorageError::InputOutput, u"%1: Löschen nicht möglich: %2"_s.arg(path, file.errorString()));
    }
}

} // namespace

Database::Database(const QString &folder, bool readOnly)
    : m_folder(folder)
{
    m_state.readOnly = readOnly;
}

QStringList Database::tableNames() const
{
    QStringList names;
    const QFileInfoList files = QDir(m_folder).entryInfoList({u"*.dbf"_s}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        names += file.completeBaseName();
    return names;
}

QString Database::pathOf(const QString &table) const
{
    return storage::existingPath(QDir(m_folder).filePath(table + u".dbf"_s));
}

Table *Database::find(const QString &name)
{
    m_state.requireSound();
    const auto known = m_tables.find(name.toUpper());
    if (known != m_tables.end())
        return known->second.get();
    // A name is not a path out of the folder.
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\') || !QFileInfo(pathOf(name)).isFile())
        return nullptr;
    auto table = std::make_unique<Table>(pathOf(name), m_state);
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
    m_state.requireSound();
    return std::make_unique<Transaction>(m_state);
}

void Database::requireWritable() const
{
    if (m_state.readOnly)
        throw StorageError(StorageError::ReadOnly, u"%1 wurde nur zum Lesen geöffnet"_s.arg(m_folder));
}

void Database::requireChangeable() const
{
    m_state.requireSound();
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
    const QString stem = QDir(m_folder).filePath(schema.name.toUpper());
    const QString memoPath = storage::existingPath(stem + u".FPT"_s);
    if (QFileInfo::exists(pathOf(schema.name))) {
        throw StorageError(StorageError::AlreadyExists, u"Die Tabelle %1 gibt es schon"_s.arg(schema.name),
                           schema.name);
    }
    // The memo file first: alone it is no table yet.
    const bool hasMemo = needsMemoFile(schema);
    if (hasMemo)
        File::create(memoPath, bytesOf(MemoFile::newFile()));
    try {
        File::create(stem + u".DBF"_s, bytesOf(content));
    } catch (const StorageError &) {
        if (hasMemo)
            removeFile(memoPath);
        throw;
    }
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
    const QString path = table->file().path();
    const std::optional<QString> memoPath = table->memoPath();
    m_tables.erase(name.toUpper()); // closes its files
    removeFile(path);
    if (memoPath && QFileInfo::exists(*memoPath))
        removeFile(*memoPath);
}

} // namespace dbf
