// Checks enforced relationships.
#include "platform/jet/VerifierRelation.h"

#include <algorithm>
#include <vector>

#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexLookup.h"
#include "platform/jet/RowScan.h"

using namespace Qt::StringLiterals;
using storage::Value;

namespace jet {

void checkReferences(PageFile &file, const TextCodec &codec, const RelationSide &referencing,
                     const RelationSide &referenced, Findings &findings)
{
    const IndexDef &from = referencing.table.indexes[referencing.index.real];
    const IndexDef &to = referenced.table.indexes[referenced.index.real];
    if (keySupport(referenced.table, to, file.isJet4(), file.header().codePage) == KeySupport::None)
        return;
    RowScan scan(file, referencing.table);
    for (auto row = scan.next(); row && !findings.full(); row = scan.next()) {
        const std::vector<Value> values = indexedValues(file, codec, referencing.table, from, row->view);
        if (std::ranges::any_of(values, storage::isNull)
            || !rowsWith(file, codec, referenced.table, to, values).empty()) {
            continue;
        }
        findings.fault(
            u"Beziehung %1: zu Zeile %2 der Seite %3 von %4 fehlt die Zeile in %5"_s.arg(referencing.index.name)
                .arg(row->home.row)
                .arg(row->home.page)
                .arg(referencing.tableName, referenced.tableName));
    }
}

} // namespace jet
