#pragma once

#include <chrono>
#include <optional>
#include <set>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

/// A connection to a message bus that blocks while it waits: no user event is handled during a call.
///
/// Owns       the connection; it is closed with the object.
/// Threads    the one that created it.
class Bus
{
public:
    /// Connects to the bus at `address`, or to the session bus when that is empty. Where there is none the object is
    /// there but not connected.
    Bus(const QString &address, std::chrono::milliseconds timeout);
    ~Bus();
    Bus(const Bus &) = delete;
    Bus &operator=(const Bus &) = delete;

    bool isConnected() const { return m_connection.isConnected(); }
    /// How long the next call of this program may take.
    std::chrono::milliseconds patienceWith(const QString &service) const;

    /// The answer, or an error message: also for a bus that is gone and for an answer that does not come in time.
    /// Asks a busy program again until the time is up, but never one that left a call unanswered. A program that was
    /// late the last time gets a fraction of the time. Never makes the bus start a program.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {});

    /// Whether an error says that the other program has not even begun with the call: ACTOLE.Error.Busy, its own
    /// answer, or org.freedesktop.DBus.Error.LimitsExceeded, the bus's.
    static bool saysBusy(const QDBusMessage &reply);

    /// The unique name of the program that owns a bus name; nothing if nobody does, or if the bus is gone.
    /// Throws AutomationError when the bus refuses the question.
    std::optional<QString> ownerOf(const QString &name);
    /// Whether the bus knows a program to start for this name. Throws AutomationError when it does not answer.
    bool isActivatable(const QString &name);

private:
    QDBusMessage ask(const QString &method, const QVariantList &arguments = {}); // the bus itself

    std::chrono::milliseconds m_timeout;
    std::set<QString> m_late; // programs whose last call ran out of time
    QString m_connectionName;
    QDBusConnection m_connection;
};
