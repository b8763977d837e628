#pragma once

#include <map>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

struct MethodDescription {
    QString interface;
    QStringList inTypes; ///< one signature per in-argument
    QStringList outTypes;

    /// Whether the in-arguments at these positions come back first among the out-arguments: told by the types, since
    /// a method that is handed a variable need not declare that it changes it.
    bool givesBack(const std::vector<int> &references) const;
};

/// What an object says about its members. The bus's own interfaces, which every object has, do not count.
class ObjectDescription
{
public:
    /// Nothing if the text is no description.
    static std::optional<ObjectDescription> parse(const QString &xml);

    /// nullptr if there is none; names are case-sensitive.
    const MethodDescription *method(const QString &name) const;
    std::optional<QString> interfaceOfProperty(const QString &name) const;

private:
    std::map<QString, MethodDescription> m_methods;
    std::map<QString, QString> m_properties; // name to interface
};
