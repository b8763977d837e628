// An open file: its tables, its relationships, its write scopes.
#include "platform/jet/JetDatabase.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/JetTable.h"
#include "platform/jet/NewDatabase.h"
#include "platform/jet/Relationships.h"
#include "platform/jet/SchemaWriter.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TextKey.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

namespace {

class JetWriteScope final : public storage::WriteScope
{
public:
    explicit JetWriteScope(PageFile &file)
        : m_scope(file, PageUse::ByInnerScopes)
    { }
    void commit() override { m_scope.commit(); }

private:
    PageScope m_scope;
};

TextCodec codecOf(const FileHeader &header)
{
    return header.jet4 ? TextCodec::jet4() : TextCodec::jet3(header.codePage);
}

} // namespace

std::unique_ptr<storage::Database> JetDriver::open(const storage::OpenRequest &request)
{
    return std::make_unique<JetDatabase>(std::make_unique<PageFile>(m_files, request));
}

std::unique_ptr<storage::Database> JetDriver::create(const storage::OpenRequest &request, storage::FileVersion version)
{
    return std::make_unique<JetDatabase>(createDatabase(m_files, request, version));
}

JetDatabase::JetDatabase(std::unique_ptr<PageFile> file)
    : m_file(std::move(file))
    , m_codec(codecOf(m_file->header()))
{ }

JetDatabase::~JetDatabase() = default;

const std::vector<CatalogEntry> &JetDatabase::entries() const
{
    m_file->refresh();
    if (!m_entriesRead || m_entriesGeneration != m_file->generation()) {
        m_entries
            = withPlace([this] { return m_file->path(); },
                        [this] { return unhurried(*m_file, [this] { return Catalog(*m_file, m_codec).entries(); }); });
        m_entriesGeneration = m_file->generation();
        m_entriesRead = true;
    }
    return m_entries;
}

void JetDatabase::catalogChanged()
{
    m_entriesRead = false;
    for (auto &[page, table] : m_tables)
        table->definitionChanged();
}

QStringList JetDatabase::tableNames() const
{
    QStringList names;
    for (const CatalogEntry &entry : entries()) {
        if (entry.isUserTable())
            names += entry.name;
    }
    return names;
}

const CatalogEntry *JetDatabase::findTable(const QString &name) const
{
    const auto found = std::ranges::find_if(entries(), [&](const CatalogEntry &entry) {
        return entry.type == TableObject && entry.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

storage::Table *JetDatabase::table(const QString &name)
{
    const CatalogEntry *entry = findTable(name);
    return entry ? &tableOf(*entry) : nullptr;
}

JetTable &JetDatabase::tableAt(PageNo definition)
{
    const auto found = std::ranges::find_if(entries(), [definition](const CatalogEntry &entry) {
        return entry.type == TableObject && entry.id == definition;
    });
    if (found == m_entries.end())
        damaged(definition, u"Der Katalog kennt keine Tabelle, die hier beginnt"_s);
    return tableOf(*found);
}

JetTable &JetDatabase::tableOf(const CatalogEntry &entry)
{
    std::unique_ptr<JetTable> &table = m_tables[entry.id];
    // The page of a dropped table may be another one's now.
    if (table && (table->entry().row != entry.row || table->entry().name != entry.name))
        m_formerTables.push_back(std::move(table));
    if (!table)
        table = std::make_unique<JetTable>(*this, entry);
    return *table;
}

int JetDatabase::compareTexts(QStringView left, QStringView right) const
{
    return jet::compareTexts(m_file->isJet4(), left, right);
}

std::unique_ptr<storage::WriteScope> JetDatabase::beginWrite()
{
    return std::make_unique<JetWriteScope>(*m_file);
}

std::vector<storage::Relationship> JetDatabase::relationships() const
{
    std::vector<storage::Relationship> users = allRelationships();
    std::erase_if(users, [this](const storage::Relationship &relationship) {
        return isSystemTable(relationship.table) || isSystemTable(relationship.foreignTable);
    });
    return users;
}

bool JetDatabase::isSystemTable(const QString &name) const
{
    const CatalogEntry *entry = findTable(name);
    return entry != nullptr && !entry->isUserTable();
}

std::vector<storage::Relationship> JetDatabase::allRelationships() const
{
    m_file->refresh();
    return withPlace([this] { return m_file->path(); },
                     [this] { return unhurried(*m_file, [this] { return readRelationships(*m_file, m_codec); }); });
}

void JetDatabase::createTable(const storage::TableSchema &schema)
{
    changeSchema([&](SchemaWriter &writer) {
        if (findTable(schema.name))
            throw StorageError(StorageError::AlreadyExists, u"Die Tabelle %1 gibt es schon."_s.arg(schema.name),
                               schema.name);
        writer.createTable(schema);
    });
}

void JetDatabase::createIndex(const QString &table, const storage::Index &index)
{
    changeSchema([&](SchemaWriter &writer) {
        const CatalogEntry &entry = requireTable(table);
        const JetTable::KnownPtr known = tableOf(entry).known();
        writer.createIndex(entry.id, known->map.columns, index);
    });
}

void JetDatabase::createRelationship(const storage::Relationship &relationship)
{
    changeSchema([&](SchemaWriter &writer) {
        for (const storage::Relationship &other : allRelationships()) {
            if (other.name.compare(relationship.name, Qt::CaseInsensitive) == 0) {
                throw StorageError(StorageError::AlreadyExists,
                                   u"Die Beziehung %1 gibt es schon."_s.arg(relationship.name), relationship.name);
            }
        }
        const PageNo table = requireTable(relationship.table).id;
        writer.createRelationship(relationship, table, requireTable(relationship.foreignTable).id);
    });
}

void JetDatabase::dropTable(const QString &name)
{
    changeSchema([&](SchemaWriter &writer) {
        const CatalogEntry entry = requireTable(name);
        for (const storage::Relationship &relationship : allRelationships()) {
            for (const QString &table : {relationship.table, relationship.foreignTable}) {
                if (table.compare(entry.name, Qt::CaseInsensitive) == 0) {
                    throw StorageError(
                        StorageError::Unsupported,
                        u"Die Tabelle %1 nimmt an der Beziehung %2 teil und kann nicht gelöscht werden."_s.arg(
                            entry.name, relationship.name),
                        entry.name);
                }
            }
        }
        writer.dropTable(entry.id);
    });
}

const CatalogEntry &JetDatabase::requireTable(const QString &name) const
{
    const CatalogEntry *entry = findTable(name);
    if (!entry || !entry->isUserTable())
        throw StorageError(StorageError::NoSuchTable, u"Die Tabelle %1 gibt es nicht."_s.arg(name), name);
    return *entry;
}

void JetDatabase::changeSchema(const std::function<void(SchemaWriter &)> &change)
{
    withPlace([this] { return m_file->path(); },
              [&] {
                  PageScope scope(*m_file);
                  SchemaWriter writer(*m_file, m_codec);
                  change(writer);
                  scope.commit();
              });
    catalogChanged();
}

} // namespace jet
