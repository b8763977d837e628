// Jet's Like, by table.
#include <gtest/gtest.h>

#include "platform/storage/LikePattern.h"
#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<storage::LikePattern> compiled(const QString &pattern, bool caseSensitive)
{
    const auto sensitivity = caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    return storage::LikePattern::compile(pattern, caseSensitive, [sensitivity](QStringView left, QStringView right) {
        return left.compare(right, sensitivity);
    });
}

} // namespace

TEST(Like, MatchesAsTheTableSays)
{
    // clang-format off
    struct Row { QString text; QString pattern; bool jet; bool dbase; };
    const Row rows[] = {
        {u""_s,          u""_s,            true,  true},
        {u""_s,          u"*"_s,           true,  true},
        {u""_s,          u"**"_s,          true,  true},
        {u""_s,          u"?"_s,           false, false},
        {u"a"_s,         u""_s,            false, false},
        {u"Müller"_s,    u"Müller"_s,      true,  true},
        {u"Müller"_s,    u"mÜLLER"_s,      true,  false},
        {u"Müller"_s,    u"M*"_s,          true,  true},
        {u"Müller"_s,    u"*er"_s,         true,  true},
        {u"Müller"_s,    u"*l*l*"_s,       true,  true},
        {u"Müller"_s,    u"*l*l*l*"_s,     false, false},
        {u"Müller"_s,    u"M?ller"_s,      true,  true},
        {u"Müller"_s,    u"M??ler"_s,      true,  true},
        {u"Müller"_s,    u"M???ler"_s,     false, false},
        {u"Müller"_s,    u"*[Mm][Üü]*"_s,  true,  true},
        {u"mÜLLER"_s,    u"*[Mm][Üü]*"_s,  true,  true},
        {u"mÜLLER"_s,    u"*[M][ü]*"_s,    true,  false},
        {u"Muller"_s,    u"M[!ü]ller"_s,   true,  true},
        {u"Müller"_s,    u"M[!ü]ller"_s,   false, false},
        {u"D010000"_s,   u"D######"_s,     true,  true},
        {u"D01000"_s,    u"D######"_s,     false, false},
        {u"D0100X0"_s,   u"D######"_s,     false, false},
        {u"b"_s,         u"[a-c]"_s,       true,  true},
        {u"B"_s,         u"[a-c]"_s,       true,  false},
        {u"d"_s,         u"[a-c]"_s,       false, false},
        {u"d"_s,         u"[!a-c]"_s,      true,  true},
        {u"7"_s,         u"[a-c0-9]"_s,    true,  true},
        {u"-"_s,         u"[a-]"_s,        true,  true},
        {u"-"_s,         u"[-a]"_s,        true,  true},
        {u"!"_s,         u"[!]"_s,         true,  true},
        {u"a!"_s,        u"a!"_s,          true,  true},
        {u"a]"_s,        u"a]"_s,          true,  true},
        {u"a*b"_s,       u"a[*]b"_s,       true,  true},
        {u"axb"_s,       u"a[*]b"_s,       false, false},
        {u"a?b#c["_s,    u"a[?]b[#]c[[]"_s, true, true},
        {u"ab"_s,        u"a[]b"_s,        true,  true},
        {u"100 %"_s,     u"100 %"_s,       true,  true},
        {u"100 x"_s,     u"100 %"_s,       false, false},
        {u"a_b"_s,       u"a?b"_s,         true,  true},
        {u"aaaaaaaaab"_s, u"*a*a*a*a*b"_s, true,  true},
        {u"aaaaaaaaaa"_s, u"*a*a*a*a*b"_s, false, false},
        {u"zwei\nZeilen"_s, u"zwei*Zeilen"_s, true, true},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE((row.text + u" Like "_s + row.pattern).toStdString());
        EXPECT_EQ(compiled(row.pattern, false)->matches(row.text), row.jet);
        EXPECT_EQ(compiled(row.pattern, true)->matches(row.text), row.dbase);
    }
}

TEST(Like, RefusesBrokenPatterns)
{
    for (const QString &pattern : {u"["_s, u"abc[d"_s, u"*[a-"_s, u"[z-a]"_s}) {
        SCOPED_TRACE(pattern.toStdString());
        EXPECT_FALSE(compiled(pattern, true));
    }
}

TEST(Like, WorksInQueriesOnValuesOfEveryType)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a TEXT(20), n LONG)", u"INSERT INTO t VALUES ('Müller', 4711)",
           u"INSERT INTO t VALUES (NULL, 12)"});
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a LIKE '*L?er'"_s), u"4711"_s);
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE n Like '47*'"_s), u"4711"_s);
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a Like '*'"_s), u"4711"_s) << "Null is like nothing";
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE Not a Like 'x*'"_s), u"4711"_s);
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a Not Like 'x*' OR a IS NULL"_s), u"4711;12"_s);
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a Like 'M[u-v]ller'"_s), u"4711"_s) << "a range of the text order";
    EXPECT_EQ(t.openError(u"SELECT n FROM t WHERE a Like '*[M*'"_s), 93);
}
