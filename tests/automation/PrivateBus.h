#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

/// A message bus for one test, and programs that run on it. Everything ends with the object.
class PrivateBus
{
public:
    /// A bus that knows services below `data`, as XDG_DATA_HOME names them.
    explicit PrivateBus(const QString &data = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!data.isEmpty())
            environment.insert(QStringLiteral("XDG_DATA_HOME"), data);
        m_daemon.setProcessEnvironment(environment);
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForStarted() && m_daemon.waitForReadyRead(10000))
            m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus() { stop(); }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// Empty if the daemon did not start.
    const QString &address() const { return m_address; }
    void stop() { end(m_daemon); }

    /// Starts a program that finds this bus as its session bus, and returns once it has written its first line.
    bool start(QProcess &process, const QString &program, const QStringList &arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, arguments);
        return process.waitForStarted() && process.waitForReadyRead(20000);
    }

    static void end(QProcess &process)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished();
    }

private:
    QProcess m_daemon;
    QString m_address;
};
