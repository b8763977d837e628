// A program with automation objects, good and bad ones, written without the code under test.
#include "tests/automation/ForeignProgram.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <utility>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QPoint>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kDescription = R"(<interface name="TEST.OBJECT">
 <method name="getsize"><arg type="i" direction="in"/><arg type="i" direction="in"/>
  <arg type="i" direction="out"/><arg type="i" direction="out"/></method>
 <method name="addTo"><arg type="n"/><arg type="i"/>
  <arg type="n" direction="out"/><arg type="s" direction="out"/></method>
 <method name="getfield"><arg type="n"/><arg type="v" direction="out"/></method>
 <method name="SetField"><arg type="n"/><arg type="s"/></method>
 <method name="signature"><arg type="v"/><arg type="s" direction="out"/></method>
 <method name="list"><arg type="as" direction="out"/></method>
 <method name="fail"><arg type="i"/></method>
 <method name="failStrangely"/><method name="wrongArguments"/><method name="promised"/>
 <method name="halfAnswer"><arg type="i"/><arg type="i" direction="out"/></method>
 <method name="hang"/><method name="hung"><arg type="i" direction="out"/></method><method name="die"/>
 <method name="any"><arg type="s"/><arg type="v" direction="out"/></method>
 <method name="giveBack"><arg type="i"/><arg type="s"/><arg type="i"/>
  <arg type="i" direction="out"/><arg type="i" direction="out"/></method>
 <method name="busy"><arg type="s"/><arg type="i"/><arg type="i" direction="out"/></method>
 <property name="Version" type="s" access="read"/>
</interface>)";

class Foreign : public QDBusVirtualObject
{
public:
    QString introspect(const QString & /*path*/) const override { return QString::fromLatin1(kDescription); }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == "Introspect"_L1)
            return false;
        if (message.member() == "die"_L1)
            std::_Exit(0);
        if (message.member() == "hang"_L1)
            ++m_hung;
        else
            connection.send(answer(message));
        return true;
    }

private:
    QDBusMessage answer(const QDBusMessage &message)
    {
        static const std::map<QString, QString> errors{
            {u"failStrangely"_s, u"ACTOLE.Error.Late"_s},
            {u"wrongArguments"_s, QDBusError::errorString(QDBusError::InvalidArgs)},
            {u"promised"_s, QDBusError::errorString(QDBusError::UnknownMethod)},
        };
        const QVariantList in = message.arguments();
        const QString member = message.member() == "Get"_L1 ? in.value(1).toString() : message.member();
        if (const auto error = errors.find(member); error != errors.end())
            return message.createErrorReply(error->second, u"kaputt"_s);
        if (member == "fail"_L1)
            return message.createErrorReply(u"ACTOLE.Error.N%1"_s.arg(in[0].toInt()), u"Hinweisfenster offen"_s);
        if (member == "busy"_L1 && m_refused++ < in[1].toInt()) // so many times; then tells how often it was called
            return message.createErrorReply(in[0].toString(), u"später"_s);
        return message.createReply(values(member, in, message.signature()));
    }

    QVariantList values(const QString &member, const QVariantList &in, const QString &signature)
    {
        if (member == "busy"_L1)
            return {std::exchange(m_refused, 0)};
        if (member == "hung"_L1)
            return {m_hung};
        if (member == "getsize"_L1)
            return {in[0].toInt() + 800, in[1].toInt() + 600};
        if (member == "addTo"_L1)
            return {QVariant::fromValue(static_cast<short>(in[0].toInt() + in[1].toInt())), u"sum of "_s + signature};
        if (member == "getfield"_L1)
            return {QVariant::fromValue(QDBusVariant(field(in[0].value<short>())))};
        if (member == "signature"_L1)
            return {signature};
        if (member == "list"_L1)
            return {QStringList{u"a"_s, u"b"_s}};
        if (member == "any"_L1)
            return valuesOf(in[0].toString());
        if (member == "giveBack"_L1)
            return valuesOf(in[1].toString());
        if (member == "Version"_L1)
            return {QVariant::fromValue(QDBusVariant(u"6.0.4"_s))};
        return {};
    }

    static QVariant field(short number)
    {
        const QVariant fields[]
            = {u"Müller & Söhne"_s, 12.5, QVariant::fromValue(QDBusVariant(QVariant::fromValue<short>(7))), true};
        return fields[number - 1];
    }

    // One value for each character that has one; "-" stands for none at all.
    static QVariantList valuesOf(const QString &kinds)
    {
        using Real = std::numeric_limits<double>;
        QVariant nested = u"innen"_s;
        for (int depth = 0; depth < 20; ++depth)
            nested = QVariant::fromValue(QDBusVariant(nested));
        const std::map<char16_t, QVariant> values{
            {u'y', QVariant::fromValue<uchar>(255)},
            {u'b', true},
            {u'n', QVariant::fromValue<short>(-32768)},
            {u'q', QVariant::fromValue<ushort>(65535)},
            {u'i', -7},
            {u'u', 4294967295U},
            {u'x', std::numeric_limits<qlonglong>::min()},
            {u't', std::numeric_limits<qulonglong>::max()},
            {u'd', 1e300},
            {u'N', Real::quiet_NaN()},
            {u'I', -Real::infinity()},
            {u's', u"Groß"_s},
            {u'e', QString()},
            {u'L', QString(1'000'000, u'ü')},
            {u'o', QVariant::fromValue(QDBusObjectPath(u"/Views"_s))},
            {u'g', QVariant::fromValue(QDBusSignature(u"a{sv}"_s))},
            {u'v', nested},
            {u'h', QVariant::fromValue(QDBusUnixFileDescriptor(1))},
            {u'A', QStringList{u"a"_s}},
            {u'B', QByteArray("bytes")},
            {u'C', QVariantList{1, u"a"_s}},
            {u'D', QVariantMap{{u"a"_s, 1}}},
            {u'E', QVariant::fromValue(QList<int>{1, 2})},
            {u'S', QPoint(1, 2)}, // goes as a structure
        };
        QVariantList list;
        for (const QChar kind : kinds) {
            if (const auto value = values.find(kind.unicode()); value != values.end())
                list.append(value->second);
        }
        return list;
    }

    int m_refused = 0;
    int m_hung = 0;
};

} // namespace

int runForeignProgram()
{
    Foreign foreign;
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool served = bus.registerVirtualObject(u"/"_s, &foreign, QDBusConnection::SubPath)
        && bus.registerService(u"TEST.FOREIGN"_s);
    std::puts(served ? "ready" : "failed");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
