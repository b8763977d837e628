#pragma once

#include <chrono>
#include <optional>

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
    std::chrono::milliseconds timeout() const { return m_timeout; }

    /// The answer, or an error message: also for a bus that is gone and for an answer that does not come in time.
    /// Never makes the bus start a program.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;

    /// The unique name of the program that owns a bus name; nothing if nobody does, or if the bus is gone.
    /// Throws AutomationError when the bus refuses the question.
    std::optional<QString> ownerOf(const QString &name) const;

private:
    std::chrono::milliseconds m_timeout;
    QString m_connectionName;
    QDBusConnection m_connection;
};
