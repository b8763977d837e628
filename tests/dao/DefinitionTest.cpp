// Tables, indexes and relationships made by statements.
#include <gtest/gtest.h>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

/// The columns, one a line: name, type, sizes, what else holds of it; then the indexes with their columns.
QString shown(const storage::TableSchema &schema)
{
    constexpr const char *types[] = {"Boolean", "Byte",   "Integer", "Long",       "Currency", "Single", "Double",
                                     "Date",    "Binary", "Text",    "LongBinary", "Memo",     "Guid",   "Numeric"};
    const auto word = [](bool holds, const QString &text) { return holds ? u' ' + text : QString(); };
    QString all;
    for (const storage::Column &column : schema.columns) {
        all += column.name + u' ' + QLatin1String(types[std::size_t(column.type)]);
        all += word(column.size != 0, QString::number(column.size));
        all += word(column.scale != 0, u'.' + QString::number(column.scale)) + word(column.autonumber, u"counts"_s);
        all += word(column.required, u"required"_s) + word(!column.defaultValue.isEmpty(), column.defaultValue) + u'\n';
    }
    for (const storage::Index &index : schema.indexes) {
        all += index.name + u':' + word(index.primary, u"primary"_s) + word(index.unique, u"unique"_s);
        all += word(index.required, u"required"_s) + word(index.ignoreNulls, u"sparse"_s);
        for (const auto &[column, descending] : index.columns)
            all += u' ' + schema.columns[std::size_t(column)].name + (descending ? u"-"_s : u"+"_s);
        all += u'\n';
    }
    return all;
}

} // namespace

TEST(Definition, KnowsAllTypes)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a TEXT(40), b varchar, c CHAR ( 3 ), d MEMO, e LONGTEXT, f BYTE, g SHORT, h SMALLINT,"
           u" i INTEGER, j LONG, k INT, l COUNTER, m SINGLE, n REAL, o DOUBLE, p FLOAT, q CURRENCY, r MONEY,"
           u" s DATETIME, t DATE, u YESNO, v BIT, w LOGICAL, x BINARY(16), y LONGBINARY, z OLEOBJECT)",
           u"CREATE TABLE u (a GUID, b NUMERIC, c DECIMAL(10,2), d AUTOINCREMENT)"});
    const auto other = t.otherProgram();
    const QString all = shown(other->table(u"t"_s)->schema()) + shown(other->table(u"u"_s)->schema());
    EXPECT_EQ(QString(all).replace(u'\n', u';'),
              u"a Text 40;b Text 255;c Text 3;d Memo;e Memo;f Byte;g Integer;h Integer;i Long;j Long;k Long;"
              "l Long counts;m Single;n Single;o Double;p Double;q Currency;r Currency;s Date;t Date;u Boolean;"
              "v Boolean;w Boolean;x Binary 16;y LongBinary;z LongBinary;a Guid;b Numeric 18;c Numeric 10 .2;"
              "d Long counts;"_s);
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
    const auto other = t.otherProgram();
    EXPECT_EQ(shown(other->table(u"Eltern Teil"_s)->schema()).toStdString(), R"(Nr Long required
Key Text 5
a Long -5
b Text 9 "sag ""ja"""
c Date Now()
d Boolean Yes
Key: unique Key+
pk: primary unique required Nr+
)");
    EXPECT_EQ(shown(other->table(u"Kind"_s)->schema()).toStdString(), R"(ElternNr Long required
Lfd Long
X Long
Y Long
f2: X+
fk: ElternNr+
i1: unique sparse X- Y+
i2: required Y+
PrimaryKey: primary unique required ElternNr+ Lfd+
u1: unique X+ Y+
)");
    QString relationships;
    for (const auto &drawn : other->relationships()) {
        relationships += u"%1: %2 -> %3.%4"_s.arg(drawn.name, drawn.foreignColumns[0], drawn.table, drawn.columns[0])
            + (drawn.cascadeUpdates ? u" updates"_s : QString()) + (drawn.cascadeDeletes ? u" deletes\n"_s : u"\n"_s);
    }
    EXPECT_EQ(relationships, u"fk: ElternNr -> Eltern Teil.Nr deletes\nf2: X -> Eltern Teil.Nr updates deletes\n"_s);

    t.run({u"INSERT INTO [Eltern Teil] (Nr) VALUES (1)", u"INSERT INTO [Eltern Teil] (Nr, a) VALUES (2, Null)"});
    EXPECT_EQ(t.rows(u"SELECT a, b, [Eltern Teil].Key FROM [Eltern Teil] WHERE Nr = 1"_s), u"-5,sag \"ja\",-"_s);
    EXPECT_EQ(t.rows(u"SELECT a FROM [Eltern Teil] WHERE Nr = 2"_s), u"-"_s) << "a given Null is no missing value";
}

TEST(Definition, SaysWhatIsWrong)
{
    // clang-format off
    const std::pair<int, QStringList> rows[] = {
        {3290, {u"CREATE TABLE"_s, u"CREATE TABLE t"_s, u"CREATE TABLE t (a LONG"_s, u"CREATE TABLE t (a LONG) x"_s}},
        {3292, {u"CREATE TABLE t (a)"_s, u"CREATE TABLE t (a LANG)"_s, u"CREATE TABLE t (a TEXT(x))"_s}},
        {3292, {u"CREATE TABLE t (a LONG NOT)"_s, u"CREATE TABLE t (a LONG DEFAULT)"_s}},
        {3289, {u"CREATE TABLE t (a LONG, CONSTRAINT c (a))"_s, u"CREATE TABLE t (a LONG, FOREIGN KEY a)"_s}},
        {3409, {u"CREATE TABLE t (a LONG, PRIMARY KEY (b))"_s, u"CREATE INDEX i ON Da (b)"_s}},
        {3010, {u"CREATE TABLE Da (a LONG)"_s}},
        {3291, {u"CREATE VIEW v"_s, u"CREATE INDEX i ON Da"_s, u"CREATE INDEX i ON Da (a) WITH NULL"_s}},
        {3078, {u"CREATE INDEX i ON Fehlt (a)"_s, u"DROP TABLE Fehlt"_s}},
        {3078, {u"CREATE TABLE t (a LONG REFERENCES Fehlt)"_s}},
        {3284, {u"CREATE INDEX ia ON Da (a)"_s}},
        {3295, {u"DROP INDEX ia ON Da"_s}},
    };
    // clang-format on
    TestEngine t;
    t.run({u"CREATE TABLE Da (a LONG)", u"CREATE INDEX ia ON Da (a)"});
    for (const auto &[expected, statements] : rows) {
        for (const QString &sql : statements)
            EXPECT_EQ(t.executeError(sql), expected) << sql.toStdString();
    }
    EXPECT_EQ(t.otherProgram()->tableNames(), QStringList(u"Da"_s)) << "nothing is left of what failed";
}
