#pragma once

#include <functional>
#include <vector>

#include <QDBusMessage>
#include <QString>
#include <QVariant>

namespace acthost {

struct BusArgument {
    QString name;
    QString type; ///< signature
};

struct BusMethod {
    QString name;
    std::vector<BusArgument> in;
    std::vector<BusArgument> out;
    /// Gets exactly the in-arguments and returns the out-arguments. May throw RunTimeError.
    std::function<QVariantList(const QVariantList &)> run;
};

/// A property that never changes.
struct BusProperty {
    QString name;
    QString type;
    QVariant value;
};

/// One object on the bus: what it offers, as description and as answers, from one table.
class BusObject
{
public:
    BusObject(QString interface, std::vector<BusProperty> properties, std::vector<BusMethod> methods);

    /// The interface element of the object's introspection text.
    QString xml() const;
    /// The answer to a call of one of the methods or to a question for properties. A RunTimeError becomes the error
    /// ACTOLE.Error.N with the number behind the N.
    QDBusMessage answer(const QDBusMessage &message) const;

private:
    QDBusMessage answerMethod(const QDBusMessage &message) const;
    QDBusMessage answerProperties(const QDBusMessage &message) const;

    QString m_interface;
    std::vector<BusProperty> m_properties;
    std::vector<BusMethod> m_methods;
};

} // namespace acthost
