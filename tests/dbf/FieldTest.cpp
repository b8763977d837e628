#include "platform/dbf/Field.h"
#include "RawTable.h"
#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;
using storage::DateTime;
using storage::StorageError;
using storage::Value;

TEST(NumericField, IsStoredAsDBaseStoresIt)
{
    // clang-format off
    struct Row { double value; int width; int decimals; std::optional<QByteArray> stored; };
    const Row rows[] = {
        {12.5,    8, 2, "   12.50"_ba},    {-999.99,      7, 2, "-999.99"_ba},
        {1000.0,  6, 2, std::nullopt},     {999.996,      6, 2, std::nullopt}, // rounding adds a digit
        {2.5001,  3, 0, "  3"_ba},         {-0.001,       5, 2, " 0.00"_ba}, // no negative zero
        {0.25,    3, 2, ".25"_ba},         {-0.25,        4, 2, "-.25"_ba}, // the zero before the point goes
        {1e300,  20, 0, std::nullopt},     {std::nan(""), 8, 2, std::nullopt},
    };
    // clang-format on
    for (const Row &row : rows)
        EXPECT_EQ(dbf::encodeNumber(row.value, row.width, row.decimals), row.stored) << row.value;
}

TEST(Field, IsReadInAllItsForms)
{
    const Value null;
    // clang-format off
    struct Row { char type; QByteArray stored; std::optional<Value> value; };
    const Row rows[] = {
        {'C', "Abc  "_ba, Value(u"Abc"_s)},     {'C', "  x  "_ba, Value(u"  x"_s)},
        {'C', "     "_ba, null},                {'C', "\0\0\0"_ba, null},
        {'C', "x y" + QByteArray(21, ' '), Value(u"x y"_s)},
        {'C', "\xE4\0 "_ba + QByteArray(16, ' ') + "\0 \0"_ba + QByteArray(9, ' '), Value(u"ä"_s)},
        {'C', QByteArray(254, ' '), null},
        {'N', "  -1.5"_ba, Value(-1.5)},        {'N', "7     "_ba, Value(7.0)},
        {'F', "+2.5E+03"_ba, Value(2500.0)},    {'N', ".5"_ba, Value(0.5)},
        {'N', "      "_ba, null},               {'N', "******"_ba, null},
        {'N', "12a"_ba, std::nullopt},          {'N', "1 2"_ba, std::nullopt},
        {'N', "1,5"_ba, std::nullopt},          {'N', "inf"_ba, std::nullopt},
        {'D', "18991230"_ba, Value(DateTime{0})}, {'D', "20020301"_ba, Value(DateTime{37316})},
        {'D', "18991229"_ba, Value(DateTime{-1})}, {'D', "        "_ba, null},
        {'D', "00000000"_ba, null},             {'D', "20020230"_ba, std::nullopt},
        {'D', "2002"_ba, std::nullopt},         {'L', "T"_ba, Value(true)},
        {'L', "y"_ba, Value(true)},             {'L', "n"_ba, Value(false)},
        {'L', "?"_ba, null},                    {'L', " "_ba, null},
        {'L', "X"_ba, std::nullopt},
    };
    // clang-format on
    for (const Row &row : rows) {
        const dbf::Field field{.name = u"F"_s, .type = row.type, .width = int(row.stored.size())};
        EXPECT_EQ(dbf::decode(field, storage::bytesOf(row.stored), storage::windows1252), row.value)
            << row.type << " " << row.stored.toStdString();
    }
}

TEST(Field, IsWrittenOrRefused)
{
    // clang-format off
    const dbf::Field text{u"TEXT"_s, 'C', 0, 4}, number{u"ZAHL"_s, 'N', 0, 6, 2}, day{u"TAG"_s, 'D', 0, 8},
                     truth{u"JA"_s, 'L', 0, 1};
    struct Written { dbf::Field field; Value value; QByteArray stored; };
    const Written written[] = {
        {text,   u"Fuß"_s, "Fu\xDF "_ba},           {text,   u"abcd  "_s, "abcd"_ba}, // blanks may be cut
        {number, Value(), "      "_ba},             {number, std::int64_t(-7), " -7.00"_ba},
        {number, storage::Currency{123400}, " 12.34"_ba}, {number, storage::Decimal{u"1.5"_s}, "  1.50"_ba},
        {day,    DateTime{-1}, "18991229"_ba},      {day,    DateTime{2958465}, "99991231"_ba},
        {day,    DateTime{-693593}, "00010101"_ba}, {truth,  true, "T"_ba}, {truth,  false, "F"_ba},
    };
    struct Refused { dbf::Field field; Value value; StorageError::Kind kind; };
    const Refused refused[] = {
        {text,   1.0, StorageError::WrongType},                  {number, u"1"_s, StorageError::WrongType},
        {day,    DateTime{2958466}, StorageError::OutOfRange},
        {day,    DateTime{std::nan("")}, StorageError::OutOfRange},
    };
    // clang-format on
    for (const auto &[field, value, stored] : written)
        EXPECT_EQ(dbf::encode(field, value, storage::windows1252), stored);
    for (const auto &[field, value, kind] : refused)
        EXPECT_EQ(kindOf([&] { dbf::encode(field, value, storage::windows1252); }, field.name), kind);
}
