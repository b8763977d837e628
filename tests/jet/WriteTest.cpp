// Writing rows: what tables demand of values, long values, scopes, and what is not written at all.
#include <algorithm>

#include <QDateTime>

#include "platform/jet/JetDatabase.h"
#include "platform/jet/Rule.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::RowId;
using storage::Type;
using storage::Value;
using Kind = storage::StorageError::Kind;

namespace {

class WriteTest : public JetFileTest
{
protected:
    enum Columns { ID, Number, Kind_, Memo, Picture, Active, Changed };

    void SetUp() override
    {
        database->createTable({.name = u"Konten"_s,
                               .columns = {{.name = u"ID"_s, .type = Type::Long, .autonumber = true},
                                           {.name = u"Nummer"_s,
                                            .size = 10,
                                            .required = true,
                                            .zeroLengthAllowed = false,
                                            .defaultValue = u"\"neu\""_s},
                                           {.name = u"Art"_s,
                                            .type = Type::Integer,
                                            .defaultValue = u"=0"_s,
                                            .validationRule = u"Between 0 And 90 Or =-1"_s,
                                            .validationText = u"Welche Art?"_s},
                                           {.name = u"Bemerkung"_s, .type = Type::Memo},
                                           {.name = u"Bild"_s, .type = Type::LongBinary},
                                           {.name = u"Aktiv"_s, .type = Type::Boolean, .defaultValue = u"Yes"_s},
                                           {.name = u"Geändert"_s, .type = Type::DateTime, .defaultValue = u"Now()"_s}},
                               .indexes = {{.name = u"PrimaryKey"_s, .columns = {{ID}}, .primary = true},
                                           {.name = u"iNummer"_s, .columns = {{Number, true}}, .unique = true},
                                           {.name = u"iArt"_s, .columns = {{Kind_}, {Changed, true}}}}});
    }

    storage::Table &accounts() { return table(u"KONTEN"_s); }
    Value stored(RowId id, int column) { return accounts().row(id)->value(column); }
    RowId insert(const QString &number) { return accounts().insert({{{Number, number}}}); }
    std::size_t rows() { return count(*accounts().scan()); }
};

INSTANTIATE_TEST_SUITE_P(Files, WriteTest, testing::ValuesIn(fileKinds), testing::PrintToStringParamName());

} // namespace

TEST_P(WriteTest, FillsInNumbersAndDefaults)
{
    const RowId first = accounts().insert({});
    EXPECT_EQ(stored(first, ID), Value(std::int64_t{1}));
    EXPECT_EQ(stored(first, Number), Value(u"neu"_s));
    EXPECT_EQ(stored(first, Kind_), Value(std::int64_t{0}));
    EXPECT_EQ(stored(first, Active), Value(true));
    EXPECT_EQ(stored(first, Memo), Value());
    const QDateTime changed
        = QDate(1899, 12, 30).startOfDay().addDays(qint64(std::get<storage::DateTime>(stored(first, Changed)).days));
    EXPECT_LE(changed.date().daysTo(QDate::currentDate()), 1);

    accounts().insert({{{ID, std::int64_t{40}}, {Number, u"b"_s}}});
    EXPECT_EQ(stored(insert(u"c"_s), ID), Value(std::int64_t{41}));
    accounts().insert({{{ID, std::int64_t{7}}, {Number, u"d"_s}}});
    database = file.open();
    EXPECT_EQ(stored(insert(u"e"_s), ID), Value(std::int64_t{42}));
    EXPECT_EQ(accounts().rowEstimate(), 5);
}

TEST_P(WriteTest, RefusesWhatTheTableDoesNotTakeAndChangesNothing)
{
    insert(u"D010000"_s);
    const RowId other = insert(u"D010001"_s);
    struct Row {
        const char *name;
        std::vector<Assignment> values;
        Kind error;
        QString item;
    };
    const Row rows[] = {
        {"required", {{Number, Value()}}, Kind::Required, u"Nummer"_s},
        {"empty text", {{Number, u""_s}}, Kind::ZeroLength, u"Nummer"_s},
        {"too long", {{Number, u"12345678901"_s}}, Kind::TooLong, u"Nummer"_s},
        {"same but for capitals", {{Number, u"d010000 "_s}}, Kind::Duplicate, u"iNummer"_s},
        {"out of range", {{Number, u"x"_s}, {Kind_, std::int64_t{32768}}}, Kind::OutOfRange, u"Art"_s},
        {"rule", {{Number, u"x"_s}, {Kind_, std::int64_t{91}}}, Kind::RuleViolated, u"Art"_s},
        {"rule and Null", {{Number, u"x"_s}, {Kind_, Value()}}, Kind::RuleViolated, u"Art"_s},
        {"wrong type", {{Number, u"x"_s}, {Changed, u"gestern"_s}}, Kind::WrongType, u"Geändert"_s},
    };
    const QByteArray before = file.content();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QString item;
        EXPECT_EQ(kindOf([&] { accounts().insert(row.values); }, &item), row.error);
        EXPECT_EQ(item, row.item);
        EXPECT_EQ(kindOf([&] { accounts().update(other, row.values); }), row.error);
    }
    if (!GetParam().jet4()) {
        EXPECT_EQ(kindOf([&] { insert(u"\u0416"_s); }), Kind::NotEncodable);
    }
    EXPECT_EQ(file.content(), before);
}

TEST_P(WriteTest, KeepsLongValuesOfEveryLength)
{
    const auto ofLength = [](qsizetype size) {
        return std::vector<Assignment>{{Memo, QString(size, u'ß')}, {Picture, QByteArray(size, 'b')}};
    };
    std::vector<std::pair<RowId, qsizetype>> ids;
    for (const qsizetype size :
         {0, 1, 32, 33, 64, 65, 2030, 2032, 2033, 2036, 2037, 4072, 4076, 4079, 4080, 4081, 70000}) {
        ids.emplace_back(insert(QString::number(size)), size);
        accounts().update(ids.back().first, ofLength(size));
    }
    // Freed pages are used again: a second round needs no more room than the first.
    const qsizetype length = file.content().size();
    for (int round = 0; round < 3; ++round) {
        for (const auto &[id, size] : ids)
            accounts().update(id, {{{Memo, QString(70000 - size, u'x')}, {Picture, Value()}}});
        for (const auto &[id, size] : ids)
            accounts().update(id, ofLength(size));
    }
    EXPECT_LT(file.content().size(), length * 12);
    database = file.open();
    for (const auto &[id, size] : ids) {
        EXPECT_EQ(stored(id, Memo), Value(QString(size, u'ß')));
        EXPECT_EQ(stored(id, Picture), Value(QByteArray(size, 'b')));
        accounts().remove(id);
    }
    EXPECT_EQ(accounts().rowEstimate(), 0);
}

TEST_P(WriteTest, MovesRowsThatGrowAndFindsThemAtTheirAddress)
{
    storage::TableSchema schema{.name = u"Breit"_s, .columns = {}, .indexes = {{u"iT0"_s, {{0}}}}};
    for (int i = 0; i < 12; ++i)
        schema.columns.push_back({u"T%1"_s.arg(i), Type::Text, 150});
    database->createTable(schema);
    storage::Table &wide = table(u"Breit"_s);
    for (int i = 0; i < 600; ++i) // pages whose slots are all used up are given back
        wide.remove(wide.insert({}));
    std::vector<RowId> ids;
    for (int i = 0; i < 40; ++i)
        ids.push_back(wide.insert({{{0, QString::number(i)}, {5, u"kurz"_s}}}));
    for (const int length : {10, 60, 110, 30, 140, 0}) {
        std::vector<Assignment> values;
        for (int i = 1; i < 12; ++i)
            values.push_back({i, QString(length, QChar(u'a' + i))});
        for (const RowId id : ids)
            wide.update(id, values);
        for (std::size_t i = 0; i < ids.size(); ++i) {
            EXPECT_EQ(wide.row(ids[i])->value(0), Value(QString::number(i)));
            EXPECT_EQ(wide.row(ids[i])->value(11), Value(QString(length, u'l')));
        }
        EXPECT_EQ(count(*wide.scan()), ids.size());
        EXPECT_EQ(file.faults(), QString());
    }
}

TEST_P(WriteTest, GrowsBeyondTheReachOfInlineMaps)
{
    std::vector<RowId> ids;
    const auto scope = database->beginWrite();
    for (int i = 0; i < 400; ++i) {
        ids.push_back(insert(QString::number(i)));
        accounts().update(ids.back(), {{{Memo, QString(500, u'x')}, {Picture, QByteArray(30000, 'p')}}});
    }
    scope->commit();
    EXPECT_GT(file.content().size() / GetParam().pageSize(), GetParam().jet4() ? 2000 : 4000);
    EXPECT_EQ(file.faults(), QString());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        EXPECT_EQ(stored(ids[i], Number), Value(QString::number(i)));
        accounts().remove(ids[i]);
    }
    EXPECT_EQ(rows(), 0U);
}

TEST_P(WriteTest, FindsRowsThroughIndexes)
{
    for (int i = 0; i < 300; ++i) {
        accounts().insert({{{Number, u"D%1"_s.arg(10000 + 7 * i)},
                            {Kind_, std::int64_t{i % 90}},
                            {Changed, storage::DateTime{40000.0 + i}}}});
    }
    const auto range
        = [&](const QString &name, const storage::Bound &lower, const storage::Bound &upper, bool backwards) {
              const auto &indexes = accounts().schema().indexes;
              const auto index = std::ranges::find(indexes, name, &storage::Index::name) - indexes.begin();
              return accounts().range({static_cast<int>(index), lower, upper, backwards});
          };
    const storage::Bound behind{{u"d10700"_s}, false}; // the index is descending
    const storage::Bound upTo{{u"D10070"_s}};
    EXPECT_EQ(count(*range(u"iNummer"_s, behind, upTo, false)), 90U);
    auto cursor = range(u"iNummer"_s, behind, upTo, true);
    ASSERT_TRUE(cursor->next());
    EXPECT_EQ(cursor->value(Number), Value(u"D10070"_s));
    const storage::Bound five{{std::int64_t{5}}};
    cursor = range(u"iArt"_s, five, five, false);
    ASSERT_TRUE(cursor->next());
    EXPECT_EQ(cursor->value(Changed), Value(storage::DateTime{40275.0}));
    EXPECT_EQ(count(*cursor), 3U);
}

TEST_P(WriteTest, UndoesScopesThatAreNotCommitted)
{
    insert(u"1"_s);
    const QByteArray before = file.content();
    {
        const auto scope = database->beginWrite();
        insert(u"2"_s);
        database->createTable({u"Neu"_s, {{u"A"_s, Type::Long}}});
        EXPECT_EQ(kindOf([&] { insert(u"1"_s); }), Kind::Duplicate); // undoes itself only
        EXPECT_EQ(rows(), 2U);
        EXPECT_NE(database->table(u"Neu"_s), nullptr);
    }
    EXPECT_EQ(file.content(), before);
    EXPECT_EQ(rows(), 1U);
    EXPECT_EQ(database->table(u"Neu"_s), nullptr);
}

TEST_P(WriteTest, OpensOnlyWhatItMay)
{
    const RowId id = insert(u"1"_s);
    accounts().remove(id);
    EXPECT_EQ(accounts().row(id), nullptr);
    EXPECT_EQ(kindOf([&] { accounts().remove(id); }), Kind::RowGone);
    EXPECT_EQ(kindOf([&] { table(u"MSysObjects"_s).insert({}); }), Kind::Unsupported);
    database.reset();

    jet::JetDriver driver;
    const QString password = GetParam().password;
    const auto opening = [&](const QString &path, const QString &with) {
        return kindOf([&] { driver.open({path, with}); });
    };
    if (!password.isEmpty()) {
        EXPECT_EQ(opening(file.path(), {}), Kind::WrongPassword);
        EXPECT_EQ(opening(file.path(), password.toLower()), Kind::WrongPassword);
    }
    EXPECT_EQ(opening(file.path() + u'x', password), Kind::Missing);
    const auto making = [&](const storage::OpenRequest &request) {
        return kindOf([&] { driver.create(request, GetParam().version); });
    };
    EXPECT_EQ(making({file.path()}), Kind::AlreadyExists);
    EXPECT_EQ(making({file.path() + u'x', u"einundzwanzig Zeichen"_s}), Kind::TooLong);
    EXPECT_EQ(opening(file.path() + u'x', {}), Kind::Missing);

    // A word of the commit area that says: somebody was in the middle of writing.
    const QByteArray sound = file.content();
    QByteArray interrupted = sound;
    interrupted.replace((GetParam().jet4() ? 0xE00 : 0x600) + 6, 2, QByteArray(2, '\0'));
    file.setContent(interrupted);
    database = file.open();
    EXPECT_EQ(kindOf([&] { insert(u"2"_s); }), Kind::Damaged);
    EXPECT_EQ(rows(), 0U);
    database.reset();
    file.setContent(sound);
}

TEST(Rules, AreKeptOrRefused)
{
    struct Row {
        QString rule;
        Value value;
        std::optional<bool> holds;
    };
    const Row rows[] = {
        {u">=0"_s, std::int64_t{0}, true},
        {u">=0"_s, -0.5, false},
        {u">0 And <10"_s, storage::Currency{100000}, false},
        {u"[Feld]>0 Or Is Null"_s, Value(), true},
        {u">0"_s, Value(), false},
        {u"Is Not Null"_s, Value(), false},
        {u"In (\"a\", 'B')"_s, u"b"_s, true},
        {u"Not In (1;2)"_s, std::int64_t{2}, false},
        {u"Like \"D[0-9]#*\""_s, u"d12x"_s, true},
        {u"Not Like \"*[!a-z]*\""_s, u"ab1"_s, false},
        {u"\"Ja\" Or \"Nein\""_s, u"NEIN"_s, true},
        {u"Between #1/2/2003# And #2003-02-01#"_s, storage::DateTime{37652}, true},
        {u"<Date()+1"_s, storage::DateTime{0}, {}},
        {u"Len([Feld])>3"_s, u"abcd"_s, {}},
        {u"[Anderes]>3"_s, std::int64_t{4}, {}},
        {u"((((1"_s, std::int64_t{1}, {}},
        {QString(100000, u'('), Value(), {}},
        {u"Not "_s.repeated(100000), Value(), {}},
    };
    for (const Row &row : rows) {
        const auto rule = jet::Rule::parse(row.rule, u"Feld"_s, true);
        EXPECT_EQ(rule ? std::optional(rule->holds(row.value)) : std::nullopt, row.holds)
            << qPrintable(row.rule.left(40));
    }
}
