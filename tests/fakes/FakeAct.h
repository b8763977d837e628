#pragma once

#include <functional>
#include <map>
#include <vector>

#include <QSize>
#include <QStringList>

#include "platform/automation/Automation.h"

/// An ACT! in memory. Every call is written down as "member(argument, ...)".
class FakeAct : public Automation
{
public:
    using Contact = std::map<int, QVariant>; ///< by field number; field 1 is the unique identifier

    FakeAct();

    QStringList released; ///< "application", "views" and "window", as the program let go of them
    std::vector<Contact> contacts;
    std::size_t current = 0;
    QString databasePath;
    QSize windowSize{640, 480};
    QStringList calls;
    int objectsRefused = 0; ///< how often CreateObject still yields nothing
    bool createYieldsNothing = false; ///< Views.Create gives no contact window
    /// Raised instead of a call for which it gives a number other than 0 (and so for a dead or busy program).
    std::function<int(const QString &call)> failure;
    /// Changes the field number that getfield and SetField were handed by reference.
    std::function<void(qint16 &id)> handsBack;
    std::function<void(const QString &call)> afterwards; ///< called with each call that was carried out; may throw

    AutomationObjectPtr CreateObject(const QString &progId) override;
    /// The objects that the program gets. They must not outlive this one.
    AutomationObjectPtr application() { return handle(QStringLiteral("application"), m_application); }
    AutomationObjectPtr views() { return handle(QStringLiteral("views"), m_views); }
    AutomationObjectPtr contactWindow() { return handle(QStringLiteral("window"), m_view); }
    Contact *find(const QString &uniqueId);
    /// The calls of one member, for example all "SetField(...)".
    QStringList callsOf(const QString &member) const;

private:
    AutomationObjectPtr handle(const QString &name, const AutomationObjectPtr &object);

    AutomationObjectPtr m_application;
    AutomationObjectPtr m_views;
    AutomationObjectPtr m_view;
};
