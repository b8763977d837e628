// Tables, indexes and relationships made by statements.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;
using storage::Type;

namespace {

storage::TableSchema schemaOf(TestEngine &t, const QString &table)
{
    return t.otherProgram()->table(table)->schema();
}

storage::Index indexOf(const storage::TableSchema &schema, const QString &name)
{
    const auto found = std::ranges::find(schema.indexes, name, &storage::Index::name);
    return found == schema.indexes.end() ? storage::Index{} : *found;
}

} // namespace

TEST(Definition, KnowsAllTypes)
{
    struct Row {
        QString type;
        Type expected;
        int size = 0;
        int scale = 0;
    };
    const Row rows[] = {
        {u"TEXT(40)"_s, Type::Text, 40},
        {u"varchar"_s, Type::Text, 255},
        {u"CHAR ( 3 )"_s, Type::Text, 3},
        {u"MEMO"_s, Type::Memo},
        {u"LONGTEXT"_s, Type::Memo},
        {u"BYTE"_s, Type::Byte},
        {u"SHORT"_s, Type::Integer},
        {u"SMALLINT"_s, Type::Integer},
        {u"INTEGER"_s, Type::Long},
        {u"LONG"_s, Type::Long},
        {u"INT"_s, Type::Long},
        {u"COUNTER"_s, Type::Long},
        {u"AUTOINCREMENT"_s, Type::Long},
        {u"SINGLE"_s, Type::Single},
        {u"REAL"_s, Type::Single},
        {u"DOUBLE"_s, Type::Double},
        {u"FLOAT"_s, Type::Double},
        {u"CURRENCY"_s, Type::Currency},
        {u"MONEY"_s, Type::Currency},
        {u"DATETIME"_s, Type::DateTime},
        {u"DATE"_s, Type::DateTime},
        {u"YESNO"_s, Type::Boolean},
        {u"BIT"_s, Type::Boolean},
        {u"LOGICAL"_s, Type::Boolean},
        {u"BINARY(16)"_s, Type::Binary, 16},
        {u"LONGBINARY"_s, Type::LongBinary},
        {u"OLEOBJECT"_s, Type::LongBinary},
        {u"GUID"_s, Type::Guid},
        {u"NUMERIC"_s, Type::Numeric, 18},
        {u"DECIMAL(10,2)"_s, Type::Numeric, 10, 2},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.type.toStdString());
        TestEngine t;
        t.db->Execute(u"CREATE TABLE t (a %1)"_s.arg(row.type));
        const storage::Column column = schemaOf(t, u"t"_s).columns.at(0);
        EXPECT_EQ(column.type, row.expected);
        EXPECT_EQ(column.size, row.size);
        EXPECT_EQ(column.scale, row.scale);
        EXPECT_EQ(column.autonumber, row.type == u"COUNTER" || row.type == u"AUTOINCREMENT");
    }
}

TEST(Definition, ReadsConstraintsAndDefaults)
{
    TestEngine t;
    t.run({u"create table [Eltern Teil] (Nr long not null constraint pk primary key, [Key] text(5) unique,"
           u" a long default -5, b text(9) default 'sag \"ja\"', c datetime default Now(), d yesno default Yes)",
           u"CREATE TABLE Kind (ElternNr LONG NOT NULL CONSTRAINT fk REFERENCES [Eltern Teil] (Nr) ON DELETE CASCADE,"
           u" Lfd LONG, X LONG, Y LONG, PRIMARY KEY (ElternNr, Lfd), CONSTRAINT u1 UNIQUE (X, Y),"
           u" CONSTRAINT f2 FOREIGN KEY (X) REFERENCES [Eltern Teil] ON UPDATE CASCADE ON DELETE CASCADE);",
           u"CREATE UNIQUE INDEX i1 ON Kind (X DESC, Y ASC) WITH IGNORE NULL",
           u"CREATE INDEX i2 ON Kind (Y) WITH DISALLOW NULL"});
    const auto parent = schemaOf(t, u"Eltern Teil"_s);
    EXPECT_TRUE(parent.columns[0].required);
    EXPECT_EQ(parent.columns[2].defaultValue, u"-5"_s);
    EXPECT_EQ(parent.columns[3].defaultValue, u"\"sag \"\"ja\"\"\""_s);
    EXPECT_EQ(parent.columns[4].defaultValue, u"Now()"_s);
    EXPECT_EQ(parent.columns[5].defaultValue, u"Yes"_s);
    const storage::Index primary = indexOf(parent, u"pk"_s);
    EXPECT_TRUE(primary.primary && primary.unique);
    const storage::Index unique = indexOf(parent, u"Key"_s);
    EXPECT_TRUE(unique.unique && !unique.primary);

    const auto child = schemaOf(t, u"Kind"_s);
    EXPECT_EQ(indexOf(child, u"PrimaryKey"_s).columns.size(), 2U);
    EXPECT_EQ(indexOf(child, u"u1"_s).columns.size(), 2U);
    const storage::Index i1 = indexOf(child, u"i1"_s);
    EXPECT_TRUE(i1.unique && i1.columns[0].descending && !i1.columns[1].descending && i1.ignoreNulls);
    EXPECT_TRUE(indexOf(child, u"i2"_s).required);

    const auto relationships = t.otherProgram()->relationships();
    ASSERT_EQ(relationships.size(), 2U);
    EXPECT_TRUE(relationships[0].name == u"fk" && relationships[0].cascadeDeletes && !relationships[0].cascadeUpdates);
    EXPECT_EQ(relationships[1].columns, QStringList{u"Nr"_s}) << "the referenced primary key";
    EXPECT_TRUE(relationships[1].cascadeDeletes && relationships[1].cascadeUpdates);

    t.run({u"INSERT INTO [Eltern Teil] (Nr) VALUES (1)"});
    EXPECT_EQ(t.rows(u"SELECT a, b, [Eltern Teil].Key FROM [Eltern Teil]"_s), u"-5,sag \"ja\",-"_s);
    t.run({u"INSERT INTO [Eltern Teil] (Nr, a) VALUES (2, Null)"});
    EXPECT_EQ(t.rows(u"SELECT a FROM [Eltern Teil] WHERE Nr = 2"_s), u"-"_s) << "a given Null is no missing value";
}

TEST(Definition, SaysWhatIsWrong)
{
    const std::pair<QString, int> rows[] = {
        {u"CREATE TABLE"_s, 3290},
        {u"CREATE TABLE t"_s, 3290},
        {u"CREATE TABLE t (a LONG"_s, 3290},
        {u"CREATE TABLE t (a LONG) x"_s, 3290},
        {u"CREATE TABLE t (a)"_s, 3292},
        {u"CREATE TABLE t (a LANG)"_s, 3292},
        {u"CREATE TABLE t (a TEXT(x))"_s, 3292},
        {u"CREATE TABLE t (a LONG NOT)"_s, 3292},
        {u"CREATE TABLE t (a LONG DEFAULT)"_s, 3292},
        {u"CREATE TABLE t (a LONG, CONSTRAINT c (a))"_s, 3289},
        {u"CREATE TABLE t (a LONG, FOREIGN KEY a)"_s, 3289},
        {u"CREATE TABLE t (a LONG, PRIMARY KEY (b))"_s, 3409},
        {u"CREATE TABLE Da (a LONG)"_s, 3010},
        {u"CREATE VIEW v"_s, 3291},
        {u"CREATE INDEX i ON Da"_s, 3291},
        {u"CREATE INDEX i ON Da (a) WITH NULL"_s, 3291},
        {u"CREATE INDEX i ON Da (b)"_s, 3409},
        {u"CREATE INDEX i ON Fehlt (a)"_s, 3078},
        {u"CREATE INDEX ia ON Da (a)"_s, 3284},
        {u"DROP TABLE Fehlt"_s, 3078},
        {u"DROP INDEX ia ON Da"_s, 3295},
    };
    TestEngine t;
    t.run({u"CREATE TABLE Da (a LONG)", u"CREATE INDEX ia ON Da (a)"});
    for (const auto &[sql, expected] : rows) {
        SCOPED_TRACE(sql.toStdString());
        EXPECT_EQ(t.executeError(sql), expected);
    }
}
