#pragma once

#include <optional>
#include <utility>

#include <QDateTime>
#include <QString>

#include "platform/storage/Value.h"

namespace dao {

enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

/// The order in which the user's locale writes a date.
DateOrder localeDateOrder();

/// Reads a date, a time of day, or both ("24.12.2003", "12/24/03 8:15 PM", "2003-12-24T20:15:00"). Years of two digits
/// lie between 1930 and 2029. A text that begins with four digits is year, month, day whatever the order; an American
/// date whose month cannot be one is read as day and month. Nothing if the text is no date.
std::optional<storage::DateTime> dateFromText(const QString &text, DateOrder order);

/// The day and the time of day of a moment, milliseconds are kept, finer parts rounded. An invalid date if the number
/// of days is no day of the calendar.
std::pair<QDate, QTime> dayAndTimeOf(storage::DateTime moment);
/// Between the same and a calendar date.
QDateTime calendarOf(storage::DateTime moment);
storage::DateTime momentOf(const QDateTime &calendar);

} // namespace dao
