// The connection under the automation objects.
#include "platform/automation/dbus/Bus.h"

#include <QDBusError>
#include <QUuid>

#include "platform/automation/Automation.h"

using namespace Qt::StringLiterals;

namespace {

// A connection of our own under a fresh name: the library keeps the shared one for good, even if it never came about.
QDBusConnection connectTo(const QString &address, const QString &connectionName)
{
    if (address.isEmpty())
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    return QDBusConnection::connectToBus(address, connectionName);
}

} // namespace

Bus::Bus(const QString &address, std::chrono::milliseconds timeout)
    : m_timeout(timeout)
    , m_connectionName(QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_connection(connectTo(address, m_connectionName))
{ }

Bus::~Bus()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

QDBusMessage Bus::call(const QString &service, const QString &path, const QString &interface, const QString &method,
                       const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return m_connection.call(message, QDBus::Block, static_cast<int>(m_timeout.count()));
}

std::optional<QString> Bus::ownerOf(const QString &name) const
{
    if (!isConnected())
        return std::nullopt;
    const QDBusMessage reply = call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                                    u"GetNameOwner"_s, {name});
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments().value(0).toString();
    const bool nobody = reply.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || QDBusError(reply).type() == QDBusError::Disconnected;
    if (!nobody)
        throw AutomationError(AutomationError::AutomationFailure, u"%1: %2"_s.arg(name, reply.errorMessage()));
    return std::nullopt;
}
