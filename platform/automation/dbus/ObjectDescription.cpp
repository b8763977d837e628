// Reads the XML in which an object on the bus describes itself.
#include "platform/automation/dbus/ObjectDescription.h"

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

MethodDescription readMethod(QXmlStreamReader &xml, const QString &interface)
{
    MethodDescription method{interface, {}, {}};
    while (xml.readNextStartElement()) {
        if (xml.name() == "arg"_L1) {
            const QXmlStreamAttributes attributes = xml.attributes();
            const bool out = attributes.value("direction"_L1) == "out"_L1;
            (out ? method.outTypes : method.inTypes).append(attributes.value("type"_L1).toString());
        }
        xml.skipCurrentElement();
    }
    return method;
}

} // namespace

bool MethodDescription::givesBack(const std::vector<int> &references) const
{
    if (outTypes.size() < static_cast<qsizetype>(references.size()))
        return false;
    qsizetype out = 0;
    for (const int reference : references) {
        if (inTypes.value(reference) != outTypes[out++])
            return false;
    }
    return true;
}

std::optional<ObjectDescription> ObjectDescription::parse(const QString &text)
{
    ObjectDescription description;
    QXmlStreamReader xml(text);
    if (!xml.readNextStartElement() || xml.name() != "node"_L1)
        return std::nullopt;
    while (xml.readNextStartElement()) {
        const QString interface = xml.attributes().value("name"_L1).toString();
        if (xml.name() != "interface"_L1 || interface.startsWith("org.freedesktop.DBus."_L1)) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            const QString name = xml.attributes().value("name"_L1).toString();
            if (xml.name() == "method"_L1) {
                description.m_methods.try_emplace(name, readMethod(xml, interface));
                continue;
            }
            if (xml.name() == "property"_L1)
                description.m_properties.try_emplace(name, interface);
            xml.skipCurrentElement();
        }
    }
    return xml.hasError() ? std::nullopt : std::optional(description);
}

const MethodDescription *ObjectDescription::method(const QString &name) const
{
    const auto found = m_methods.find(name);
    return found == m_methods.end() ? nullptr : &found->second;
}

std::optional<QString> ObjectDescription::interfaceOfProperty(const QString &name) const
{
    const auto found = m_properties.find(name);
    return found == m_properties.end() ? std::nullopt : std::optional(found->second);
}
