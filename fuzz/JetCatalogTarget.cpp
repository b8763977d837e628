// Header, catalog and definitions of a damaged Jet file; then tables, indexes and relationships are made and dropped.
#include "fuzz/JetBase.h"
#include "fuzz/TableWork.h"

using namespace Qt::StringLiterals;
using storage::Type;

namespace {

QString drawName(fuzz::Input &input, const QStringList &known)
{
    const std::uint8_t drawn = input.byte();
    if (drawn % 4 != 0 && !known.isEmpty())
        return known[drawn / 4 % known.size()];
    return QString::fromLatin1(input.bytes(drawn / 4 % 8));
}

storage::TableSchema drawSchema(fuzz::Input &input, const QStringList &names)
{
    storage::TableSchema schema{drawName(input, names), {}};
    for (int left = input.byte() % 8; left >= 0; --left) {
        const std::uint8_t kind = input.byte();
        schema.columns.push_back({.name = drawName(input, {}),
                                  .type = static_cast<Type>(kind % (static_cast<int>(Type::Numeric) + 1)),
                                  .size = input.byte(),
                                  .scale = kind / 64,
                                  .required = kind % 3 == 0,
                                  .autonumber = kind % 5 == 0});
    }
    return schema;
}

/// Over columns that the table has: others are the caller's mistake.
storage::Index drawIndex(fuzz::Input &input, const QStringList &names, const storage::Table *table)
{
    const std::size_t columns = table ? table->schema().columns.size() : 10;
    const std::uint8_t kind = input.byte();
    storage::Index index{.name = drawName(input, names), .columns = {}};
    for (int left = kind % 3; left >= 0; --left)
        index.columns.push_back({static_cast<int>(input.below(columns)), input.byte() % 2 == 1});
    index.unique = kind % 2 == 1;
    index.primary = kind % 16 == 1;
    index.required = kind / 2 % 8 == 1;
    index.ignoreNulls = kind / 4 % 2 == 1;
    return index;
}

void define(storage::Database &database, fuzz::Input &input)
{
    QStringList names = database.tableNames();
    names += u"Neu"_s;
    const QStringList columns{u"Nr"_s, u"Name"_s, u"Kunde"_s, u"B"_s};
    switch (input.byte() % 4) {
    case 0:
        return database.createTable(drawSchema(input, names));
    case 1: {
        const QString table = drawName(input, names);
        return database.createIndex(table, drawIndex(input, names, database.table(table)));
    }
    case 2:
        return database.createRelationship({.name = drawName(input, names),
                                            .table = drawName(input, names),
                                            .columns = {drawName(input, columns)},
                                            .foreignTable = drawName(input, names),
                                            .foreignColumns = {drawName(input, columns)},
                                            .enforced = input.byte() % 4 != 0});
    default:
        return database.dropTable(drawName(input, names));
    }
}

void look(storage::Database &database)
{
    for (const QString &name : database.tableNames()) {
        storage::Table *table = database.table(name);
        fuzz::require(table != nullptr, u"a table that is listed is missing"_s);
        fuzz::require(!table->schema().columns.empty() || table->rowEstimate() >= 0, u"a table without columns"_s);
    }
    database.relationships();
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes);
    const JetFile file(input);
    bool sound = file.fault().isEmpty();
    const bool looked = succeeds([&] { look(*file.open(true)); });
    require(looked || !sound, u"a good file cannot be read"_s);

    std::unique_ptr<jet::JetDatabase> database;
    if (!succeeds([&] { database = file.open(false); }))
        return;
    for (int i = 0; i < 3 && !input.atEnd(); ++i) {
        const QByteArray before = file.content();
        const bool changed = succeeds([&] { define(*database, input); });
        require(changed || file.content() == before, u"a failed definition has left something"_s);
        const QString fault = file.fault();
        require(fault.isEmpty() || !sound, u"a definition has spoiled a good file: "_s + fault);
        sound = fault.isEmpty();
    }
}
