// Reading and writing as an input says, through the storage interface alone.
#include "fuzz/TableWork.h"

#include <limits>

using namespace Qt::StringLiterals;
using storage::Type;
using storage::Value;

namespace fuzz {

namespace {

void readValues(const storage::Cursor &cursor, const storage::TableSchema &schema)
{
    for (int i = 0; i < std::ssize(schema.columns); ++i)
        cursor.value(i);
}

QString drawText(Input &input)
{
    const std::uint8_t kind = input.byte();
    if (kind < 0xC0)
        return QString::fromLatin1(input.bytes(kind % 16));
    const QChar filler(kind % 4 == 0 ? 0x4E00 + kind : 'A' + kind % 64);
    return QString(static_cast<qsizetype>(input.number(2)) % 12000, filler);
}

std::int64_t drawNumber(Input &input)
{
    static constexpr std::int64_t borders[] = {0,
                                               -1,
                                               255,
                                               256,
                                               -32769,
                                               std::numeric_limits<std::int32_t>::min(),
                                               std::numeric_limits<std::int32_t>::max(),
                                               std::numeric_limits<std::int64_t>::min()};
    const std::uint8_t kind = input.byte();
    return kind < 0xF0 ? kind - 60 : borders[kind % std::size(borders)];
}

double drawReal(Input &input)
{
    static constexpr double odd[]
        = {-0.0, 1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
    const std::uint8_t kind = input.byte();
    return kind < 0xF0 ? static_cast<double>(input.number(4)) / (kind + 1) - 1000 : odd[kind % std::size(odd)];
}

Value valueOf(Input &input, Type type)
{
    switch (type) {
    case Type::Boolean:
        return input.byte() % 2 == 1;
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
        return drawNumber(input);
    case Type::Currency:
        return storage::Currency{input.byte() % 2 == 0 ? drawNumber(input) : 12345 * std::int64_t{input.number(4)}};
    case Type::Single:
    case Type::Double:
        return drawReal(input);
    case Type::DateTime:
        return storage::DateTime{drawReal(input)};
    case Type::Binary:
    case Type::LongBinary:
        return drawText(input).toLatin1();
    case Type::Text:
    case Type::Memo:
        return drawText(input);
    case Type::Guid:
        return u"{%1-0000-4000-8000-00000000ABCD}"_s.arg(qulonglong{input.number(4)}, 8, 16, QChar(u'0'));
    case Type::Numeric:
        return storage::Decimal{QString::number(drawNumber(input)) + u'.' + QString::number(int{input.byte()})};
    }
    Q_UNREACHABLE();
}

std::optional<storage::Bound> drawBound(Input &input, const storage::TableSchema &schema, const storage::Index &index)
{
    const std::uint8_t kind = input.byte();
    if (kind % 3 == 0)
        return std::nullopt;
    storage::Bound bound{{}, kind % 3 == 1};
    const std::size_t parts = 1 + kind / 3 % index.columns.size();
    for (std::size_t i = 0; i < parts; ++i)
        bound.key.push_back(drawValue(input, schema.columns.at(static_cast<std::size_t>(index.columns[i].column))));
    return bound;
}

std::optional<storage::RowId> drawRow(Input &input, storage::Table &table)
{
    const std::uint8_t drawn = input.byte();
    if (drawn == 0xFF) // an address from nowhere
        return input.number(4);
    const auto cursor = table.scan();
    std::optional<storage::RowId> row;
    for (int i = 0; i <= drawn % 64 && cursor->next(); ++i)
        row = cursor->rowId();
    return row;
}

std::vector<storage::Assignment> drawAssignments(Input &input, const storage::TableSchema &schema)
{
    std::vector<storage::Assignment> assignments;
    const std::uint32_t columns = input.number(2);
    for (int i = 0; i < std::ssize(schema.columns); ++i) {
        if ((columns >> (i % 16)) % 2 == 1)
            assignments.push_back({i, drawValue(input, schema.columns[static_cast<std::size_t>(i)])});
    }
    return assignments;
}

void changeOnce(storage::Database &database, Input &input)
{
    const QStringList names = database.tableNames();
    if (names.isEmpty())
        return;
    storage::Table *table = database.table(names[static_cast<qsizetype>(input.below(std::size_t(names.size())))]);
    require(table != nullptr, u"a table that is listed is missing"_s);
    const std::uint8_t kind = input.byte() % 4;
    if (kind < 2) {
        table->insert(drawAssignments(input, table->schema()));
        return;
    }
    const auto row = drawRow(input, *table);
    if (row && kind == 2)
        table->update(*row, drawAssignments(input, table->schema()));
    else if (row)
        table->remove(*row);
}

} // namespace

void readTable(storage::Table &table)
{
    const storage::TableSchema schema = table.schema();
    std::vector<storage::RowId> rows;
    for (const auto cursor = table.scan(); cursor->next();) {
        readValues(*cursor, schema);
        rows.push_back(cursor->rowId());
    }
    for (const storage::RowId row : rows) {
        const auto cursor = table.row(row);
        require(cursor && cursor->rowId() == row, u"a row that a scan found has no address"_s);
    }
    for (int i = 0; i < std::ssize(schema.indexes); ++i) {
        if (!schema.indexes[static_cast<std::size_t>(i)].usable)
            continue;
        std::size_t seen[2] = {0, 0};
        for (const bool backwards : {false, true}) {
            const auto cursor = table.range({.index = i, .backwards = backwards});
            while (cursor->next())
                ++seen[backwards ? 1 : 0];
        }
        require(seen[0] == seen[1] && seen[0] <= rows.size(), u"an index shows other rows backwards"_s);
    }
}

void readDatabase(storage::Database &database)
{
    for (const QString &name : database.tableNames()) {
        storage::Table *table = database.table(name);
        require(table != nullptr, u"a table that is listed is missing"_s);
        readTable(*table);
    }
    database.relationships();
}

Value drawValue(Input &input, const storage::Column &column)
{
    const std::uint8_t kind = input.byte();
    if (kind % 16 == 0)
        return {};
    const bool other = kind >= 0xF0;
    return valueOf(input, other ? static_cast<Type>(kind % (static_cast<int>(Type::Numeric) + 1)) : column.type);
}

std::optional<storage::KeyRange> drawRange(Input &input, const storage::TableSchema &schema)
{
    if (schema.indexes.empty())
        return std::nullopt;
    const std::uint32_t index = input.below(schema.indexes.size());
    if (!schema.indexes[index].usable)
        return std::nullopt;
    storage::KeyRange range{.index = static_cast<int>(index)};
    range.lower = drawBound(input, schema, schema.indexes[index]);
    range.upper = drawBound(input, schema, schema.indexes[index]);
    range.backwards = input.byte() % 2 == 1;
    return range;
}

void change(storage::Database &database, Input &input)
{
    const std::uint8_t kind = input.byte();
    if (kind % 4 != 3)
        return changeOnce(database, input);
    const auto scope = database.beginWrite();
    for (int i = 0; i < 2 + kind / 4 % 4; ++i)
        changeOnce(database, input);
    if (kind < 0xC0)
        scope->commit();
}

} // namespace fuzz
