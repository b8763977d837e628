#include "tests/jet/TwoDatabases.h"

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::Column;
using storage::StorageError;
using storage::Type;

namespace two {

namespace {

QString keyOf(std::int64_t number)
{
    return QString::number(number * 7919 % 100003).rightJustified(40, u'0');
}

QString notesOf(std::int64_t number, std::int64_t version)
{
    const auto length = number <= steadyRows ? number * 90 : (number * 31 + version * version * 17) % 5000;
    return u"%1/%2 "_s.arg(number).arg(version).repeated(1 + length / 12);
}

std::vector<Assignment> valuesOf(std::int64_t number, std::int64_t version)
{
    return {{Key, keyOf(number)}, {Version, version}, {Notes, notesOf(number, version)}};
}

storage::Table &tableOf(storage::Database &database)
{
    return *database.table(u"T"_s);
}

template <typename T> T valueOf(const storage::Cursor &cursor, int column)
{
    const storage::Value value = cursor.value(column);
    const T *found = std::get_if<T>(&value);
    EXPECT_TRUE(found);
    return found ? *found : T();
}

void insertOne(storage::Database &database, Model &model, Chance &chance)
{
    const auto version = static_cast<std::int64_t>(below(chance, 40));
    // The number comes from the table's counter; the texts follow it.
    storage::Table &table = tableOf(database);
    const storage::RowId row = table.insert(std::vector<Assignment>{{Version, version}});
    const auto number = valueOf<std::int64_t>(*table.row(row), Id);
    for (const auto &[address, known] : model.rows)
        ASSERT_NE(known.number, number) << "a number for two rows";
    table.update(row, valuesOf(number, version));
    model.rows[row] = {number, version};
    model.gone.erase(row);
}

void changeOne(storage::Database &database, Model &model, Chance &chance)
{
    const std::size_t dice = below(chance, 10);
    if (dice < 4 || model.rows.empty())
        return insertOne(database, model, chance);
    auto row = std::next(model.rows.begin(), static_cast<std::ptrdiff_t>(below(chance, model.rows.size())));
    if (dice < 7) {
        row->second.version = static_cast<std::int64_t>(below(chance, 40));
        tableOf(database).update(row->first, valuesOf(row->second.number, row->second.version));
        return;
    }
    // Several neighbours, so that pages of rows and of indexes get empty.
    for (std::size_t count = 1 + below(chance, 12); count > 0 && row != model.rows.end(); --count) {
        tableOf(database).remove(row->first);
        model.gone.insert(row->first);
        row = model.rows.erase(row);
    }
}

void changeTables(storage::Database &database, Chance &chance)
{
    const QString name = u"S%1"_s.arg(below(chance, 3));
    if (database.table(name)) {
        database.dropTable(name);
        return;
    }
    // Its columns differ from time to time.
    storage::TableSchema schema{.name = name, .columns = {{.name = u"A"_s, .type = Type::Long}}};
    if (below(chance, 2) == 0)
        schema.columns.push_back({.name = u"B"_s, .type = Type::Memo});
    schema.indexes.push_back({.name = u"iA"_s, .columns = {{0, false}}});
    database.createTable(schema);
    for (std::int64_t i = 0; i < 40; ++i) {
        std::vector<Assignment> values{{0, i}};
        if (schema.columns.size() > 1)
            values.push_back({1, QString(1000, u'b')});
        database.table(name)->insert(values);
    }
}

} // namespace

std::size_t below(Chance &chance, std::size_t limit)
{
    return chance() % limit;
}

void makeTable(storage::Database &database, Chance &chance)
{
    storage::TableSchema schema{.name = u"T"_s,
                                .columns = {{.name = u"ID"_s, .type = Type::Long, .autonumber = true},
                                            {.name = u"Schlüssel"_s, .type = Type::Text, .size = 60},
                                            {.name = u"Stand"_s, .type = Type::Long},
                                            {.name = u"Text"_s, .type = Type::Memo}}};
    schema.indexes = {{.name = u"iID"_s, .columns = {{Id, false}}, .unique = true, .primary = true},
                      {.name = u"iSchlüssel"_s, .columns = {{Key, false}}}};
    database.createTable(schema);
    for (std::int64_t number = 1; number <= steadyRows; ++number) {
        std::vector<storage::RowId> others;
        for (std::size_t count = below(chance, 12); count > 0; --count)
            others.push_back(
                tableOf(database).insert(std::vector<Assignment>{{Id, 1000 + number * 20 + std::int64_t(count)}}));
        std::vector<Assignment> values = valuesOf(number, 1);
        values.push_back({Id, number});
        tableOf(database).insert(values);
        for (const storage::RowId other : others)
            tableOf(database).remove(other);
    }
}

void changeSomething(storage::Database &database, Model &model, Chance &chance)
{
    if (below(chance, 25) == 0)
        return changeTables(database, chance);
    if (below(chance, 3) != 0)
        return changeOne(database, model, chance);
    Model changed = model;
    const auto scope = database.beginWrite();
    const std::size_t limit = below(chance, 10) == 0 ? 300 : 30;
    for (std::size_t count = 1 + below(chance, limit); count > 0; --count)
        changeOne(database, changed, chance);
    if (below(chance, 8) == 0)
        return;
    scope->commit();
    model = std::move(changed);
}

Walk::Walk(storage::Database &database, Chance &chance)
{
    storage::Table &table = tableOf(database);
    for (std::int64_t number = 1; number <= steadyRows; ++number)
        m_expected.insert(number);
    const std::size_t kind = below(chance, 6);
    if (kind < 2) {
        m_cursor = table.scan();
        return;
    }
    storage::KeyRange range{.index = kind < 4 ? 0 : 1, .backwards = kind % 2 == 1};
    m_backwards = range.backwards;
    m_ordered = range.index == 1;
    if (below(chance, 2) == 0 && m_ordered) {
        const QString least = keyOf(1 + static_cast<std::int64_t>(below(chance, steadyRows)));
        range.lower = storage::Bound{{least}, true};
        std::erase_if(m_expected, [&](std::int64_t number) { return keyOf(number) < least; });
    }
    m_cursor = table.range(range);
}

bool Walk::step()
{
    if (m_cursor->next()) {
        see();
        return true;
    }
    EXPECT_TRUE(m_expected.empty()) << m_expected.size() << " rows were missed, the first is "
                                    << (m_expected.empty() ? 0 : *m_expected.begin());
    return false;
}

void Walk::see()
{
    const auto number = valueOf<std::int64_t>(*m_cursor, Id);
    if (number > steadyRows) {
        try {
            const storage::Value notes = m_cursor->value(Notes);
            if (const auto *text = std::get_if<QString>(&notes)) {
                const QString version = text->section(u'/', 1).section(u' ', 0, 0);
                EXPECT_EQ(*text, notesOf(number, version.toLongLong()));
            }
        } catch (const StorageError &error) {
            EXPECT_EQ(error.kind(), StorageError::RowGone) << error.what();
        }
        return;
    }
    EXPECT_EQ(m_expected.erase(number), 1U) << "row " << number << " came twice, or out of range";
    const auto key = valueOf<QString>(*m_cursor, Key);
    EXPECT_EQ(key, keyOf(number));
    if (m_ordered && !m_last.isEmpty()) {
        EXPECT_EQ(key < m_last, m_backwards) << qPrintable(key);
    }
    m_last = key;
    EXPECT_EQ(valueOf<std::int64_t>(*m_cursor, Version), 1);
    EXPECT_EQ(valueOf<QString>(*m_cursor, Notes), notesOf(number, 1));
}

void readByAddress(storage::Database &database, const Model &model, Chance &chance)
{
    const bool gone = below(chance, 2) == 0 && !model.gone.empty();
    if (!gone && model.rows.empty())
        return;
    const storage::RowId address = gone
        ? *std::next(model.gone.begin(), static_cast<std::ptrdiff_t>(below(chance, model.gone.size())))
        : std::next(model.rows.begin(), static_cast<std::ptrdiff_t>(below(chance, model.rows.size())))->first;
    const auto cursor = tableOf(database).row(address);
    ASSERT_EQ(cursor == nullptr, gone) << "row " << address;
    if (gone)
        return;
    const Row &row = model.rows.at(address);
    EXPECT_EQ(valueOf<std::int64_t>(*cursor, Id), row.number);
    EXPECT_EQ(valueOf<QString>(*cursor, Notes), notesOf(row.number, row.version));
}

} // namespace two
