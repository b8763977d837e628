// Dates as people and SQL texts write them, and as serial numbers of days.
#include "platform/dao/embedded/DateText.h"

#include <cmath>

#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr double msPerDay = 86'400'000.0;

constexpr QDate dayZero()
{
    return QDate::fromJulianDay(2415019); // 1899-12-30
}

int fullYear(const QString &digits)
{
    const int year = digits.toInt();
    if (digits.size() > 2)
        return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

QDate dateOf(const QRegularExpressionMatch &match, DateOrder order)
{
    const QString first = match.captured(1);
    const QString second = match.captured(2);
    const QString third = match.captured(3);
    if (first.size() > 2 || order == DateOrder::YearMonthDay)
        return QDate(fullYear(first), second.toInt(), third.toInt());
    const int year = fullYear(third);
    if (order == DateOrder::MonthDayYear && first.toInt() <= 12)
        return QDate(year, first.toInt(), second.toInt());
    return QDate(year, second.toInt(), first.toInt());
}

QTime timeOf(const QRegularExpressionMatch &match)
{
    int hour = match.captured(4).toInt();
    const QString half = match.captured(7).toLower();
    if (!half.isEmpty()) {
        if (hour < 1 || hour > 12)
            return {};
        hour = hour % 12 + (half == u"pm" ? 12 : 0);
    }
    return QTime(hour, match.captured(5).toInt(), match.captured(6).toInt());
}

storage::DateTime joined(qint64 day, int ms)
{
    const double fraction = ms / msPerDay;
    const auto days = static_cast<double>(day);
    return {day < 0 ? days - fraction : days + fraction};
}

} // namespace

DateOrder localeDateOrder()
{
    const QString format = QLocale().dateFormat(QLocale::ShortFormat);
    const auto day = format.indexOf(u'd');
    if (format.indexOf(u'y') < day)
        return DateOrder::YearMonthDay;
    return format.indexOf(u'M') < day ? DateOrder::MonthDayYear : DateOrder::DayMonthYear;
}

std::optional<storage::DateTime> dateFromText(const QString &text, DateOrder order)
{
    static const QRegularExpression form(uR"(^\s*(?:(\d{1,4})[./-](\d{1,2})[./-](\d{1,4}))?(?:(?:[ T]\s*|(?<=^|\s)))"
                                         uR"((\d{1,2}):(\d{2})(?::(\d{2}))?\s*([AaPp][Mm])?)?\s*$)"_s);
    const QRegularExpressionMatch match = form.match(text);
    const bool hasDate = match.hasCaptured(1);
    const bool hasTime = match.hasCaptured(4);
    if (!match.hasMatch() || (!hasDate && !hasTime))
        return std::nullopt;
    const QDate date = hasDate ? dateOf(match, order) : dayZero();
    const QTime time = hasTime ? timeOf(match) : QTime(0, 0);
    if (!date.isValid() || !time.isValid() || date.year() < 100)
        return std::nullopt;
    return joined(dayZero().daysTo(date), time.msecsSinceStartOfDay());
}

std::pair<QDate, QTime> dayAndTimeOf(storage::DateTime moment)
{
    const double whole = std::trunc(moment.days);
    auto day = static_cast<qint64>(whole);
    auto ms = static_cast<int>(std::lround(std::abs(moment.days - whole) * msPerDay));
    if (ms == static_cast<int>(msPerDay)) {
        ms = 0;
        ++day; // the time of day counts forwards on both sides of day zero
    }
    return {dayZero().addDays(day), QTime::fromMSecsSinceStartOfDay(ms)};
}

QDateTime calendarOf(storage::DateTime moment)
{
    const auto [day, time] = dayAndTimeOf(moment);
    return QDateTime(day, time);
}

storage::DateTime momentOf(const QDateTime &calendar)
{
    return joined(dayZero().daysTo(calendar.date()), calendar.time().msecsSinceStartOfDay());
}

} // namespace dao
