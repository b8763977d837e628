#pragma once

#include <map>
#include <memory>
#include <vector>

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QString>

#include "acthost/BusObject.h"
#include "acthost/ContactBook.h"
#include "acthost/HostWindow.h"
#include "acthost/Lookup.h"
#include "acthost/Options.h"

namespace acthost {

/// The automation objects on the session bus: the application, its view collection and the contact windows that
/// callers have made. Book and window must outlive it.
class ActService : public QDBusVirtualObject
{
public:
    ActService(ContactBook &book, HostWindow &window, const Faults &faults);

    /// Takes the bus name; others then find the objects. Returns why not, in German; empty if all is well.
    QString offer(const QString &busName);
    /// Gives the bus name up. Objects that callers hold go on working.
    void withdraw(const QString &busName);
    /// From now on calls stay unanswered, for good, or are answered again.
    void setHanging(bool hanging) { m_hanging = hanging; }

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    bool isBusy();
    BusObject application();
    std::vector<BusMethod> windowMethods();
    BusObject views();
    BusObject contactView(Lookup &lookup);
    QString createView();

    ContactBook &m_book;
    HostWindow &m_window;
    QDBusConnection m_connection;
    std::vector<std::unique_ptr<Lookup>> m_lookups; // one for each contact window
    std::map<QString, BusObject> m_objects; // by path
    bool m_hanging = false;
    Faults m_faults;
    int m_calls = 0; // taken so far
    QElapsedTimer m_busy; // since the call that the faults name was refused first
};

} // namespace acthost
