// ACT! in the test's process: the contact table of the stand-in program behind automation objects without a bus.
#include "tests/act_faults/ActAufTabelle.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

AutomationError fehlschlag(int nummer, const QString &name)
{
    return {nummer, name + u": "_s + RunTimeError::standardText(nummer)};
}

AutomationError keineAntwort(const QString &name)
{
    return {RunTimeError::AutomationFailure,
            name + u": Das andere Programm hat nach 15 Sekunden noch nicht geantwortet."_s};
}

QString feldliste(const QString &tabelle)
{
    const QFileInfo datei(tabelle);
    return datei.path() + u'/' + datei.completeBaseName() + u".felder"_s;
}

} // namespace

class ActAufTabelle::Objekt : public AutomationObject
{
public:
    Objekt(ActAufTabelle &act, Mitglied mitglied)
        : m_act(act)
        , m_mitglied(std::move(mitglied))
    { }

    QVariant get(const QString &property) override { return m_act.rufe(m_mitglied, property, {}); }
    QVariant call(const QString &method, const Arguments &arguments) override
    {
        return m_act.rufe(m_mitglied, method, arguments);
    }

private:
    ActAufTabelle &m_act;
    Mitglied m_mitglied;
};

ActAufTabelle::ActAufTabelle(const QString &tabelle, const QString &kontakt, Fehler fehler, int beiAufruf)
    : m_buch(m_treiber, tabelle, acthost::FieldList::read(feldliste(tabelle)))
    , m_auswahl(m_buch, m_buch.find(kontakt))
    , m_fehler(fehler)
    , m_beiAufruf(beiAufruf)
{ }

AutomationObjectPtr ActAufTabelle::CreateObject(const QString & /*progId*/)
{
    return objekt([this](const QString &name, const Arguments &argumente) { return anwendung(name, argumente); });
}

AutomationObjectPtr ActAufTabelle::objekt(Mitglied mitglied)
{
    return std::make_shared<Objekt>(*this, std::move(mitglied));
}

QVariant ActAufTabelle::rufe(const Mitglied &mitglied, const QString &name, const Arguments &argumente)
{
    aufrufe += name;
    const bool jetzt = aufrufe.size() == m_beiAufruf;
    const bool danach = m_beiAufruf > 0 && aufrufe.size() > m_beiAufruf;
    if (m_fehler == Fehler::Stirbt && (jetzt || danach))
        throw fehlschlag(RunTimeError::ServerGone, name);
    if (m_fehler == Fehler::Haengt && danach)
        throw keineAntwort(name);
    const QVariant ergebnis = mitglied(name, argumente);
    if (jetzt)
        throw keineAntwort(name);
    return ergebnis;
}

QVariant ActAufTabelle::anwendung(const QString &name, const Arguments &argumente)
{
    if (name == u"Views") {
        return QVariant::fromValue(objekt([this](const QString &, const Arguments &) {
            return QVariant::fromValue(
                objekt([this](const QString &mitglied, const Arguments &werte) { return fenster(mitglied, werte); }));
        }));
    }
    if (name == u"getopendbname")
        return m_buch.path();
    if (name == u"getsize") {
        argumente.at(0).store(640);
        argumente.at(1).store(480);
    } else {
        minimiert = name == u"Minimize"; // the others that are called here give the window its size back
    }
    return {};
}

QVariant ActAufTabelle::fenster(const QString &name, const Arguments &argumente)
{
    const auto wert = [&argumente](std::size_t i) { return argumente.at(i).value(); };
    if (name == u"LookupALL")
        m_auswahl.all();
    else if (name == u"createLookup")
        m_auswahl.only(wert(0).toString());
    else if (name == u"GetCount")
        return m_auswahl.count();
    else if (name == u"getfield")
        return m_buch.value(m_auswahl.requireCurrent(), wert(0).toInt());
    else if (name == u"SetField")
        m_buch.write(m_auswahl.requireCurrent(), wert(0).toInt(), wert(1).toString());
    else
        throw fehlschlag(RunTimeError::UnknownMember, name);
    return {};
}
