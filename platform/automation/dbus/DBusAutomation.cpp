// The way from a ProgID to the object of a running program.
#include "platform/automation/dbus/DBusAutomation.h"

#include "platform/automation/dbus/Bus.h"
#include "platform/automation/dbus/DBusObject.h"

using namespace Qt::StringLiterals;

DBusAutomation::DBusAutomation(DBusSettings settings)
    : m_settings(std::move(settings))
{ }

DBusAutomation::~DBusAutomation() = default;

const std::shared_ptr<Bus> &DBusAutomation::bus()
{
    if (!m_bus || !m_bus->isConnected())
        m_bus = std::make_shared<Bus>(m_settings.busAddress, m_settings.timeout);
    return m_bus;
}

AutomationObjectPtr DBusAutomation::CreateObject(const QString &progId)
{
    // The object belongs to the program that owns the name now, not to one that takes the name later.
    const std::optional<QString> owner = bus()->ownerOf(progId);
    return owner ? std::make_shared<DBusObject>(m_bus, *owner, u"/"_s) : nullptr;
}

std::optional<bool> DBusAutomation::nameKnown(const QString &progId)
{
    if (!bus()->isConnected())
        return std::nullopt;
    try {
        return m_bus->ownerOf(progId) || m_bus->isActivatable(progId);
    } catch (const AutomationError &) { // CreateObject asks the same, and its failure is told
        return std::nullopt;
    }
}
