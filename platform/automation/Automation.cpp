// What every way of automation shares.
#include "platform/automation/Automation.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

AutomationObjectPtr objectOf(const QVariant &result)
{
    return result.canConvert<AutomationObjectPtr>() ? result.value<AutomationObjectPtr>() : nullptr;
}

qint32 wholeNumberOf(const QString &member, const QVariant &result)
{
    const auto fail = [&member](int number) {
        return AutomationError(number, u"%1: %2"_s.arg(member, RunTimeError::standardText(number)));
    };
    bool isNumber = result.typeId() != QMetaType::QString && result.typeId() != QMetaType::Bool;
    const double number = isNumber ? std::nearbyint(result.toDouble(&isNumber)) : 0;
    if (!isNumber)
        throw fail(RunTimeError::TypeMismatch);
    using Range = std::numeric_limits<qint32>;
    if (!(number >= Range::min() && number <= Range::max()))
        throw fail(RunTimeError::Overflow);
    return static_cast<qint32>(number);
}
