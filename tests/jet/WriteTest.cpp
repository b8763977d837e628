// Writing rows: what tables demand of values, long values, rows that move, scopes and other users of the file.
#include <algorithm>

#include <QDateTime>

#include "platform/jet/Rule.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace {

using Kind = StorageError::Kind;

storage::Column column(const QString &name, Type type, int size = 0)
{
    storage::Column made;
    made.name = name;
    made.type = type;
    made.size = size;
    return made;
}

class WriteTest : public JetFileTest
{
protected:
    enum Columns { ID, Number, Kind_, Memo, Picture, Active, Changed };

    void SetUp() override
    {
        storage::TableSchema schema;
        schema.name = u"Konten"_s;
        schema.columns = {column(u"ID"_s, Type::Long),          column(u"Nummer"_s, Type::Text, 10),
                          column(u"Art"_s, Type::Integer),      column(u"Bemerkung"_s, Type::Memo),
                          column(u"Bild"_s, Type::LongBinary),  column(u"Aktiv"_s, Type::Boolean),
                          column(u"Geändert"_s, Type::DateTime)};
        schema.columns[ID].autonumber = true;
        schema.columns[Number].required = true;
        schema.columns[Number].zeroLengthAllowed = false;
        schema.columns[Number].defaultValue = u"\"neu\""_s;
        schema.columns[Kind_].defaultValue = u"=0"_s;
        schema.columns[Kind_].validationRule = u"Between 0 And 90 Or =-1"_s;
        schema.columns[Kind_].validationText = u"Welche Art?"_s;
        schema.columns[Active].defaultValue = u"Yes"_s;
        schema.columns[Changed].defaultValue = u"Now()"_s;
        storage::Index unique = index(u"iNummer"_s, {{Number, true}});
        unique.unique = true;
        schema.indexes = {primaryKey(ID), unique, index(u"iArt"_s, {{Kind_, false}, {Changed, true}})};
        database().createTable(schema);
    }

    storage::Table &accounts() { return table(u"KONTEN"_s); }
    Value stored(storage::RowId id, int column) { return accounts().row(id)->value(column); }
    storage::RowId insert(const QString &number)
    {
        return accounts().insert(std::vector<Assignment>{{Number, number}});
    }
};

} // namespace

TEST_P(WriteTest, FillsInNumbersAndDefaults)
{
    const storage::RowId first = accounts().insert({});
    EXPECT_EQ(stored(first, ID), Value(std::int64_t{1}));
    EXPECT_EQ(stored(first, Number), Value(u"neu"_s));
    EXPECT_EQ(stored(first, Kind_), Value(std::int64_t{0}));
    EXPECT_EQ(stored(first, Active), Value(true));
    EXPECT_EQ(stored(first, Memo), Value());
    const QDateTime changed
        = QDate(1899, 12, 30).startOfDay().addDays(qint64(std::get<storage::DateTime>(stored(first, Changed)).days));
    EXPECT_LE(changed.date().daysTo(QDate::currentDate()), 1);

    accounts().insert(std::vector<Assignment>{{ID, std::int64_t{40}}, {Number, u"b"_s}});
    EXPECT_EQ(stored(insert(u"c"_s), ID), Value(std::int64_t{41}));
    accounts().insert(std::vector<Assignment>{{ID, std::int64_t{7}}, {Number, u"d"_s}});
    reopen();
    EXPECT_EQ(stored(insert(u"e"_s), ID), Value(std::int64_t{42}));
    EXPECT_EQ(accounts().rowEstimate(), 5);
}

TEST_P(WriteTest, RefusesWhatTheTableDoesNotTakeAndChangesNothing)
{
    insert(u"D010000"_s);
    const storage::RowId other = insert(u"D010001"_s);
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
    const QByteArray before = content();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const StorageError inserted = errorOf([&] { accounts().insert(row.values); });
        EXPECT_EQ(inserted.kind(), row.error);
        EXPECT_EQ(inserted.item(), row.item);
        EXPECT_EQ(errorOf([&] { accounts().update(other, row.values); }).kind(), row.error);
    }
    if (!GetParam().jet4()) {
        EXPECT_EQ(errorOf([&] { insert(u"\u0416"_s); }).kind(), Kind::NotEncodable);
    }
    EXPECT_EQ(content(), before);
}

TEST_P(WriteTest, KeepsLongValuesOfEveryLength)
{
    std::vector<std::pair<storage::RowId, qsizetype>> rows;
    for (const qsizetype size :
         {0, 1, 32, 33, 64, 65, 2030, 2032, 2033, 2036, 2037, 4072, 4076, 4079, 4080, 4081, 70000}) {
        const storage::RowId id = accounts().insert(std::vector<Assignment>{
            {Number, QString::number(size)}, {Memo, QString(size, u'ß')}, {Picture, QByteArray(size, 'b')}});
        rows.emplace_back(id, size);
    }
    reopen();
    for (const auto &[id, size] : rows) {
        EXPECT_EQ(stored(id, Memo), Value(QString(size, u'ß')));
        EXPECT_EQ(stored(id, Picture), Value(QByteArray(size, 'b')));
    }
    // Freed pages are used again: a second round needs no more room than the first.
    const qsizetype length = content().size();
    for (int round = 0; round < 3; ++round) {
        for (const auto &[id, size] : rows)
            accounts().update(id, std::vector<Assignment>{{Memo, QString(70000 - size, u'x')}, {Picture, Value()}});
        for (const auto &[id, size] : rows)
            accounts().update(id,
                              std::vector<Assignment>{{Memo, QString(size, u'ß')}, {Picture, QByteArray(size, 'b')}});
    }
    EXPECT_LT(content().size(), length * 12);
    for (const auto &[id, size] : rows)
        accounts().remove(id);
    EXPECT_EQ(accounts().rowEstimate(), 0);
}

TEST_P(WriteTest, MovesRowsThatGrowAndFindsThemAtTheirAddress)
{
    storage::TableSchema schema{u"Breit"_s, {}};
    for (int i = 0; i < 12; ++i)
        schema.columns.push_back(column(u"T%1"_s.arg(i), Type::Text, 150));
    schema.indexes = {index(u"iT0"_s, {{0, false}})};
    database().createTable(schema);
    storage::Table &wide = table(u"Breit"_s);
    std::vector<storage::RowId> ids;
    for (int i = 0; i < 40; ++i)
        ids.push_back(wide.insert(std::vector<Assignment>{{0, QString::number(i)}, {5, u"kurz"_s}}));
    for (const int length : {10, 60, 110, 30, 140, 0}) {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            std::vector<Assignment> values;
            for (int c = 1; c < 12; ++c)
                values.push_back({c, QString(length, QChar(u'a' + c))});
            wide.update(ids[i], values);
        }
        for (std::size_t i = 0; i < ids.size(); ++i) {
            EXPECT_EQ(wide.row(ids[i])->value(0), Value(QString::number(i)));
            EXPECT_EQ(wide.row(ids[i])->value(11), Value(QString(length, u'l')));
        }
        EXPECT_EQ(count(*wide.scan()), ids.size());
        expectSound();
    }
}

TEST_P(WriteTest, GrowsBeyondTheReachOfInlineMaps)
{
    const auto scope = database().beginWrite();
    const QByteArray picture(30000, 'p');
    std::vector<storage::RowId> ids;
    for (int i = 0; i < 400; ++i) {
        ids.push_back(accounts().insert(
            std::vector<Assignment>{{Number, QString::number(i)}, {Memo, QString(500, u'x')}, {Picture, picture}}));
    }
    scope->commit();
    EXPECT_GT(content().size() / GetParam().pageSize(), GetParam().jet4() ? 2000 : 4000);
    expectSound();
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(stored(ids[i], Number), Value(QString::number(i)));
    for (const storage::RowId id : ids)
        accounts().remove(id);
    EXPECT_EQ(count(*accounts().scan()), 0U);
}

TEST_P(WriteTest, FindsRowsThroughIndexes)
{
    for (int i = 0; i < 300; ++i) {
        accounts().insert(std::vector<Assignment>{{Number, u"D%1"_s.arg(10000 + 7 * i)},
                                                  {Kind_, std::int64_t{i % 90}},
                                                  {Changed, storage::DateTime{40000.0 + i}}});
    }
    const auto position = [&](const QString &name) {
        const auto &indexes = accounts().schema().indexes;
        return static_cast<int>(std::ranges::find(indexes, name, &storage::Index::name) - indexes.begin());
    };
    storage::KeyRange numbers{position(u"iNummer"_s)}; // descending
    numbers.lower = storage::Bound{{u"d10700"_s}, false};
    numbers.upper = storage::Bound{{u"D10070"_s}, true};
    auto cursor = accounts().range(numbers);
    EXPECT_EQ(count(*cursor), 90U);
    numbers.backwards = true;
    cursor = accounts().range(numbers);
    ASSERT_TRUE(cursor->next());
    EXPECT_EQ(cursor->value(Number), Value(u"D10070"_s));
    storage::KeyRange kinds{position(u"iArt"_s)};
    kinds.lower = kinds.upper = storage::Bound{{std::int64_t{5}}, true};
    cursor = accounts().range(kinds);
    ASSERT_TRUE(cursor->next());
    EXPECT_EQ(cursor->value(Changed), Value(storage::DateTime{40275.0}));
    EXPECT_EQ(count(*cursor), 3U);
}

TEST_P(WriteTest, UndoesScopesThatAreNotCommitted)
{
    insert(u"1"_s);
    const QByteArray before = content();
    {
        const auto scope = database().beginWrite();
        insert(u"2"_s);
        database().createTable({u"Neu"_s, {column(u"A"_s, Type::Long)}});
        EXPECT_THROW(insert(u"1"_s), StorageError); // undoes itself only
        EXPECT_EQ(count(*accounts().scan()), 2U);
        EXPECT_NE(database().table(u"Neu"_s), nullptr);
    }
    EXPECT_EQ(content(), before);
    EXPECT_EQ(count(*accounts().scan()), 1U);
    EXPECT_EQ(database().table(u"Neu"_s), nullptr);
    {
        const auto scope = database().beginWrite();
        insert(u"2"_s);
        scope->commit();
    }
    reopen();
    EXPECT_EQ(count(*accounts().scan()), 2U);
}

TEST_P(WriteTest, SeesWhatOthersWriteAndMakesThemWait)
{
    insert(u"1"_s);
    jet::JetDriver driver;
    const auto other = driver.open({path(), GetParam().password});
    storage::Table *same = other->table(u"Konten"_s);
    EXPECT_EQ(count(*same->scan()), 1U);
    insert(u"2"_s);
    EXPECT_EQ(count(*same->scan()), 2U);
    same->insert(std::vector<Assignment>{{Number, u"3"_s}});
    EXPECT_EQ(count(*accounts().scan()), 3U);
    const auto scope = other->beginWrite();
    EXPECT_EQ(errorOf([&] { insert(u"4"_s); }).kind(), Kind::Locked);
}

TEST_P(WriteTest, OpensOnlyWhatItMay)
{
    const storage::RowId id = insert(u"1"_s);
    accounts().remove(id);
    EXPECT_EQ(accounts().row(id), nullptr);
    EXPECT_EQ(errorOf([&] { accounts().remove(id); }).kind(), Kind::RowGone);
    EXPECT_EQ(errorOf([&] { table(u"MSysObjects"_s).insert({}); }).kind(), Kind::Unsupported);
    close();

    jet::JetDriver driver;
    const auto open = [&](const storage::OpenRequest &request) { return driver.open(request); };
    if (!GetParam().password.isEmpty()) {
        EXPECT_EQ(errorOf([&] { open({path()}); }).kind(), Kind::WrongPassword);
        EXPECT_EQ(errorOf([&] { open({path(), GetParam().password.toLower()}); }).kind(), Kind::WrongPassword);
    }
    const auto readOnly = open({path(), GetParam().password, true});
    EXPECT_EQ(errorOf([&] { readOnly->table(u"Konten"_s)->insert({}); }).kind(), Kind::ReadOnly);
    EXPECT_EQ(errorOf([&] { driver.create({path()}, GetParam().version); }).kind(), Kind::AlreadyExists);
    EXPECT_EQ(errorOf([&] { open({path() + u'x'}); }).kind(), Kind::Missing);

    // A word of the commit area that says: somebody was in the middle of writing.
    const QByteArray sound = content();
    QByteArray interrupted = sound;
    interrupted.replace((GetParam().jet4() ? 0xE00 : 0x600) + 6, 2, QByteArray(2, '\0'));
    file().setContent(interrupted);
    reopen();
    EXPECT_EQ(errorOf([&] { insert(u"2"_s); }).kind(), Kind::Damaged);
    EXPECT_EQ(count(*accounts().scan()), 0U);
    close();
    file().setContent(sound);
}

INSTANTIATE_TEST_SUITE_P(Files, WriteTest, testing::ValuesIn(fileKinds()), kindName);

TEST(Rules, AreKeptOrRefused)
{
    struct Row {
        const char16_t *rule;
        Value value;
        std::optional<bool> holds;
    };
    const Row rows[] = {
        {u">=0", std::int64_t{0}, true},
        {u">=0", -0.5, false},
        {u">0 And <10", storage::Currency{100000}, false},
        {u"[Feld]>0 Or Is Null", Value(), true},
        {u">0", Value(), false},
        {u"Is Not Null", Value(), false},
        {u"In (\"a\", 'B')", u"b"_s, true},
        {u"Not In (1;2)", std::int64_t{2}, false},
        {u"Like \"D[0-9]#*\"", u"d12x"_s, true},
        {u"Not Like \"*[!a-z]*\"", u"ab1"_s, false},
        {u"\"Ja\" Or \"Nein\"", u"NEIN"_s, true},
        {u"Between #1/2/2003# And #2003-02-01#", storage::DateTime{37652}, true},
        {u"<Date()+1", storage::DateTime{0}, std::nullopt},
        {u"Len([Feld])>3", u"abcd"_s, std::nullopt},
        {u"[Anderes]>3", std::int64_t{4}, std::nullopt},
        {u"((((1", std::int64_t{1}, std::nullopt},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.rule).toStdString());
        const auto rule = jet::Rule::parse(QString::fromUtf16(row.rule), u"Feld"_s, true);
        ASSERT_EQ(rule.has_value(), row.holds.has_value());
        if (rule) {
            EXPECT_EQ(rule->holds(row.value), *row.holds);
        }
    }
    EXPECT_FALSE(jet::Rule::parse(QString(100000, u'('), u"Feld"_s, true));
    EXPECT_FALSE(jet::Rule::parse(u"Not "_s.repeated(100000), u"Feld"_s, true));
}
