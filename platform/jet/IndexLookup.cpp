// Finds the rows that have certain values in the columns of an index.
#include "platform/jet/IndexLookup.h"

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/RowScan.h"

using namespace Qt::StringLiterals;
using storage::Value;

namespace jet {

std::vector<Value> indexedValues(PageStore &store, const TextCodec &codec, const TableDef &def, const IndexDef &index,
                                 const RowView &row)
{
    std::vector<Value> values;
    for (const IndexColumnDef &part : index.columns)
        values.push_back(readField(store, codec, row, *def.column(part.column)));
    return values;
}

std::vector<RowPointer> rowsWith(PageStore &store, const TextCodec &codec, const TableDef &def, const IndexDef &index,
                                 std::span<const Value> values)
{
    const IndexKeyMaker keys(def, index, store.isJet4());
    const KeyBytes key = keys.make(values);
    const KeySpan span = keys.span(values);
    IndexCursor cursor(store, index, def.page, span.lower(), span.upper());
    std::vector<RowPointer> rows;
    while (cursor.next()) {
        const auto found = findRow(store, def, cursor.row());
        if (!found)
            damaged(cursor.row().page, u"Ein Index verweist auf Zeile %1, die es nicht gibt"_s.arg(cursor.row().row));
        if (keys.make(indexedValues(store, codec, def, index, found->view)) == key)
            rows.push_back(cursor.row());
    }
    return rows;
}

} // namespace jet
