// The members that other programs find on the session bus.
#include "acthost/ActService.h"

#include <cstdlib>

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kInvalidCall = 5;

QVariant pathValue(const QString &path)
{
    return QVariant::fromValue(QDBusObjectPath(path));
}

} // namespace

ActService::ActService(ContactBook &book, HostWindow &window, const Faults &faults)
    : m_book(book)
    , m_window(window)
    , m_connection(QDBusConnection::sessionBus())
    , m_faults(faults)
{
    m_objects.emplace(u"/"_s, application());
    m_objects.emplace(u"/Views"_s, views());
    m_connection.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
}

QString ActService::offer(const QString &busName)
{
    if (!m_connection.isConnected())
        return u"Es gibt keinen Sitzungsbus."_s;
    if (!m_connection.registerService(busName))
        return u"Der Name %1 ist am Sitzungsbus nicht zu haben."_s.arg(busName);
    return {};
}

void ActService::withdraw(const QString &busName)
{
    m_connection.unregisterService(busName);
}

QString ActService::introspect(const QString &path) const
{
    const auto object = m_objects.find(path);
    QString xml = object == m_objects.end() ? QString() : object->second.xml();
    const QString prefix = path == "/"_L1 ? path : path + u'/';
    for (const auto &[child, unused] : m_objects) {
        const QString name = child.startsWith(prefix) ? child.sliced(prefix.size()) : QString();
        if (!name.isEmpty() && !name.contains(u'/'))
            xml += u" <node name=\"%1\"/>\n"_s.arg(name);
    }
    return xml;
}

bool ActService::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (m_hanging)
        return true;
    if (message.interface() == "org.freedesktop.DBus.Introspectable"_L1)
        return false; // the library asks introspect()
    if (isBusy()) {
        connection.send(message.createErrorReply(u"ACTOLE.Error.Busy"_s, u"Bitte später noch einmal."_s));
        return true;
    }
    if (++m_calls == m_faults.diesAt)
        std::_Exit(EXIT_FAILURE); // as in a crash: nothing is tidied up
    const auto object = m_objects.find(message.path());
    const QDBusMessage reply = object == m_objects.end()
        ? message.createErrorReply(QDBusError::UnknownObject, message.path())
        : object->second.answer(message);
    if (m_calls == m_faults.hangsAt)
        m_hanging = true;
    else if (message.isReplyRequired())
        connection.send(reply);
    return true;
}

bool ActService::isBusy()
{
    if (m_calls + 1 != m_faults.busyAt)
        return false;
    if (!m_busy.isValid())
        m_busy.start();
    return m_faults.busySeconds == 0 || m_busy.elapsed() < 1000LL * m_faults.busySeconds;
}

BusObject ActService::application()
{
    std::vector<BusMethod> methods = windowMethods();
    const auto tells = [&methods](const QString &name, const QString &what, const QString &text) {
        methods.push_back({name, {}, {{what, u"s"_s}}, [text](const QVariantList &) { return QVariantList{text}; }});
    };
    tells(u"getopendbname"_s, u"path"_s, m_book.path());
    tells(u"getcurrentusername"_s, u"name"_s, qEnvironmentVariable("USER", u"Benutzer"_s));
    tells(u"getuserprivilege"_s, u"privilege"_s, u"Administrator"_s);
    return {
        u"ACTOLE.APPOBJECT"_s,
        {{u"Views"_s, u"o"_s, pathValue(u"/Views"_s)}, {u"ActVersion"_s, u"s"_s, u"6.0.4"_s}},
        std::move(methods),
    };
}

std::vector<BusMethod> ActService::windowMethods()
{
    const std::vector<BusArgument> size{{u"width"_s, u"i"_s}, {u"height"_s, u"i"_s}};
    const auto measure = [this](const QVariantList &) {
        const QSize pixels = m_window.sizeInPixels();
        return QVariantList{pixels.width(), pixels.height()};
    };
    const auto resize = [this](const QVariantList &in) {
        const QSize pixels(in[0].toInt(), in[1].toInt());
        if (pixels.isEmpty())
            throw RunTimeError(kInvalidCall, u"Ein Fenster dieser Größe gibt es nicht."_s);
        m_window.resizeTo(pixels);
        return in;
    };
    const auto minimize = [this](const QVariantList &) {
        m_window.minimize();
        return QVariantList();
    };
    const auto maximize = [this](const QVariantList &) {
        m_window.maximize();
        return QVariantList();
    };
    return {
        {u"getsize"_s, size, size, measure},
        {u"Resize"_s, size, size, resize},
        {u"Minimize"_s, {}, {}, minimize},
        {u"maximize"_s, {}, {}, maximize},
    };
}

BusObject ActService::views()
{
    return {
        u"ACTOLE.VIEWS"_s,
        {},
        {
            {u"Create"_s,
             {{u"type"_s, u"n"_s}, {u"name"_s, u"s"_s}},
             {{u"view"_s, u"o"_s}},
             [this](const QVariantList &) { return QVariantList{pathValue(createView())}; }},
        },
    };
}

QString ActService::createView()
{
    Lookup &lookup = *m_lookups.emplace_back(std::make_unique<Lookup>(m_book, m_window.contactOnScreen()));
    const QString path = u"/Views/%1"_s.arg(m_lookups.size());
    m_objects.emplace(path, contactView(lookup));
    return path;
}

BusObject ActService::contactView(Lookup &lookup)
{
    using Action = std::function<QVariantList(const QVariantList &)>;
    const auto guarded = [this](const Action &action) -> Action {
        return [this, action](const QVariantList &in) {
            if (m_window.noticeOpen())
                throw RunTimeError(RunTimeError::ObjectNotSet, u"Es ist noch ein Hinweisfenster offen."_s);
            return action(in);
        };
    };
    const auto guardedAndShown = [this, &lookup, guarded](const std::function<void(const QVariantList &)> &action) {
        return guarded([this, &lookup, action](const QVariantList &in) {
            action(in);
            m_window.showContact(lookup.current());
            return QVariantList();
        });
    };
    const auto count = [&lookup](const QVariantList &) { return QVariantList{lookup.count()}; };
    const auto getField = [this, &lookup](const QVariantList &in) {
        const QVariant value = m_book.value(lookup.requireCurrent(), in[0].toInt());
        return QVariantList{QVariant::fromValue(QDBusVariant(value))};
    };
    const auto setField = [this, &lookup](const QVariantList &in) {
        m_book.write(lookup.requireCurrent(), in[0].toInt(), in[1].toString());
    };
    const BusArgument field{u"field"_s, u"n"_s};
    const BusArgument id{u"uniqueId"_s, u"s"_s};
    return {
        u"ACTOLE.CONTACTVIEW"_s,
        {},
        {
            {u"LookupALL"_s, {}, {}, guardedAndShown([&lookup](const QVariantList &) { lookup.all(); })},
            {u"createLookup"_s, {id}, {}, guardedAndShown([&lookup](const QVariantList &in) {
                 lookup.only(in[0].toString());
             })},
            {u"GetCount"_s, {}, {{u"count"_s, u"i"_s}}, guarded(count)},
            {u"getfield"_s, {field}, {{u"value"_s, u"v"_s}}, guarded(getField)},
            {u"SetField"_s, {field, {u"value"_s, u"s"_s}}, {}, guardedAndShown(setField)},
        },
    };
}

} // namespace acthost
