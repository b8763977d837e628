// Answers calls from a table of members, so that what is described is what is served.
#include "acthost/BusObject.h"

#include <algorithm>

#include <QDBusError>
#include <QDBusVariant>

#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr QLatin1StringView kPropertiesInterface("org.freedesktop.DBus.Properties");

QString signatureOf(const std::vector<BusArgument> &arguments)
{
    QString signature;
    for (const BusArgument &argument : arguments)
        signature += argument.type;
    return signature;
}

QString describe(const std::vector<BusArgument> &arguments, const QString &direction)
{
    QString xml;
    for (const BusArgument &argument : arguments)
        xml += u"   <arg name=\"%1\" type=\"%2\" direction=\"%3\"/>\n"_s.arg(argument.name, argument.type, direction);
    return xml;
}

template <typename Member> const Member *find(const std::vector<Member> &members, const QString &name)
{
    const auto found
        = std::find_if(members.begin(), members.end(), [&name](const Member &member) { return member.name == name; });
    return found == members.end() ? nullptr : &*found;
}

} // namespace

BusObject::BusObject(QString interface, std::vector<BusProperty> properties, std::vector<BusMethod> methods)
    : m_interface(std::move(interface))
    , m_properties(std::move(properties))
    , m_methods(std::move(methods))
{ }

QString BusObject::xml() const
{
    QString xml = u" <interface name=\"%1\">\n"_s.arg(m_interface);
    for (const BusProperty &property : m_properties)
        xml += u"  <property name=\"%1\" type=\"%2\" access=\"read\"/>\n"_s.arg(property.name, property.type);
    for (const BusMethod &method : m_methods) {
        xml += u"  <method name=\"%1\">\n%2%3  </method>\n"_s.arg(method.name, describe(method.in, u"in"_s),
                                                                  describe(method.out, u"out"_s));
    }
    return xml + u" </interface>\n"_s;
}

QDBusMessage BusObject::answer(const QDBusMessage &message) const
{
    if (message.interface() == kPropertiesInterface)
        return answerProperties(message);
    if (!message.interface().isEmpty() && message.interface() != m_interface)
        return message.createErrorReply(QDBusError::UnknownInterface, message.interface());
    return answerMethod(message);
}

QDBusMessage BusObject::answerMethod(const QDBusMessage &message) const
{
    const BusMethod *method = find(m_methods, message.member());
    if (!method)
        return message.createErrorReply(QDBusError::UnknownMethod, message.member());
    if (message.signature() != signatureOf(method->in))
        return message.createErrorReply(QDBusError::InvalidArgs,
                                        u"%1(%2)"_s.arg(method->name, signatureOf(method->in)));
    try {
        return message.createReply(method->run(message.arguments()));
    } catch (const RunTimeError &error) {
        return message.createErrorReply(u"ACTOLE.Error.N%1"_s.arg(error.Number()), error.Description());
    }
}

QDBusMessage BusObject::answerProperties(const QDBusMessage &message) const
{
    const QVariantList arguments = message.arguments();
    if (arguments.value(0).toString() != m_interface)
        return message.createErrorReply(QDBusError::UnknownInterface, arguments.value(0).toString());
    if (message.member() == "GetAll"_L1) {
        QVariantMap all;
        for (const BusProperty &property : m_properties)
            all.insert(property.name, property.value);
        return message.createReply(all);
    }
    const BusProperty *property = find(m_properties, arguments.value(1).toString());
    if (!property)
        return message.createErrorReply(QDBusError::UnknownProperty, arguments.value(1).toString());
    if (message.member() != "Get"_L1)
        return message.createErrorReply(QDBusError::PropertyReadOnly, property->name);
    return message.createReply(QVariant::fromValue(QDBusVariant(property->value)));
}

} // namespace acthost
