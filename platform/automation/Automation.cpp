// What every way of automation shares.
#include "platform/automation/Automation.h"

AutomationObjectPtr objectOf(const QVariant &result)
{
    return result.canConvert<AutomationObjectPtr>() ? result.value<AutomationObjectPtr>() : nullptr;
}
