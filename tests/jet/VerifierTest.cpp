// The check of a whole file finds each kind of contradiction.
#include <functional>

#include <gmock/gmock.h>

#include "platform/jet/Catalog.h"
#include "platform/jet/DataPage.h"
#include "platform/jet/Format.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableWriter.h"
#include "platform/jet/UsageMap.h"
#include "tests/jet/TestFile.h"

using namespace Qt::StringLiterals;
using jet::RowPointer;
using jet::UsageMap;
using storage::Type;

namespace {

/// Writes wrong things into a sound file.
class Spoiler
{
public:
    explicit Spoiler(const TestFile &test)
        : file(storage::systemFiles(), {test.path()})
        , codec(file.isJet4() ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252))
        , scope(file)
    {
        for (const jet::CatalogEntry &entry : jet::Catalog(file, codec).entries()) {
            if (entry.name == u"Parent")
                table = jet::readTableDef(file, codec, entry.id);
            if (entry.name == u"Child")
                child = jet::readTableDef(file, codec, entry.id);
        }
    }

    const jet::IndexDef &index() const { return table.indexes.front(); }
    jet::PageNo rowPage() { return UsageMap(file, table.ownedMap).pages().front(); }
    const jet::ColumnDef &memo() const
    {
        return *std::ranges::find(table.columns, jet::ColumnType::Memo, &jet::ColumnDef::type);
    }

    /// Takes the first entry out of the index, and puts one with another key or row in its place.
    void replaceEntry(std::optional<std::byte> lastKeyByte, std::optional<RowPointer> otherRow)
    {
        jet::IndexCursor cursor(file, index(), table.page);
        cursor.next();
        jet::KeyBytes key(cursor.key().begin(), cursor.key().end());
        const RowPointer row = cursor.row();
        jet::IndexTree tree(file, index(), table.page);
        tree.remove(key, row);
        if (lastKeyByte)
            key.back() = *lastKeyByte;
        if (lastKeyByte || otherRow)
            tree.insert(key, otherRow.value_or(row), jet::IndexTree::Duplicates::Allowed);
    }

    jet::PageFile file;
    jet::TextCodec codec;
    jet::TableDef table{};
    jet::TableDef child{};
    jet::PageScope scope;
};

struct Fault {
    const char *name;
    std::function<void(Spoiler &)> spoil;
    const char16_t *found;
};

const Fault faults[] = {
    {"NothingWrong", [](Spoiler &) {}, u""},
    {"RowsMissing", [](Spoiler &s) { jet::TableCounters(s.file, s.table.page).addRows(2); }, u"gezählt sind 42"},
    {"AutonumberTooLow", [](Spoiler &s) { jet::TableCounters(s.file, s.table.page).setLastAutonumber(7); },
     u"zuletzt vergebene aber 7"},
    {"PageUsedAndFree", [](Spoiler &s) { UsageMap(s.file, jet::globalFreeMap).add(s.rowPage()); },
     u"sie gilt als frei"},
    {"PageLost", [](Spoiler &s) { s.file.allocate(); }, u"weder frei noch in Gebrauch"},
    {"PageWithTwoUses", [](Spoiler &s) { UsageMap(s.file, s.table.ownedMap).add(s.index().rootPage); },
     u"sie hat zwei Aufgaben"},
    {"IndexPageNotListed", [](Spoiler &s) { UsageMap(s.file, s.index().map).remove(s.index().rootPage); },
     u"fehlt in der Seitenliste"},
    {"FreePageOfAnother", [](Spoiler &s) { UsageMap(s.file, s.table.freeMap).add(s.index().rootPage); },
     u"gehört ihr aber nicht"},
    {"EntryMissing", [](Spoiler &s) { s.replaceEntry({}, {}); }, u"39 Einträge für 40 Zeilen"},
    {"WrongKey", [](Spoiler &s) { s.replaceEntry(std::byte{0x77}, {}); }, u"der Schlüssel für Zeile"},
    {"EntryOfNoRow",
     [](Spoiler &s) {
         s.replaceEntry({}, RowPointer{s.rowPage(), 200});
     },
     u"die es nicht gibt"},
    {"BodyThatNobodyPointsTo",
     [](Spoiler &s) {
         jet::DataPageWriter writer(s.file, UsageMap(s.file, s.table.ownedMap).pages().back());
         writer.append({}, jet::SlotKind::Body);
     },
     u"zeigt keine andere"},
    {"LongValuePageOfAnother",
     [](Spoiler &s) {
         UsageMap map(s.file, s.memo().longOwnedMap);
         map.remove(map.pages().front());
     },
     u"gehört ihr aber nicht"},
    {"LongValueOfNobody",
     [](Spoiler &s) {
         jet::DataPageWriter writer(s.file, UsageMap(s.file, s.memo().longFreeMap).pages().front());
         writer.append(jet::KeyBytes(5));
     },
     u"gehört zu keinem langen Wert"},
    {"ChildWithoutParent",
     [](Spoiler &s) {
         const std::int64_t nobody = 4711;
         const jet::ColumnValue reference{&s.child.columns.front(), nobody};
         jet::TableWriter(s.file, s.codec, s.child).insert(std::span(&reference, 1));
     },
     u"von Child fehlt die Zeile in Parent"},
    {"RelationshipWithoutPartner",
     [](Spoiler &s) {
         jet::TableDef changed = s.table;
         for (jet::LogicalIndexDef &index : changed.logicalIndexes)
             index.partner = index.partner ? std::optional(*index.partner + 7) : std::nullopt;
         jet::writeTableDef(s.file, s.codec, changed);
     },
     u"hat kein Gegenstück"},
};

class VerifierTest : public testing::TestWithParam<std::tuple<storage::FileVersion, Fault>>
{ };

INSTANTIATE_TEST_SUITE_P(Faults, VerifierTest,
                         testing::Combine(testing::Values(storage::FileVersion::Jet3, storage::FileVersion::Jet4),
                                          testing::ValuesIn(faults)),
                         [](const auto &kind) {
                             const bool jet4 = std::get<0>(kind.param) == storage::FileVersion::Jet4;
                             return std::string(std::get<1>(kind.param).name) + (jet4 ? "4" : "3");
                         });

/// Two tables with a relationship, 40 rows and a long memo in each.
void fill(const TestFile &file)
{
    const auto database = file.open();
    database->createTable({.name = u"Parent"_s,
                           .columns = {{.name = u"Id"_s, .type = Type::Long, .autonumber = true},
                                       {.name = u"Notes"_s, .type = Type::Memo}},
                           .indexes = {{.name = u"iId"_s, .columns = {{0}}, .unique = true, .primary = true}}});
    database->createTable({.name = u"Child"_s, .columns = {{.name = u"Ref"_s, .type = Type::Long}}});
    database->createRelationship({.name = u"r"_s,
                                  .table = u"Parent"_s,
                                  .columns = {u"Id"_s},
                                  .foreignTable = u"Child"_s,
                                  .foreignColumns = {u"Ref"_s}});
    const auto scope = database->beginWrite();
    for (int i = 0; i < 40; ++i)
        database->table(u"Parent"_s)->insert(std::vector<storage::Assignment>{{1, QString(100 + i, u'n')}});
    scope->commit();
}

} // namespace

TEST_P(VerifierTest, TellsWhatIsWrong)
{
    const auto &[version, fault] = GetParam();
    const TestFile file(version);
    fill(file);
    {
        Spoiler spoiler(file);
        fault.spoil(spoiler);
        spoiler.scope.commit();
    }
    const QString found = file.faults();
    EXPECT_TRUE(found.contains(QStringView(fault.found))) << qPrintable(found);
    EXPECT_EQ(found.isEmpty(), QStringView(fault.found).isEmpty());
}
