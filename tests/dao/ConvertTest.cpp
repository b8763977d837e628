// Values into columns and out of them, by the user's locale.
#include <gtest/gtest.h>

#include <limits>

#include <QDateTime>
#include <QLocale>

#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/DateText.h"

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
    constexpr std::int64_t large = std::numeric_limits<std::int64_t>::max();
    const QString guid = u"00112233-4455-6677-8899-aabbccddeeff"_s;
    const auto wrong = StorageError::WrongType;
    using Result = std::variant<Value, StorageError::Kind>;
    // clang-format off
    struct Row { const char *name; Type type; std::vector<std::pair<Value, Result>> values; };
    const Row rows[] = {
        {"texts and yes become numbers",  Type::Long,     {{Value(), Value()}, {u" 12 "_s, 12}, {true, -1}}},
        {"other texts do not",            Type::Long,     {{u"vier"_s, wrong}, {u""_s, wrong}}},
        {"halves go to even",             Type::Integer,  {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {money(15000), 2}}},
        {"the decimal sign is a comma",   Type::Integer,  {{u"2,51"_s, 3}}},
        {"the point groups thousands",    Type::Double,   {{u"1.234,5"_s, 1234.5}, {u"2.51"_s, wrong}}},
        {"amounts",                       Type::Currency, {{u"1,5E3"_s, money(15'000'000)}, {12.3456, money(123456)}}},
        {"amounts round half to even",    Type::Currency, {{u"0,00005"_s, money(0)}, {u"-0,00015"_s, money(-2)}}},
        {"the largest amount",            Type::Currency, {{u"922337203685477,5807"_s, money(large)},
                                                           {u"922337203685477,5808"_s, StorageError::OutOfRange}}},
        {"decimals keep scale and carry", Type::Numeric,  {{u"12,3"_s, storage::Decimal{u"12.30"_s}},
                                                           {u"9,995"_s, storage::Decimal{u"10.00"_s}}}},
        {"words and numbers mean yes",    Type::Boolean,  {{u"Wahr"_s, true}, {u"nein"_s, false}, {0.5, true},
                                                           {u"0"_s, false}, {u"vielleicht"_s, wrong}}},
        {"numbers become texts",          Type::Text,     {{-1.5, u"-1,5"_s}, {money(-123400), u"-12,34"_s}}},
        {"bytes never do",              Type::Text,     {{QByteArray("x"), wrong}}},
        {"German dates",                  Type::DateTime, {{u"24.12.03"_s, storage::DateTime{37979}},
                                                           {u"24.12.2003 18:00"_s, storage::DateTime{37979.75}}}},
        {"a GUID is put in braces",       Type::Guid,     {{guid, u'{' + guid.toUpper() + u'}'}, {u"0011"_s, wrong}}},
    };
    // clang-format on
    for (const Row &row : rows) {
        for (const auto &[value, expected] : row.values) {
            SCOPED_TRACE(testing::Message() << row.name << ", " << &value - &row.values.front().first);
            try {
                const Column column{u"Feld"_s, row.type, 10, row.type == Type::Numeric ? 2 : 0};
                EXPECT_TRUE(expected == Result(dao::coerced(value, column)));
            } catch (const StorageError &error) {
                EXPECT_TRUE(expected == Result(error.kind())) << error.what();
                EXPECT_EQ(error.item(), u"Feld"_s);
            }
        }
    }
    EXPECT_EQ(dao::valueOf(QVariant::fromValue<short>(5), {}), Value(5));
    EXPECT_EQ(dao::valueOf(QDate(2003, 12, 24), {}), Value(storage::DateTime{37979}));
    EXPECT_THROW(dao::valueOf(QStringList{u"a"_s, u"b"_s}, u"Feld"_s), StorageError);
}

TEST_F(Convert, ReadsDates)
{
    using enum dao::DateOrder;
    // clang-format off
    struct Row { QString text; dao::DateOrder order; double days; };
    const Row rows[] = {
        {u"30.12.1899"_s, DayMonthYear, 0},               {u"01.02.2003"_s, DayMonthYear, 37653},
        {u"1/2/2003"_s, MonthDayYear, 37623},             {u"24/12/2003"_s, MonthDayYear, 37979}, // no month 24
        {u"2003-12-24"_s, MonthDayYear, 37979},           {u"2003-12-24T06:00:00"_s, DayMonthYear, 37979.25},
        {u"12/24/29 6:00 pm"_s, MonthDayYear, 47476.75},  {u"24.12.30"_s, DayMonthYear, 11316},
        {u"12:00"_s, DayMonthYear, 0.5},                  {u"29.02.2000"_s, DayMonthYear, 36585},
        {u"29.12.1899 06:00"_s, DayMonthYear, -1.25}, // the time counts forwards
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        const auto moment = dao::dateFromText(row.text, row.order);
        EXPECT_EQ(moment, storage::DateTime{row.days});
        EXPECT_EQ(dao::momentOf(dao::calendarOf(*moment)), moment);
    }
    for (const QString &text : {u"29.02.1900"_s, u"24.12.2003 25:00"_s, u"13:00 pm"_s, u"24.12."_s, u""_s})
        EXPECT_EQ(dao::dateFromText(text, DayMonthYear), std::nullopt) << text.toStdString();
    EXPECT_EQ(dao::localeDateOrder(), DayMonthYear);
    EXPECT_EQ(dao::calendarOf({-0.99999999999}), QDateTime(QDate(1899, 12, 31), {})) << "rounds into the next day";
}
