// Tables under random changes.
#include "tests/jet/RandomTable.h"

#include <QUuid>

using namespace Qt::StringLiterals;
using storage::Column;
using storage::RowId;
using storage::Type;
using storage::Value;

namespace {

double real(Chance &chance, std::int64_t limit, double divisor)
{
    return static_cast<double>(chance.between(-limit, limit)) / divisor;
}

QString text(Chance &chance, std::size_t longest)
{
    static const QString alphabet = u"aAbcdeEgmnrstuzZ 019-'.,&ßäÄöüÜéèñÆœ€"_s;
    QString made(static_cast<qsizetype>(chance.below(longest + 1)), QChar());
    std::ranges::generate(made, [&chance] { return *chance.any(alphabet); });
    return made;
}

QByteArray bytes(Chance &chance, std::size_t longest)
{
    QByteArray made(static_cast<qsizetype>(1 + chance.below(longest)), '\0');
    std::ranges::generate(made, [&chance] { return static_cast<char>(chance.below(256)); });
    return made;
}

/// A text that tells how long it is.
QString memo(Chance &chance)
{
    const std::size_t count = chance.below(chance.below(10) == 0 ? 500 : chance.below(3) == 0 ? 25 : 3);
    return u"%1/%2/"_s.arg(text(chance, 8)).arg(count).repeated(static_cast<qsizetype>(count));
}

/// A column of each type, named by a letter, and its values.
struct Kind {
    Column column;
    std::function<Value(Chance &)> draw;
};
const Kind kinds[] = {
    {{u"M"_s, Type::Memo}, memo},
    {{u"A"_s, Type::Long}, [](Chance &c) { return c.between(-3000, 3000); }},
    {{u"B"_s, Type::Boolean}, [](Chance &c) { return c.below(2) == 1; }},
    {{u"C"_s, Type::Byte}, [](Chance &c) { return c.between(0, 255); }},
    {{u"D"_s, Type::Integer}, [](Chance &c) { return c.between(-32768, 32767); }},
    {{u"E"_s, Type::Currency}, [](Chance &c) { return storage::Currency{c.between(-99999999, 99999999)}; }},
    {{u"F"_s, Type::Single}, [](Chance &c) { return real(c, 9999, 8); }},
    {{u"G"_s, Type::Double}, [](Chance &c) { return real(c, 99999, 7); }},
    {{u"H"_s, Type::DateTime}, [](Chance &c) { return storage::DateTime{real(c, 400000, 8)}; }},
    {{u"I"_s, Type::Binary, 40}, [](Chance &c) { return bytes(c, 40); }},
    {{u"J"_s, Type::Text, 60}, [](Chance &c) { return text(c, c.below(10) == 0 ? 60 : 12); }},
    {{u"K"_s, Type::Text, 255}, [](Chance &c) { return text(c, c.below(10) == 0 ? 255 : 12); }},
    {{u"L"_s, Type::Guid},
     [](Chance &c) { return QUuid(uint(c.below(1U << 30)), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10).toString(); }},
    {{u"N"_s, Type::LongBinary}, [](Chance &c) { return bytes(c, c.below(10) == 0 ? 5000 : 60); }},
    {{u"O"_s, Type::Numeric, 18, 2}, // not in Jet 3
     [](Chance &c) { return storage::Decimal{u"%1.%2"_s.arg(c.between(-9999, 9999)).arg(c.between(10, 99))}; }},
};

Value draw(Chance &chance, std::size_t column)
{
    const Kind &kind = kinds[column];
    return kind.column.type != Type::Boolean && chance.below(8) == 0 ? Value() : kind.draw(chance);
}

} // namespace

RandomTable::RandomTable(storage::Database &database, const QString &name, const QString &plan, bool jet4)
    : m_name(name)
    , m_columns(std::size(kinds) - (jet4 ? 0 : 1))
{
    storage::TableSchema schema{.name = name, .columns = {}};
    for (const Kind &kind : std::span(kinds).first(m_columns))
        schema.columns.push_back(kind.column);
    schema.columns.push_back({.name = u"Number"_s, .type = Type::Long, .autonumber = true});
    for (const QString &word : plan.split(u' ')) {
        storage::Index index{.name = u'i' + word, .columns = {}, .unique = word.startsWith(u'+')};
        for (const QChar letter : QStringView(word).mid(index.unique ? 1 : 0))
            index.columns.push_back({*schema.find(letter.toUpper()), letter.isLower()});
        if (index.unique)
            m_uniqueColumn = index.columns.front().column;
        schema.indexes.push_back(index);
    }
    database.createTable(schema);
}

void RandomTable::change(storage::Database &database, Chance &chance, unsigned insertShare, std::size_t removals)
{
    const auto mayChange = [this](const auto &row) { return !m_kept.contains(row.first); };
    const auto nextFrom = [&](auto row) { return std::find_if(row, m_rows.end(), mayChange); };
    auto old = m_rows.empty() ? m_rows.end() : nextFrom(chance.any(m_rows));
    if (old == m_rows.end() || chance.below(100) < insertShare) {
        Row row;
        while (row.size() < m_columns)
            row.push_back(draw(chance, row.size()));
        return write(tableOf(database), std::nullopt, row);
    }
    if (chance.below(2) == 0) {
        Row row = old->second;
        for (std::size_t count = 1 + chance.below(4); count > 0; --count) {
            const std::size_t column = chance.below(m_columns);
            row[column] = draw(chance, column);
        }
        return write(tableOf(database), old->first, row);
    }
    // Neighbours, so that pages of rows and of indexes get empty.
    for (std::size_t count = 1 + chance.below(removals); count > 0 && old != m_rows.end(); --count) {
        tableOf(database).remove(old->first);
        m_gone.insert(old->first);
        old = nextFrom(m_rows.erase(old));
    }
}

void RandomTable::keepRows()
{
    for (const auto &[id, row] : m_rows)
        m_kept.insert(id);
}

void RandomTable::compare(storage::Database &database) const
{
    SCOPED_TRACE(qPrintable(m_name));
    storage::Table &table = tableOf(database);
    std::map<RowId, Row> found;
    for (const auto cursor = table.scan(); cursor->next();)
        found[cursor->rowId()] = rowOf(*cursor);
    ASSERT_TRUE(found == m_rows);
    for (const auto &[id, row] : m_rows)
        ASSERT_TRUE(rowOf(*table.row(id)) == row) << "row " << id;
    for (int i = 0; const storage::Index &index : table.schema().indexes) {
        ASSERT_TRUE(!index.usable || count(*table.range({i})) == m_rows.size()) << qPrintable(index.name);
        ++i;
    }
}

void RandomTable::readAny(storage::Database &database, Chance &chance) const
{
    if (chance.below(2) == 0 && !m_gone.empty()) {
        EXPECT_EQ(tableOf(database).row(*chance.any(m_gone)), nullptr);
    } else if (!m_rows.empty()) {
        const auto &[id, row] = *chance.any(m_rows);
        const auto cursor = tableOf(database).row(id);
        EXPECT_TRUE(cursor && rowOf(*cursor) == row) << "row " << id;
    }
}

RandomTable::Row RandomTable::rowOf(const storage::Cursor &cursor) const
{
    Row row;
    for (std::size_t i = 0; i <= m_columns; ++i)
        row.push_back(cursor.value(static_cast<int>(i)));
    return row;
}

bool RandomTable::isWhole(const storage::Cursor &cursor)
{
    const Value value = cursor.value(0);
    const auto *text = std::get_if<QString>(&value);
    if (!text || text->isEmpty())
        return true;
    const QString part = text->section(u'/', 0, 1) + u'/';
    return *text == part.repeated(part.section(u'/', 1, 1).toInt());
}

bool RandomTable::isTaken(const Row &row, std::optional<RowId> self) const
{
    return m_uniqueColumn && !storage::isNull(row[*m_uniqueColumn])
        && std::ranges::any_of(m_rows, [&](const auto &other) {
               return other.first != self && other.second[*m_uniqueColumn] == row[*m_uniqueColumn];
           });
}

/// Inserts a row, or changes what is different.
void RandomTable::write(storage::Table &table, std::optional<RowId> id, Row row)
{
    std::vector<storage::Assignment> values;
    for (std::size_t i = 0; i < m_columns; ++i) {
        if (!id || row[i] != m_rows.at(*id)[i])
            values.push_back({static_cast<int>(i), row[i]});
    }
    const auto expected = isTaken(row, id) ? std::optional(storage::StorageError::Duplicate) : std::nullopt;
    const auto refused = kindOf([&] {
        if (id)
            return table.update(*id, values);
        id = table.insert(values);
        row.push_back(table.row(*id)->value(static_cast<int>(m_columns)));
        const auto number = std::get<std::int64_t>(row.back());
        EXPECT_GT(number, std::exchange(m_lastNumber, number)) << "a number for two rows";
    });
    ASSERT_EQ(refused, expected);
    if (refused)
        return;
    m_rows[*id] = row;
    m_gone.erase(*id);
}
