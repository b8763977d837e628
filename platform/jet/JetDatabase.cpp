// An open file: its tables, its relationships, its write scopes.
#include "platform/jet/JetDatabase.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/JetTable.h"
#include "platform/jet/Relationships.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TextKey.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

class JetWriteScope final : public storage::WriteScope
{
public:
    explicit JetWriteScope(PageFile &file)
        : m_scope(file)
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
            = withPlace([this] { return m_file->path(); }, [this] { return Catalog(*m_file, m_codec).entries(); });
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
    if (!table || table->entry().row != entry.row || table->entry().name != entry.name)
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
    m_file->refresh();
    return withPlace([this] { return m_file->path(); }, [this] { return readRelationships(*m_file, m_codec); });
}

} // namespace jet
