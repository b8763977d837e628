// Changing a table's rows, each change as a whole or not at all.
#include "platform/jet/JetTable.h"

#include <limits>

#include "platform/jet/Constraints.h"
#include "platform/jet/Damage.h"
#include "platform/jet/Relations.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableWriter.h"
#include "platform/jet/ValueCodec.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

FoundRow requireRow(PageFile &file, const TableDef &def, storage::RowId id, const QString &table)
{
    auto found = findRow(file, def, RowPointer::fromNumber(static_cast<std::uint32_t>(id)));
    if (!found)
        throw StorageError(StorageError::RowGone, u"%1: Der Datensatz wurde gelöscht."_s.arg(table), table);
    return std::move(*found);
}

/// Keeps the counter at the highest number.
void coverAutonumber(TableCounters &counters, std::int64_t number)
{
    if (number > static_cast<std::int32_t>(counters.lastAutonumber()))
        counters.setLastAutonumber(static_cast<std::uint32_t>(number));
}

/// Fills in the next number where none was given.
void countAutonumber(PageFile &file, const JetTable::Known &known, std::vector<Value> &row)
{
    TableCounters counters(file, known.def.page);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const storage::Column &column = known.map.schema.columns[i];
        if (!countsUp(column))
            continue;
        const auto last = static_cast<std::int32_t>(counters.lastAutonumber());
        if (storage::isNull(row[i])) {
            if (last == std::numeric_limits<std::int32_t>::max()) {
                throw StorageError(StorageError::OutOfRange, u"%1: Die Nummern sind aufgebraucht."_s.arg(column.name),
                                   column.name);
            }
            row[i] = std::int64_t{last} + 1;
        }
        coverAutonumber(counters, std::get<std::int64_t>(row[i]));
    }
}

/// A number that a row gets later must not be given out a second time either.
void coverAutonumbers(PageFile &file, const JetTable::Known &known, std::span<const storage::Assignment> changes)
{
    for (const storage::Assignment &change : changes) {
        const storage::Column &column = known.map.schema.columns[static_cast<std::size_t>(change.column)];
        if (!countsUp(column))
            continue;
        const auto *number = std::get_if<std::int64_t>(&change.value);
        if (!number) {
            throw StorageError(StorageError::Required, u"%1: Das Feld darf nicht leer sein."_s.arg(column.name),
                               column.name);
        }
        TableCounters counters(file, known.def.page);
        coverAutonumber(counters, *number);
    }
}

} // namespace

void JetTable::requireUsersTable() const
{
    if (!m_entry.isUserTable()) {
        throw StorageError(StorageError::Unsupported, u"Die Systemtabelle %1 wird nicht geändert."_s.arg(m_entry.name),
                           m_entry.name);
    }
}

void JetTable::requireStorable(const storage::Assignment &value) const
{
    withPlace([this] { return place(); },
              [&] {
                  const KnownPtr known = this->known();
                  const ColumnDef &column = known->map.columns.at(static_cast<std::size_t>(value.column));
                  const Value fitting = fitValue(column, value.value, m_database.codec());
                  if (column.type != ColumnType::Boolean && !storage::isNull(fitting))
                      encodeValue(column, fitting, m_database.codec());
              });
}

storage::RowId JetTable::insert(std::span<const storage::Assignment> values)
{
    return change([&](const Known &known) -> storage::RowId {
        PageFile &file = m_database.file();
        std::vector<Value> row = Constraints(known.map, m_database.codec()).newRow(values);
        countAutonumber(file, known, row);
        std::vector<ColumnValue> fields;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (!storage::isNull(row[i]))
                fields.push_back({&known.map.columns[i], row[i]});
        }
        const RowPointer where = TableWriter(file, m_database.codec(), known.def).insert(fields);
        const Relations relations(m_database, known.def);
        if (relations.hasParents())
            relations.inserted(relations.valuesOf(findRow(file, known.def, where)->view));
        return where.number();
    });
}

void JetTable::update(storage::RowId id, std::span<const storage::Assignment> values)
{
    change([&](const Known &known) -> storage::RowId {
        PageFile &file = m_database.file();
        std::vector<ColumnValue> fields;
        const std::vector<storage::Assignment> changes = Constraints(known.map, m_database.codec()).changes(values);
        coverAutonumbers(file, known, changes);
        for (const storage::Assignment &change : changes)
            fields.push_back({&known.map.columns[static_cast<std::size_t>(change.column)], change.value});
        const Relations relations(m_database, known.def);
        const FoundRow row = requireRow(file, known.def, id, m_entry.name);
        const Relations::Values before = relations.valuesOf(row.view);
        TableWriter(file, m_database.codec(), known.def).update(row, fields);
        relations.updated(before, relations.valuesOf(requireRow(file, known.def, id, m_entry.name).view));
        return id;
    });
}

void JetTable::remove(storage::RowId id)
{
    change([&](const Known &known) -> storage::RowId {
        const Relations relations(m_database, known.def);
        const FoundRow row = requireRow(m_database.file(), known.def, id, m_entry.name);
        const Relations::Values values = relations.valuesOf(row.view);
        TableWriter(m_database.file(), m_database.codec(), known.def).remove(row);
        relations.removed(values);
        return id;
    });
}

storage::RowId JetTable::change(const std::function<storage::RowId(const Known &)> &work)
{
    return withPlace([this] { return place(); },
                     [&] {
                         requireUsersTable();
                         PageScope scope(m_database.file());
                         const KnownPtr known = this->known();
                         const storage::RowId id = work(*known);
                         scope.commit();
                         return id;
                     });
}

} // namespace jet
