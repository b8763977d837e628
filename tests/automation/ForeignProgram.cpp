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
 <method name="Create"><arg type="o" direction="out"/></method>
 <method name="list"><arg type="as" direction="out"/></method>
 <method name="fail"><arg type="i"/></method>
 <method name="failStrangely"/><method name="wrongArguments"/><method name="promised"/>
 <method name="halfAnswer"><arg type="i"/><arg type="i" direction="out"/></method>
 <method name="hang"/><method name="hung"><arg type="i" direction="out"/></method><method name="die"/>
 <method name="any"><arg type="s"/><arg type="v" direction="out"/></method>
 <method name="giveBack"><arg type="i"/><arg type="s"/><arg type="i"/>
  <arg type="i" direction="out"/><arg type="i" direction="out"/></method>
 <method name="busy"><arg type="s"/><arg type="i"/><arg type="i" direction="out"/></method>
 <property name="Views" type="o" access="read"/><property name="Version" type="s" access="read"/>
</interface>)";

class Foreign : public QDBusVirtualObject
{
public:
    QString introspect(const QString &path) const override
    {
        return path == "/Garbled"_L1 ? u"<interface"_s : QString::fromLatin1(kDescription);
    }

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
        const QVariantList in = message.arguments();
        const QString member = message.member() == "Get"_L1 ? in.value(1).toString() : message.member();
        if (member == "getsize"_L1)
            return message.createReply({in[0].toInt() + 800, in[1].toInt() + 600});
        if (member == "addTo"_L1)
            return message.createReply({QVariant::fromValue<short>(static_cast<short>(in[0].toInt() + in[1].toInt())),
                                        u"sum of %1"_s.arg(message.signature())});
        if (member == "getfield"_L1)
            return message.createReply(QVariant::fromValue(QDBusVariant(field(in[0].value<short>()))));
        if (member == "signature"_L1)
            return message.createReply(message.signature());
        if (member == "Create"_L1)
            return message.createReply(QVariant::fromValue(QDBusObjectPath(u"/Views/1"_s)));
        if (member == "list"_L1)
            return message.createReply(QStringList{u"a"_s, u"b"_s});
        if (member == "hung"_L1)
            return message.createReply(m_hung);
        if (member == "any"_L1)
            return message.createReply(valuesOf(in[0].toString()));
        if (member == "giveBack"_L1)
            return message.createReply(valuesOf(in[1].toString()));
        if (member == "busy"_L1) // refuses the call so many times, then tells how often it was called
            return m_refused++ < in[1].toInt() ? message.createErrorReply(in[0].toString(), u"später"_s)
                                               : message.createReply(std::exchange(m_refused, 0));
        if (member == "fail"_L1)
            return message.createErrorReply(u"ACTOLE.Error.N%1"_s.arg(in[0].toInt()), u"Hinweisfenster offen"_s);
        if (member == "failStrangely"_L1)
            return message.createErrorReply(u"ACTOLE.Error.Late"_s, u"kaputt"_s);
        if (member == "wrongArguments"_L1)
            return message.createErrorReply(QDBusError::InvalidArgs, u"no"_s);
        if (member == "promised"_L1)
            return message.createErrorReply(QDBusError::UnknownMethod, u"no"_s);
        if (member == "Views"_L1)
            return message.createReply(
                QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusObjectPath(u"/Views"_s)))));
        if (member == "Version"_L1)
            return message.createReply(QVariant::fromValue(QDBusVariant(u"6.0.4"_s)));
        return message.createReply();
    }

    static QVariant field(short number)
    {
        switch (number) {
        case 1:
            return u"Müller & Söhne"_s;
        case 2:
            return 12.5;
        case 3:
            return QVariant::fromValue(QDBusVariant(QVariant::fromValue<short>(7)));
        default:
            return true;
        }
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
