// The list of relationships: a row for each pair of columns.
#include "platform/jet/Relationships.h"

#include <algorithm>
#include <map>

#include "platform/jet/Catalog.h"
#include "platform/jet/Damage.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

struct Pair {
    std::int64_t position;
    std::int64_t count;
    QString column;
    QString referenced;
};

void addPairs(storage::Relationship &relationship, std::vector<Pair> pairs)
{
    std::ranges::sort(pairs, {}, &Pair::position);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (pairs[i].position != static_cast<std::int64_t>(i)
            || pairs[i].count != static_cast<std::int64_t>(pairs.size())) {
            damaged(relationshipsPage, u"Der Beziehung %1 fehlen Spalten"_s.arg(relationship.name));
        }
        relationship.columns += pairs[i].referenced;
        relationship.foreignColumns += pairs[i].column;
    }
}

} // namespace

std::vector<storage::Relationship> readRelationships(PageStore &store, const TextCodec &codec)
{
    const TableDef def = readTableDef(store, codec, relationshipsPage);
    std::vector<storage::Relationship> found;
    std::map<QString, std::vector<Pair>> pairs;
    RowScan scan(store, def);
    while (const auto entry = scan.next()) {
        const SystemRow row(store, codec, def, entry->view);
        const QString name = row.text(u"szRelationship");
        const auto flags = static_cast<std::uint32_t>(row.number(u"grbit"));
        if (!pairs.contains(name)) {
            found.push_back({name,
                             row.text(u"szReferencedObject"),
                             {},
                             row.text(u"szObject"),
                             {},
                             (flags & NotEnforced) == 0,
                             (flags & CascadeUpdates) != 0,
                             (flags & CascadeDeletes) != 0});
        }
        pairs[name].push_back(
            {row.number(u"icolumn"), row.number(u"ccolumn"), row.text(u"szColumn"), row.text(u"szReferencedColumn")});
    }
    for (storage::Relationship &relationship : found)
        addPairs(relationship, pairs[relationship.name]);
    return found;
}

} // namespace jet
