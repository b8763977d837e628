// The time that goes into the file.
#include "platform/jet/Clock.h"

#include <QDateTime>

namespace jet {

storage::DateTime now()
{
    constexpr double secondsOfDay = 86400;
    const QDateTime moment = QDateTime::currentDateTime();
    const auto days = QDate(1899, 12, 30).daysTo(moment.date());
    return {static_cast<double>(days) + QTime(0, 0).secsTo(moment.time()) / secondsOfDay};
}

} // namespace jet
