// ACT! as the tests see it: what the program asked, and what became of the contacts.
#include "tests/fakes/FakeAct.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// One automation object whose members are all handled by one function.
class FakeObject : public AutomationObject
{
public:
    using Handler = std::function<QVariant(const QString &member, const Arguments &arguments)>;

    FakeObject(FakeAct &act, Handler handler)
        : m_act(act)
        , m_handler(std::move(handler))
    { }

    QVariant get(const QString &property) override { return call(property); }

    QVariant call(const QString &method, const Arguments &arguments = {}) override
    {
        QStringList texts;
        for (const Argument &argument : arguments)
            texts += argument.value().toString();
        const QString entry = method + u'(' + texts.join(u", "_s) + u')';
        m_act.calls += entry;
        const int error = m_act.failure ? m_act.failure(entry) : 0;
        if (error != 0)
            throw AutomationError(error, method + u": "_s + RunTimeError::standardText(error));
        const QVariant result = m_handler(method, arguments);
        if (m_act.afterwards)
            m_act.afterwards(entry);
        return result;
    }

private:
    FakeAct &m_act;
    Handler m_handler;
};

[[noreturn]] void unknown(const QString &member)
{
    throw AutomationError(RunTimeError::UnknownMember, member);
}

QVariant applicationCall(FakeAct &act, const QString &member, const Arguments &in)
{
    if (member == u"Views")
        return QVariant::fromValue(act.views());
    if (member == u"getsize") {
        in.at(0).store(act.windowSize.width());
        in.at(1).store(act.windowSize.height());
        return {};
    }
    if (member == u"Resize") {
        act.windowSize = {in.at(0).value().toInt(), in.at(1).value().toInt()};
        return {};
    }
    if (member == u"Minimize" || member == u"maximize")
        return {};
    if (member == u"getopendbname")
        return act.databasePath;
    if (member == u"getcurrentusername")
        return u"Petra Sommer"_s;
    if (member == u"getuserprivilege")
        return u"Administrator"_s;
    if (member == u"ActVersion")
        return u"6.0.4"_s;
    unknown(member);
}

QVariant viewCall(FakeAct &act, const QString &member, const Arguments &in)
{
    if (member == u"LookupALL")
        return {};
    if (member == u"GetCount")
        return static_cast<int>(act.contacts.size());
    if (member == u"createLookup") {
        const auto *found = act.find(in.at(0).value().toString());
        if (!found)
            throw AutomationError(5, u"createLookup: kein solcher Kontakt"_s);
        act.current = static_cast<std::size_t>(found - act.contacts.data());
        return {};
    }
    FakeAct::Contact &contact = act.contacts.at(act.current);
    const int field = in.at(0).value().toInt();
    if (act.handsBack && in.at(0).isByReference()) {
        qint16 id = in.at(0).value().value<qint16>();
        act.handsBack(id);
        in.at(0).store(id);
    }
    if (member == u"getfield")
        return contact.count(field) != 0 ? contact[field] : QVariant(QString());
    if (member != u"SetField")
        unknown(member);
    contact[field] = in.at(1).value();
    return {};
}

} // namespace

FakeAct::FakeAct()
    : m_view(std::make_shared<FakeObject>(
        *this, [this](const QString &member, const Arguments &in) { return viewCall(*this, member, in); }))
{
    m_views = std::make_shared<FakeObject>(*this, [this](const QString &member, const Arguments &) -> QVariant {
        if (member != u"Create")
            unknown(member);
        return createYieldsNothing ? QVariant() : QVariant::fromValue(contactWindow());
    });
    m_application = std::make_shared<FakeObject>(
        *this, [this](const QString &member, const Arguments &in) { return applicationCall(*this, member, in); });
}

AutomationObjectPtr FakeAct::CreateObject(const QString &progId)
{
    calls += u"CreateObject("_s + progId + u')';
    if (objectsRefused > 0) {
        --objectsRefused;
        return nullptr;
    }
    return application();
}

AutomationObjectPtr FakeAct::handle(const QString &name, const AutomationObjectPtr &object)
{
    return {object.get(), [this, name](AutomationObject *) { released += name; }};
}

FakeAct::Contact *FakeAct::find(const QString &uniqueId)
{
    for (Contact &contact : contacts) {
        if (contact[1].toString() == uniqueId)
            return &contact;
    }
    return nullptr;
}

QStringList FakeAct::callsOf(const QString &member) const
{
    return calls.filter(QRegularExpression(u'^' + QRegularExpression::escape(member) + u"\\("_s));
}
