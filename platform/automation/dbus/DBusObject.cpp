// Calls and property reads of one remote object: values out, values in, and failures with the numbers users know.
#include "platform/automation/dbus/DBusObject.h"

#include <cmath>

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

AutomationError errorOf(const QString &member, int number, const QString &text)
{
    return {number, u"%1: %2"_s.arg(member, text)};
}

AutomationError standardErrorOf(const QString &member, int number)
{
    return errorOf(member, number, AutomationError::standardText(number));
}

QString inSeconds(std::chrono::milliseconds time)
{
    return QLocale(QLocale::German).toString(static_cast<double>(time.count()) / 1000.0);
}

bool isSimple(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
        return true;
    default:
        return false;
    }
}

QVariant sendable(const QString &member, const QVariant &value)
{
    if (value.typeId() == QMetaType::Float) // the bus knows one width of floating point only
        return value.toDouble();
    if (!isSimple(value))
        throw errorOf(member, AutomationError::TypeMismatch,
                      u"Ein Wert vom Typ „%1“ kann nicht übergeben werden."_s.arg(
                          value.isValid() ? QString::fromLatin1(value.typeName()) : u"leer"_s));
    return value;
}

// Elements of a name on the bus never begin with a digit, hence a letter or underscore before the number.
std::optional<int> numberGivenBy(const QString &errorName)
{
    constexpr QLatin1StringView prefix("ACTOLE.Error.");
    if (!errorName.startsWith(prefix))
        return std::nullopt;
    bool isNumber = false;
    const int number = QStringView(errorName).mid(prefix.size() + 1).toInt(&isNumber);
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

} // namespace

DBusObject::DBusObject(std::shared_ptr<Bus> bus, QString owner, QString path)
    : m_bus(std::move(bus))
    , m_owner(std::move(owner))
    , m_path(std::move(path))
{ }

QVariant DBusObject::get(const QString &property)
{
    const std::optional<QString> interface = description(property).interfaceOfProperty(property);
    if (!interface)
        throw standardErrorOf(property, AutomationError::UnknownMember);
    const QVariantList answer = send(property, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {*interface, property});
    return received(property, answer.value(0));
}

QVariant DBusObject::call(const QString &method, const Arguments &arguments)
{
    const MethodDescription *described = description(method).method(method);
    if (!described)
        throw standardErrorOf(method, AutomationError::UnknownMember);

    QVariantList values;
    std::vector<int> positions;
    std::vector<const Argument *> references;
    for (const Argument &argument : arguments) {
        if (argument.isByReference()) {
            positions.push_back(static_cast<int>(values.size()));
            references.push_back(&argument);
        }
        values.append(sendable(method, argument.value()));
    }

    const QVariantList answer = send(method, described->interface, method, values);
    const auto resultAt = [&](std::size_t position) {
        const auto i = static_cast<qsizetype>(position);
        return i < answer.size() ? received(method, answer[i]) : QVariant::fromValue(nullptr);
    };
    if (!described->givesBack(positions))
        return resultAt(0);
    const QVariant result = resultAt(references.size());
    store(method, references, answer);
    return result;
}

// All or none: a half-filled set of variables would look like an answer.
void DBusObject::store(const QString &method, const std::vector<const Argument *> &references,
                       const QVariantList &answer) const
{
    if (answer.size() < static_cast<qsizetype>(references.size()))
        throw errorOf(method, AutomationError::AutomationFailure,
                      u"Die Antwort des anderen Programms ist unvollständig."_s);
    QVariantList values;
    for (const Argument *reference : references) {
        values.append(received(method, answer[values.size()]));
        if (values.last().metaType() != reference->value().metaType())
            throw errorOf(method, AutomationError::TypeMismatch,
                          u"Das andere Programm hat einen Wert vom falschen Typ zurückgegeben."_s);
    }
    qsizetype next = 0;
    for (const Argument *reference : references)
        reference->store(values[next++]);
}

const ObjectDescription &DBusObject::description(const QString &member)
{
    if (!m_description) {
        const QVariantList answer = send(member, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s, {});
        m_description = ObjectDescription::parse(answer.value(0).toString());
        if (!m_description)
            throw errorOf(member, AutomationError::AutomationFailure,
                          u"Das andere Programm beschreibt sein Objekt „%1“ nicht verständlich."_s.arg(m_path));
    }
    return *m_description;
}

QVariantList DBusObject::send(const QString &member, const QString &interface, const QString &method,
                              const QVariantList &arguments)
{
    const std::chrono::milliseconds patience = m_bus->patienceWith(m_owner);
    const QDBusMessage reply = m_bus->call(m_owner, m_path, interface, method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw failure(member, reply, patience);
    return reply.arguments();
}

AutomationError DBusObject::failure(const QString &member, const QDBusMessage &reply,
                                    std::chrono::milliseconds patience)
{
    if (const std::optional<int> number = numberGivenBy(reply.errorName())) {
        const QString text = reply.errorMessage();
        return errorOf(member, *number, text.isEmpty() ? AutomationError::standardText(*number) : text);
    }
    if (Bus::saysBusy(reply))
        return errorOf(member, AutomationError::AutomationFailure,
                       u"Das andere Programm ist beschäftigt und hat den Aufruf nach %1 Sekunden noch nicht "
                       "angenommen."_s.arg(inSeconds(patience)));

    const AutomationError gone = standardErrorOf(member, AutomationError::ServerGone);
    if (reply.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1)
        return gone;
    switch (QDBusError(reply).type()) {
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownProperty:
        return standardErrorOf(member, AutomationError::UnknownMember);
    case QDBusError::InvalidArgs:
    case QDBusError::InvalidSignature:
        return standardErrorOf(member, AutomationError::WrongArgumentCount);
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownObject:
    case QDBusError::Disconnected:
        return gone;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        // The bus says "no reply" as well when the other program ends before it has answered.
        if (!m_bus->ownerOf(m_owner))
            return gone;
        return errorOf(member, AutomationError::AutomationFailure,
                       u"Das andere Programm hat nach %1 Sekunden noch nicht geantwortet."_s.arg(inSeconds(patience)));
    default:
        return errorOf(member, AutomationError::AutomationFailure,
                       u"%1 (%2: %3)"_s.arg(AutomationError::standardText(AutomationError::AutomationFailure),
                                            reply.errorName(), reply.errorMessage()));
    }
}

QVariant DBusObject::received(const QString &member, const QVariant &value) const
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return received(member, value.value<QDBusVariant>().variant());
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>()) {
        const QString path = value.value<QDBusObjectPath>().path();
        return QVariant::fromValue<AutomationObjectPtr>(std::make_shared<DBusObject>(m_bus, m_owner, path));
    }
    if (value.isValid() && !isSimple(value))
        throw errorOf(member, AutomationError::TypeMismatch,
                      u"Das andere Programm hat einen Wert geliefert, der nicht einfach ist."_s);
    if (value.typeId() == QMetaType::Double && !std::isfinite(value.toDouble()))
        throw standardErrorOf(member, AutomationError::Overflow);
    return value;
}
