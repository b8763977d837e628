// Values into columns and out of them, by the user's locale.
#include <gtest/gtest.h>

#include <limits>

#include <QDateTime>
#include <QLocale>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/DateText.h"
#include "platform/dao/embedded/DecimalText.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace {

class Convert : public testing::Test
{
protected:
    Convert() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
};

storage::Currency money(std::int64_t tenThousandths)
{
    return {tenThousandths};
}

} // namespace

TEST_F(Convert, PutsValuesIntoColumns)
{
    const Column numeric{u"n"_s, Type::Numeric, 6, 2};
    const auto of = [](Type type) { return Column{u"Feld"_s, type, 10}; };
    constexpr std::int64_t large = std::numeric_limits<std::int64_t>::max();
    // clang-format off
    struct Row { const char *name; Value value; Column column; std::variant<Value, StorageError::Kind> result; };
    const Row rows[] = {
        {"Null stays Null",              Value(),               of(Type::Long),     Value()},
        {"text becomes a number",        u" 12 "_s,             of(Type::Long),     std::int64_t{12}},
        {"half goes to even, down",      2.5,                   of(Type::Integer),  std::int64_t{2}},
        {"half goes to even, up",        3.5,                   of(Type::Integer),  std::int64_t{4}},
        {"negative half",                -2.5,                  of(Type::Integer),  std::int64_t{-2}},
        {"decimal comma",                u"2,51"_s,             of(Type::Integer),  std::int64_t{3}},
        {"grouped thousands",            u"1.234,5"_s,          of(Type::Double),   1234.5},
        {"exponent",                     u"1,5E3"_s,            of(Type::Currency), money(15'000'000)},
        {"point is no decimal sign",     u"2.51"_s,             of(Type::Double),   StorageError::WrongType},
        {"word is no number",            u"vier"_s,             of(Type::Long),     StorageError::WrongType},
        {"empty text is no number",      u""_s,                 of(Type::Long),     StorageError::WrongType},
        {"byte holds 255",               std::int64_t{255},     of(Type::Byte),     std::int64_t{255}},
        {"yes is minus one",             true,                  of(Type::Long),     std::int64_t{-1}},
        {"largest amount",               u"922337203685477,5807"_s, of(Type::Currency), money(large)},
        {"beyond the largest amount",    u"922337203685477,5808"_s, of(Type::Currency), StorageError::OutOfRange},
        {"amount rounds half to even",   u"0,00005"_s,          of(Type::Currency), money(0)},
        {"amount rounds up",             u"-0,00015"_s,         of(Type::Currency), money(-2)},
        {"amount from double",           12.3456,               of(Type::Currency), money(123456)},
        {"amount rounds to whole",       money(15000),          of(Type::Long),     std::int64_t{2}},
        {"decimal keeps its scale",      u"12,3"_s,             numeric,            storage::Decimal{u"12.30"_s}},
        {"decimal carries",              u"9,995"_s,            numeric,            storage::Decimal{u"10.00"_s}},
        {"word for yes",                 u"Wahr"_s,             of(Type::Boolean),  true},
        {"word for no",                  u"nein"_s,             of(Type::Boolean),  false},
        {"number for yes",               0.5,                   of(Type::Boolean),  true},
        {"text number for no",           u"0"_s,                of(Type::Boolean),  false},
        {"neither yes nor no",           u"vielleicht"_s,       of(Type::Boolean),  StorageError::WrongType},
        {"number becomes text",          -1.5,                  of(Type::Text),     u"-1,5"_s},
        {"amount becomes text",          money(-123400),        of(Type::Text),     u"-12,34"_s},
        {"text just fits",               u"0123456789"_s,       of(Type::Text),     u"0123456789"_s},
        {"memo has no length",           u"01234567890"_s,      of(Type::Memo),     u"01234567890"_s},
        {"bytes are no text",            QByteArray("x"),       of(Type::Text),     StorageError::WrongType},
        {"German date",                  u"24.12.03"_s,         of(Type::DateTime), storage::DateTime{37979}},
        {"date and time",                u"24.12.2003 18:00"_s, of(Type::DateTime), storage::DateTime{37979.75}},
        {"no such day",                  u"31.02.2003"_s,       of(Type::DateTime), StorageError::WrongType},
        {"GUID is put in braces",        u"00112233-4455-6677-8899-aabbccddeeff"_s, of(Type::Guid),
                                         u"{00112233-4455-6677-8899-AABBCCDDEEFF}"_s},
        {"no GUID",                      u"0011"_s,             of(Type::Guid),     StorageError::WrongType},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        try {
            const Value result = dao::coerced(row.value, row.column);
            EXPECT_TRUE(std::holds_alternative<Value>(row.result) && std::get<Value>(row.result) == result);
        } catch (const StorageError &error) {
            ASSERT_TRUE(std::holds_alternative<StorageError::Kind>(row.result)) << error.what();
            EXPECT_EQ(error.kind(), std::get<StorageError::Kind>(row.result));
            EXPECT_EQ(error.item(), row.column.name);
        }
    }
}

TEST_F(Convert, ReadsDates)
{
    using enum dao::DateOrder;
    struct Row {
        QString text;
        dao::DateOrder order;
        std::optional<double> days;
    };
    const Row rows[] = {
        {u"30.12.1899"_s, DayMonthYear, 0},
        {u"01.02.2003"_s, DayMonthYear, 37653},
        {u"1/2/2003"_s, MonthDayYear, 37623},
        {u"24/12/2003"_s, MonthDayYear, 37979}, // no month 24
        {u"2003-12-24"_s, MonthDayYear, 37979},
        {u"2003-12-24T06:00:00"_s, DayMonthYear, 37979.25},
        {u"12/24/29 6:00 pm"_s, MonthDayYear, 47476.75},
        {u"24.12.30"_s, DayMonthYear, 11316},
        {u"12:00"_s, DayMonthYear, 0.5},
        {u"29.12.1899 06:00"_s, DayMonthYear, -1.25}, // the time counts forwards
        {u"29.02.2000"_s, DayMonthYear, 36585},
        {u"29.02.1900"_s, DayMonthYear, std::nullopt},
        {u"24.12.2003 25:00"_s, DayMonthYear, std::nullopt},
        {u"13:00 pm"_s, DayMonthYear, std::nullopt},
        {u"24.12."_s, DayMonthYear, std::nullopt},
        {u""_s, DayMonthYear, std::nullopt},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        const auto moment = dao::dateFromText(row.text, row.order);
        EXPECT_EQ(moment.has_value(), row.days.has_value());
        if (moment && row.days) {
            EXPECT_DOUBLE_EQ(moment->days, *row.days);
            EXPECT_EQ(dao::momentOf(dao::calendarOf(*moment)), *moment);
        }
    }
    EXPECT_EQ(dao::localeDateOrder(), DayMonthYear);
    EXPECT_EQ(dao::calendarOf({-0.99999999999}), QDateTime(QDate(1899, 12, 31), QTime(0, 0)))
        << "rounds into the next day";
}

TEST_F(Convert, ShowsEachTypeAsItself)
{
    EXPECT_EQ(dao::variantOf(std::int64_t{7}, Type::Byte).typeId(), QMetaType::UChar);
    EXPECT_EQ(dao::variantOf(std::int64_t{7}, Type::Integer).typeId(), QMetaType::Short);
    EXPECT_EQ(dao::variantOf(std::int64_t{7}, Type::Long).typeId(), QMetaType::Int);
    EXPECT_EQ(dao::variantOf(0.5, Type::Single).typeId(), QMetaType::Float);
    EXPECT_EQ(dao::variantOf(0.5, Type::Double).typeId(), QMetaType::Double);
    EXPECT_EQ(dao::variantOf(true, Type::Boolean).typeId(), QMetaType::Bool);
    EXPECT_EQ(dao::variantOf(money(15000), Type::Currency).value<storage::Currency>(), money(15000));
    EXPECT_FALSE(dao::variantOf(Value(), Type::Text).isValid());
    EXPECT_EQ(dao::valueOf(QVariant::fromValue<short>(5), {}), Value(std::int64_t{5}));
    EXPECT_EQ(dao::valueOf(QDate(2003, 12, 24), {}), Value(storage::DateTime{37979}));
    EXPECT_THROW(dao::valueOf(QStringList{u"a"_s, u"b"_s}, u"Feld"_s), StorageError);
}
