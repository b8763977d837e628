// A dBASE or FoxPro table with its memo file: read, then written to.
#include "fuzz/Patches.h"
#include "fuzz/TableWork.h"
#include "platform/dbf/DbfDriver.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Type;

namespace {

struct Files {
    QByteArray table;
    QByteArray memos;
};

/// A table of every kind of field with three records, one of them removed, as FoxPro has it.
Files foxPro()
{
    const fuzz::Folder folder;
    const auto database = dbf::DbfDriver().open({.path = folder.path({})});
    storage::TableSchema schema{u"KUNDEN"_s, {}};
    schema.columns = {{.name = u"NAME"_s, .type = Type::Text, .size = 12},
                      {.name = u"ZAHL"_s, .type = Type::Double},
                      {.name = u"GANZ"_s, .type = Type::Integer},
                      {.name = u"TAG"_s, .type = Type::DateTime},
                      {.name = u"JA"_s, .type = Type::Boolean},
                      {.name = u"NOTIZ"_s, .type = Type::Memo},
                      {.name = u"NOTIZ2"_s, .type = Type::Memo}};
    database->createTable(schema);
    storage::Table &table = *database->table(u"KUNDEN"_s);
    table.insert(std::vector<storage::Assignment>{
        {0, u"Müller"_s}, {1, 12.5}, {3, storage::DateTime{37000}}, {4, true}, {5, u"schön"_s}});
    const storage::RowId removed = table.insert(std::vector<storage::Assignment>{{0, u"Weg"_s}, {5, u"alt"_s}});
    table.insert(std::vector<storage::Assignment>{{0, u"Größe"_s}, {2, std::int64_t{-7}}, {6, QString(300, u'm')}});
    table.remove(removed);
    return {folder.get(u"KUNDEN.DBF"_s), folder.get(u"KUNDEN.FPT"_s)};
}

/// The same table as dBASE III or IV has it: texts end at a mark, or have a head with their length.
Files dBase(const Files &foxPro, bool fourth)
{
    Files files{foxPro.table, QByteArray(512, '\0')};
    files.table[0] = static_cast<char>(fourth ? 0x8B : 0x83);
    files.memos[21] = 2; // blocks of 512 bytes
    files.table.replace("         8", "         1");
    if (fourth)
        files.memos += QByteArray("\xFF\xFF\x08\0\x0D\0\0\0", 8);
    files.memos += "schön\x1A\x1A";
    files.memos += QByteArray(512, ' ');
    return files;
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    static const Files fox = foxPro();
    static const Files bases[] = {fox, dBase(fox, false), dBase(fox, true), {fox.table, {}}};
    static const QString memoNames[] = {u"KUNDEN.FPT"_s, u"KUNDEN.DBT"_s, u"KUNDEN.DBT"_s, u"KUNDEN.FPT"_s};
    static const Folder folder;

    Input input(bytes);
    const std::size_t kind = input.byte() % std::size(bases);
    folder.clear();
    Files files{patched(bases[kind].table, input, 512), patched(bases[kind].memos, input, 512)};
    folder.put(u"KUNDEN.DBF"_s, files.table);
    if (!files.memos.isEmpty())
        folder.put(memoNames[kind], files.memos);

    const auto database = dbf::DbfDriver().open({.path = folder.path({})});
    bool sound = succeeds([&] { readDatabase(*database); });
    for (int i = 0; i < 8 && !input.atEnd(); ++i) {
        const bool changed = succeeds([&] { change(*database, input); });
        const Files after{folder.get(u"KUNDEN.DBF"_s),
                          files.memos.isEmpty() ? QByteArray() : folder.get(memoNames[kind])};
        if (!changed)
            require(after.table == files.table && after.memos == files.memos, u"a failed write has left something"_s);
        files = after;
        const bool stillSound = succeeds([&] { readDatabase(*database); });
        require(stillSound || !sound, u"a write has spoiled a good table"_s);
        sound = stillSound;
    }
}
