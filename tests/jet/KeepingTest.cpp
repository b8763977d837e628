// Whole tables under random changes, against a model in memory.
#include "tests/jet/RandomTable.h"

using namespace Qt::StringLiterals;

namespace {

class Keeping : public testing::TestWithParam<FileKind>
{ };

INSTANTIATE_TEST_SUITE_P(Files, Keeping, testing::ValuesIn(fileKinds), testing::PrintToStringParamName());

} // namespace

TEST_P(Keeping, OfTablesAndIndexesAgreesWithTheModel)
{
    constexpr int changes = 20000;
    constexpr int changesPerScope = 50;
    constexpr int changesPerCheck = 500;
    const bool jet4 = GetParam().jet4();
    const TestFile file(GetParam());
    auto database = file.open();
    std::vector<RandomTable> tables;
    for (const QString &plan :
         {u"+A"_s, u"K j"_s, u"B c D"_s, u"JdA e F g"_s, jet4 ? u"H i L o Mk"_s : u"H i L M bJ"_s})
        tables.emplace_back(*database, u"T%1"_s.arg(tables.size()), plan, jet4);
    Chance chance(GetParam().pageKey != 0 ? 815 : 4711);
    for (int done = 0; done < changes && !HasFailure(); done += changesPerScope) {
        const auto before = tables;
        {
            const auto scope = database->beginWrite();
            const unsigned insertShare = done < changes / 2 ? 60 : 40;
            for (int i = 0; i < changesPerScope; ++i)
                chance.any(tables)->change(*database, chance, insertShare, 1);
            if (chance.below(10) == 0)
                tables = before; // undone at the scope's end
            else
                scope->commit();
        }
        if ((done + changesPerScope) % changesPerCheck != 0)
            continue;
        ASSERT_EQ(file.faults(), QString()) << "after " << done + changesPerScope << " changes";
        for (const RandomTable &table : tables)
            ASSERT_NO_FATAL_FAILURE(table.compare(*database));
    }
    database = file.open(true);
    for (const RandomTable &table : tables)
        ASSERT_NO_FATAL_FAILURE(table.compare(*database));
}
