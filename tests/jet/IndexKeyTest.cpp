// Keys as the files have them.
#include <random>

#include "platform/jet/IndexKey.h"
#include "platform/jet/TextKey.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using jet::ColumnType;
using jet::KeyBytes;
using storage::Value;

namespace {

/// The key of one value in an index over one column.
KeyBytes keyOf(ColumnType type, const Value &value, bool ascending, bool jet4 = true)
{
    jet::TableDef table;
    table.columns.push_back({.name = u"A"_s, .type = type, .scale = 2});
    jet::IndexDef index;
    index.columns = {{0, ascending}};
    return jet::IndexKeyMaker(table, index, jet4).make(std::span(&value, 1));
}

} // namespace

TEST(IndexKey, HasTheBytesThatTheFilesHave)
{
    const Value guid = u"{00112233-4455-6677-8899-aabbccddeeff}"_s;
    const QByteArray nine("\1\2\3\4\5\6\7\x8\x9", 9);
    // clang-format off
    struct Row { const char *name; ColumnType type; Value value; QByteArray ascending; };
    const Row rows[] = {
        {"Null",              ColumnType::Long,     {},                         "00"},
        {"true",              ColumnType::Boolean,  true,                       "7f 00"},
        {"false",             ColumnType::Boolean,  false,                      "7f ff"},
        {"byte",              ColumnType::Byte,     std::int64_t{200},          "7f c8"},
        {"integer",           ColumnType::Integer,  std::int64_t{-2},           "7f 7f fe"},
        {"long",              ColumnType::Long,     std::int64_t{1},            "7f 80 00 00 01"},
        {"currency",          ColumnType::Currency, storage::Currency{-10000},  "7f 7f ff ff ff ff ff d8 f0"},
        {"single",            ColumnType::Single,   1.5,                        "7f bf c0 00 00"},
        {"negative double",   ColumnType::Double,   -1.5,                       "7f 40 07 ff ff ff ff ff ff"},
        {"date",              ColumnType::DateTime, storage::DateTime{2.0},     "7f c0 00 00 00 00 00 00 00"},
        {"numeric",           ColumnType::Numeric,  storage::Decimal{u"1.00"_s},
            "7f ff" + " 00"_ba.repeated(15) + " 64"},
        {"negative numeric",  ColumnType::Numeric,  storage::Decimal{u"-1"_s},
            "7f 00" + " ff"_ba.repeated(15) + " 9b"},
        {"guid",              ColumnType::Guid,     guid, "7f 00 11 22 33 44 55 66 77 09 88 99 aa bb cc dd ee ff 08"},
        {"binary over two groups", ColumnType::Binary, nine,
            "7f 01 02 03 04 05 06 07 08 09 09 00 00 00 00 00 00 00 01"},
        {"empty binary",      ColumnType::Binary,   QByteArray(""),             "7f"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(hex(keyOf(row.type, row.value, true)), row.ascending);
        // Descending all bytes are the other way round, but not the mark of a full group, nor a number's sign.
        KeyBytes descending = keyOf(row.type, row.value, true);
        for (std::size_t i = 0; i < descending.size(); ++i) {
            const bool mark = i == 9 && (row.type == ColumnType::Guid || row.type == ColumnType::Binary);
            const bool sign = i == 1 && row.type == ColumnType::Numeric;
            descending[i] ^= std::byte(mark || sign ? 0 : 0xFF);
        }
        EXPECT_EQ(hex(keyOf(row.type, row.value, false)), hex(descending));
    }
}

TEST(IndexKey, OfTextsFollowsTheGeneralOrder)
{
    // clang-format off
    struct Row { const char *name; QString text; QByteArray jet3; QByteArray jet4; };
    const Row rows[] = {
        {"letters without case", u"aBc"_s,      "7f 60 61 62 00", "7f 4a 4c 4d 01 00"},
        {"trailing blanks",      u"abc  "_s,    "7f 60 61 62 00", "7f 4a 4c 4d 01 00"},
        {"empty text",           u""_s,         "7f 00", "7f 01 00"},
        {"umlaut",               u"größer"_s,   "7f 68 75 72 76 76 66 75 06 00",
            "7f 55 69 64 6b 6b 51 69 01 02 02 13 00"},
        {"sharp s",              u"Straße"_s,   "7f 76 77 75 60 76 76 66 00", "7f 6b 6d 69 4a 6b 6b 51 01 00"},
        {"accent behind sharp s", u"Großmärkte"_s, "7f 68 75 72 76 76 6f 60 75 6c 77 66 02 22 60",
            "7f 55 69 64 6b 6b 60 4a 69 5c 6d 51 01 02 02 02 02 02 02 13 00"},
        {"second letter",        u"Müller"_s,   {}, "7f 60 6f 5e 5e 51 69 01 02 13 00"},
        {"hyphen",               u"a-b"_s,      {}, "7f 4a 4c 01 01 01 01 80 0b 06 82 00"},
        {"ignored character",    u"a\u0000b"_s, {}, "7f 4a 4c 01 00"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        if (!row.jet3.isEmpty()) {
            EXPECT_EQ(hex(keyOf(ColumnType::Text, row.text, true, false)), row.jet3);
        }
        EXPECT_EQ(hex(keyOf(ColumnType::Text, row.text, true)), row.jet4);
    }
    EXPECT_EQ(hex(keyOf(ColumnType::Text, u"ab"_s, false)), "80 b5 b3 fe ff 00");
    EXPECT_EQ(hex(keyOf(ColumnType::Text, u"ab"_s, false, false)), "80 9f 9e ff");
    EXPECT_EQ(keyOf(ColumnType::Text, QString(255, u'x') + u"1"_s, true),
              keyOf(ColumnType::Text, QString(255, u'X') + u"2"_s, true));
}

TEST(IndexKey, RefusesWhatItsColumnCannotHold)
{
    const std::pair<ColumnType, Value> rows[] = {{ColumnType::Integer, std::int64_t{40000}},
                                                 {ColumnType::Byte, std::int64_t{-1}},
                                                 {ColumnType::Guid, u"no guid"_s},
                                                 {ColumnType::Numeric, storage::Decimal{u"1,5"_s}},
                                                 {ColumnType::Long, u"1"_s}};
    for (const auto &[type, value] : rows)
        EXPECT_THROW(keyOf(type, value, true), storage::StorageError) << static_cast<int>(type);
}

TEST(IndexKey, HasASpanWhereProgramsDisagree)
{
    jet::TableDef table;
    table.columns = {{.name = u"A"_s, .number = 0}, {.name = u"B"_s, .type = ColumnType::Long, .number = 1}};
    jet::IndexDef index;
    index.columns = {{0, true}, {1, true}};
    // clang-format off
    struct Row { QString text; bool jet4; bool ascending; QByteArray first; QByteArray last; };
    const Row rows[] = {
        {u"ab"_s,    true,  true,  "7f 4a 4c 01 00 7f 80 00 00 01", {}},
        {u"äb"_s,    true,  true,  "7f 4a 4c 01 13 00 7f 80 00 00 01", {}},
        {u"ßb"_s,    true,  true,  "7f 6b 6b 4c 01 00 7f 80 00 00 01", {}},
        {u"ßä"_s,    true,  true,  "7f 6b 6b 4a 01", "7f 6b 6b 4a 01"},
        {u"ss-a"_s,  true,  true,  "7f 6b 6b 4a 01", "7f 6b 6b 4a 01"},
        {u"ssä"_s,   true,  false, "80 94 94 b5 fe", "80 94 94 b5 fe"},
        {u"äb"_s,    false, true,  "7f 60 61 06 00 7f 80 00 00 01", {}},
        {u"ßä"_s,    false, true,  "7f 76 76 60 00", "7f 76 76 60 0f"},
        {u"SSÄ"_s,   false, false, "80 89 89 9f f0", "80 89 89 9f ff"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(qPrintable(row.text));
        index.columns.front().ascending = row.ascending;
        const jet::IndexKeyMaker keys(table, index, row.jet4);
        const Value values[] = {row.text, std::int64_t{1}};
        EXPECT_EQ(keys.isCertain(values), row.last.isEmpty());
        EXPECT_EQ(hex(keys.span(values).first), row.first);
        EXPECT_EQ(hex(keys.span(values).last), row.last.isEmpty() ? row.first : row.last);
    }
}

TEST(CompareTexts, AgreesWithTheKeys)
{
    const QString alphabet = u"aAbB zZ09-'.!ßäÄéœŒÿ\u3042\u30A2"_s;
    std::mt19937 random(20260711); // NOLINT: the same texts in every run
    const auto text = [&] {
        QString made;
        for (auto length = random() % 6; length > 0; --length)
            made += alphabet[static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size()))];
        return made;
    };
    const auto sign = [](int order) { return (order > 0) - (order < 0); };
    for (int i = 0; i < 20000; ++i) {
        const QString left = text();
        const QString right = text();
        for (const bool jet4 : {false, true}) {
            KeyBytes leftKey;
            KeyBytes rightKey;
            jet::appendTextKey(left, jet4, true, leftKey);
            jet::appendTextKey(right, jet4, true, rightKey);
            ASSERT_EQ(sign(jet::compareTexts(jet4, left, right)), sign(jet::compareKeys(leftKey, rightKey)))
                << qPrintable(left) << " | " << qPrintable(right) << (jet4 ? " Jet 4" : " Jet 3");
        }
    }
}
