// The computer's clock, in local time.
#include "platform/desktop/qt/SystemClock.h"

#include <QTime>

namespace desktop {

double SystemClock::Timer() const
{
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

QDate SystemClock::Date() const
{
    return QDate::currentDate();
}

} // namespace desktop
