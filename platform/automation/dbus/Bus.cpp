// The connection under the automation objects.
#include "platform/automation/dbus/Bus.h"

#include <algorithm>
#include <thread>

#include <QDBusError>
#include <QDeadlineTimer>
#include <QUuid>

#include "platform/automation/Automation.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pauseWhileBusy = 100ms;

bool ranOutOfTime(const QDBusMessage &reply)
{
    const QDBusError::ErrorType error = QDBusError(reply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
}

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
                       const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);

    const QDeadlineTimer end(patienceWith(service));
    for (;;) {
        const QDBusMessage reply = m_connection.call(message, QDBus::Block, static_cast<int>(end.remainingTime()));
        const bool busy = saysBusy(reply);
        if (busy && end.remainingTimeAsDuration() > 2 * pauseWhileBusy) { // the next answer needs some time as well
            std::this_thread::sleep_for(pauseWhileBusy);
            continue;
        }
        if (busy || ranOutOfTime(reply))
            m_late.insert(service);
        else
            m_late.erase(service);
        return reply;
    }
}

bool Bus::saysBusy(const QDBusMessage &reply)
{
    return reply.errorName() == "ACTOLE.Error.Busy"_L1 || QDBusError(reply).type() == QDBusError::LimitsExceeded;
}

std::chrono::milliseconds Bus::patienceWith(const QString &service) const
{
    if (!m_late.contains(service))
        return m_timeout;
    return std::min<std::chrono::milliseconds>(m_timeout, std::max<std::chrono::milliseconds>(1s, m_timeout / 5));
}

QDBusMessage Bus::ask(const QString &method, const QVariantList &arguments)
{
    return call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method, arguments);
}

std::optional<QString> Bus::ownerOf(const QString &name)
{
    if (!isConnected())
        return std::nullopt;
    const QDBusMessage reply = ask(u"GetNameOwner"_s, {name});
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments().value(0).toString();
    const bool nobody = reply.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || QDBusError(reply).type() == QDBusError::Disconnected;
    if (!nobody)
        throw AutomationError(AutomationError::AutomationFailure, u"%1: %2"_s.arg(name, reply.errorMessage()));
    return std::nullopt;
}

bool Bus::isActivatable(const QString &name)
{
    const QDBusMessage reply = ask(u"ListActivatableNames"_s);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw AutomationError(AutomationError::AutomationFailure, u"%1: %2"_s.arg(name, reply.errorMessage()));
    return reply.arguments().value(0).toStringList().contains(name);
}
