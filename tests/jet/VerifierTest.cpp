// The check of a whole file finds each kind of contradiction.
#include <algorithm>

#include "platform/jet/Catalog.h"
#include "platform/jet/DataPage.h"
#include "platform/jet/Format.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableWriter.h"
#include "platform/jet/UsageMap.h"
#include "platform/jet/Verifier.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using jet::RowPointer;
using jet::UsageMap;

namespace {

/// Writes wrong things into a sound file.
struct Spoiler {
    explicit Spoiler(const TestFile &test)
        : file(storage::systemFiles(), {test.path()})
    {
        for (const jet::CatalogEntry &entry : jet::Catalog(file, codec).entries()) {
            if (entry.name == u"Parent" || entry.name == u"Child")
                (entry.name == u"Child" ? child : table) = jet::readTableDef(file, codec, entry.id);
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
    jet::TextCodec codec = file.isJet4() ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
    jet::TableDef table{};
    jet::TableDef child{};
    jet::PageScope scope{file};
};

struct Fault {
    const char16_t *found;
    std::function<void(Spoiler &)> spoil;
    bool isNote = false; ///< other programs' good files have it, too
};

const Fault faults[] = {
    {u"gezählt sind 42", [](Spoiler &s) { jet::TableCounters(s.file, s.table.page).addRows(2); }},
    {u"zuletzt vergebene aber 7", [](Spoiler &s) { jet::TableCounters(s.file, s.table.page).setLastAutonumber(7); }},
    {u"sie gilt als frei", [](Spoiler &s) { UsageMap(s.file, jet::globalFreeMap).add(s.rowPage()); }},
    {u"weder frei noch in Gebrauch", [](Spoiler &s) { s.file.allocate(); }, true},
    {u"sie hat zwei Aufgaben", [](Spoiler &s) { UsageMap(s.file, s.table.ownedMap).add(s.index().rootPage); }},
    {u"fehlt in der Seitenliste", [](Spoiler &s) { UsageMap(s.file, s.index().map).remove(s.index().rootPage); }},
    {u"gehört ihr aber nicht", [](Spoiler &s) { UsageMap(s.file, s.table.freeMap).add(s.index().rootPage); }},
    {u"39 Einträge für 40 Zeilen", [](Spoiler &s) { s.replaceEntry({}, {}); }},
    {u"der Schlüssel für Zeile", [](Spoiler &s) { s.replaceEntry(std::byte{0x77}, {}); }},
    {u"die es nicht gibt",
     [](Spoiler &s) {
         s.replaceEntry({}, RowPointer{s.rowPage(), 200});
     }},
    {u"zeigt keine andere (2-mal, dies ist die erste)", // moved rows' bodies, as other programs leave them
     [](Spoiler &s) {
         jet::DataPageWriter writer(s.file, UsageMap(s.file, s.table.ownedMap).pages().back());
         writer.append({}, jet::SlotKind::Body);
         writer.append({}, jet::SlotKind::Body);
     },
     true},
    {u"gehört ihr aber nicht", // a page of long values
     [](Spoiler &s) {
         UsageMap map(s.file, s.memo().longOwnedMap);
         map.remove(map.pages().front());
     }},
    {u"gehört zu keinem langen Wert",
     [](Spoiler &s) {
         jet::DataPageWriter writer(s.file, UsageMap(s.file, s.memo().longFreeMap).pages().front());
         writer.append(jet::KeyBytes(5));
     },
     true},
    {u"von Child fehlt die Zeile in Parent",
     [](Spoiler &s) {
         const jet::ColumnValue reference{&s.child.columns.front(), std::int64_t{4711}};
         jet::TableWriter(s.file, s.codec, s.child).insert(std::span(&reference, 1));
     }},
    {u"hat kein Gegenstück",
     [](Spoiler &s) {
         for (jet::LogicalIndexDef &index : s.table.logicalIndexes)
             index.partner = index.partner ? std::optional(*index.partner + 7) : std::nullopt;
         jet::writeTableDef(s.file, s.codec, s.table);
     }},
};

class VerifierTest : public testing::TestWithParam<FileKind>
{ };

INSTANTIATE_TEST_SUITE_P(Files, VerifierTest, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());

} // namespace

TEST_P(VerifierTest, TellsWhatIsWrong)
{
    const TestFile file(GetParam());
    fill(*file.open());
    EXPECT_EQ(file.faults(), QString());
    const QByteArray sound = file.content();
    for (const Fault &fault : faults) {
        file.setContent(sound);
        {
            Spoiler spoiler(file);
            fault.spoil(spoiler);
            spoiler.scope.commit();
        }
        const QString found = file.faults();
        EXPECT_TRUE(found.contains(QStringView(fault.found))) << qPrintable(found);
        jet::PageFile checked(storage::systemFiles(), {file.path(), {}, true});
        EXPECT_EQ(jet::verify(checked).faults.empty(), fault.isNote) << qPrintable(found);
    }
}
