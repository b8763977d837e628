// A program with automation objects, good and bad ones, written without the code under test.
#include "tests/automation/ForeignProgram.h"

#include <cstdio>
#include <cstdlib>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>

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
 <method name="hang"/><method name="die"/>
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
        if (message.member() != "hang"_L1)
            connection.send(answer(message));
        return true;
    }

private:
    static QDBusMessage answer(const QDBusMessage &message)
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
