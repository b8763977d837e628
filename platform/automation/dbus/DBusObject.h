#pragma once

#include <memory>
#include <optional>

#include <QDBusMessage>

#include "platform/automation/Automation.h"
#include "platform/automation/dbus/Bus.h"
#include "platform/automation/dbus/ObjectDescription.h"

/// One object path of another program. What members it has is asked once, at the first use.
class DBusObject : public AutomationObject
{
public:
    /// `owner` is the other program's unique name on the bus.
    DBusObject(std::shared_ptr<Bus> bus, QString owner, QString path);

    QVariant get(const QString &property) override;
    QVariant call(const QString &method, const Arguments &arguments = {}) override;

private:
    const ObjectDescription &description(const QString &member);
    QVariantList send(const QString &member, const QString &interface, const QString &method,
                      const QVariantList &arguments);
    AutomationError failure(const QString &member, const QDBusMessage &reply, std::chrono::milliseconds patience);
    void store(const QString &method, const std::vector<const Argument *> &references,
               const QVariantList &answer) const;
    QVariant received(const QString &member, const QVariant &value) const;

    std::shared_ptr<Bus> m_bus;
    QString m_owner;
    QString m_path;
    std::optional<ObjectDescription> m_description;
};
