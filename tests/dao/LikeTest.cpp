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
    struct Row { QString text; QStringList both; QStringList onlyJet; QStringList neither; };
    const Row rows[] = {
        {u""_s, {u""_s, u"*"_s, u"**"_s}, {}, {u"?"_s}},  {u"a"_s, {}, {}, {u""_s}},
        {u"Müller"_s, {u"Müller"_s, u"M*"_s, u"*er"_s, u"*l*l*"_s, u"M?ller"_s, u"M??ler"_s, u"*[Mm][Üü]*"_s},
                      {u"mÜLLER"_s}, {u"*l*l*l*"_s, u"M???ler"_s, u"M[!ü]ller"_s}},
        {u"mÜLLER"_s, {u"*[Mm][Üü]*"_s}, {u"*[M][ü]*"_s}, {}},  {u"Muller"_s, {u"M[!ü]ller"_s}, {}, {}},
        {u"D010000"_s, {u"D######"_s}, {}, {u"D#####"_s, u"D#######"_s}},  {u"D0100X0"_s, {}, {}, {u"D######"_s}},
        {u"b"_s, {u"[a-c]"_s}, {}, {}},     {u"B"_s, {}, {u"[a-c]"_s}, {}},  {u"d"_s, {u"[!a-c]"_s}, {}, {u"[a-c]"_s}},
        {u"7"_s, {u"[a-c0-9]"_s}, {}, {}},  {u"-"_s, {u"[a-]"_s, u"[-a]"_s}, {}, {}},
        {u"!"_s, {u"[!]"_s}, {}, {}},       {u"a!]"_s, {u"a!]"_s}, {}, {}},  {u"ab"_s, {u"a[]b"_s}, {}, {}},
        {u"a*b"_s, {u"a[*]b"_s}, {}, {}},   {u"axb"_s, {}, {}, {u"a[*]b"_s}},
        {u"a?b#c["_s, {u"a[?]b[#]c[[]"_s}, {}, {}},  {u"zwei\nZeilen"_s, {u"zwei*Zeilen"_s}, {}, {}},
        {u"100 %"_s, {u"100 %"_s, u"100 ?"_s}, {}, {}},  {u"100 x"_s, {}, {}, {u"100 %"_s, u"100 _"_s}},
        {u"5 € für Łódź"_s, {u"*€ f*"_s, u"*[€x] f*[!a-z]?dź"_s, u"5 ? *Łódź"_s}, {u"*łÓ*"_s},
                            {u"*$*"_s, u"*[!€] f*"_s}},
        {u"aaaaaaaaab"_s, {u"*a*a*a*a*b"_s}, {}, {}},    {u"aaaaaaaaaa"_s, {}, {}, {u"*a*a*a*a*b"_s}},
    };
    // clang-format on
    for (const auto &[text, both, onlyJet, neither] : rows) {
        for (const QString &pattern : both + onlyJet + neither) {
            SCOPED_TRACE((text + u" Like "_s + pattern).toStdString());
            EXPECT_EQ(compiled(pattern, false)->matches(text), !neither.contains(pattern));
            EXPECT_EQ(compiled(pattern, true)->matches(text), both.contains(pattern));
        }
    }
    for (const QString &broken : {u"["_s, u"abc[d"_s, u"*[a-"_s, u"[z-a]"_s})
        EXPECT_FALSE(compiled(broken, true)) << broken.toStdString();
}

TEST(Like, WorksInQueriesOnValuesOfEveryType)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a TEXT(20), n LONG)", u"INSERT INTO t VALUES ('Müller', 4711)",
           u"INSERT INTO t VALUES (NULL, 12)"});
    for (const QString &condition : {u"a LIKE '*L?er'"_s, u"n Like '47*'"_s, u"a Like '*'"_s, u"Not a Like 'x*'"_s,
                                     u"a Like 'M[u-v]ller'"_s}) // Null is like nothing; a range of the text order
        EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE "_s + condition), u"4711"_s) << condition.toStdString();
    EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a Not Like 'x*' OR a IS NULL"_s), u"4711;12"_s);
    for (const QString &condition :
         {u"LTrim(a) Like 'm*'"_s, u"Mid(a, 9) Like ''"_s, u"Trim('  ') Like ''"_s}) // texts that no column holds
        EXPECT_EQ(t.rows(u"SELECT n FROM t WHERE a IS NOT NULL AND "_s + condition), u"4711"_s)
            << condition.toStdString();
    EXPECT_EQ(t.openError(u"SELECT n FROM t WHERE a Like '*[M*'"_s), 93);
}
