// Judges what a transfer beside a failing ACT! has left: client, ACT!, what the user saw, and how it can go on.
#include "tests/act_faults/Stoerfall.h"

#include <QRegularExpression>
#include <gmock/gmock.h>

#include "acthost/FieldList.h"

using namespace Qt::StringLiterals;
namespace field = acthost::field;

namespace {

const QString ganz = u"number, client, role"_s; // what a member carries that is linked
const QStringList alle(Zehnergruppe::anzahl, ganz);

QString mitglied(const QString &aufruf)
{
    return aufruf.section(u'(', 0, 0);
}

AutomationError keineAntwort(const QString &aufruf)
{
    return {RunTimeError::AutomationFailure,
            mitglied(aufruf) + u": Das andere Programm hat nach 15 Sekunden noch nicht geantwortet."_s};
}

bool bleibtMinimiert(const FakeAct &act)
{
    return act.calls.contains(u"Minimize()"_s) && act.callsOf(u"Resize"_s).isEmpty();
}

} // namespace

Stoerfall::Stoerfall()
    : m_kontenVorher(m_gruppe.konten())
    , m_kontakteVorher(m_gruppe.kontakte())
{
    FakeAct act;
    const Ablauf ablauf = m_gruppe.uebertrageMit(act);
    for (const QString &aufruf : act.calls.mid(1)) // without the making of the object, which is none
        m_aufrufe += mitglied(aufruf);
    m_boxen = ablauf.boxen;
    m_kontakteNachher = m_gruppe.kontakte();
    QMap<QString, Konto> konten = m_gruppe.konten();
    for (const QString &nummer : m_kontenVorher.keys())
        konten.remove(nummer);
    EXPECT_EQ(konten.size(), 1);
    EXPECT_TRUE(ablauf.beendet && verknuepft() == alle && !bleibtMinimiert(act));
    m_nummer = konten.firstKey();
    m_konto = konten.first();
}

Ausgang Stoerfall::beiAufruf(int k, Fehler fehler, const std::function<void()> &handgriff)
{
    FakeAct act;
    int aufrufe = 0;
    act.failure = [&](const QString &aufruf) {
        ++aufrufe;
        if (fehler == Fehler::Haengt && aufrufe > k)
            throw keineAntwort(aufruf);
        return fehler == Fehler::Stirbt && aufrufe >= k ? RunTimeError::ServerGone : 0;
    };
    act.afterwards = [&](const QString &aufruf) {
        if (aufrufe == k)
            throw keineAntwort(aufruf);
    };
    Ausgang ausgang = neben(
        k, [&] { return m_gruppe.uebertrageMit(act); }, handgriff);
    if (fehler == Fehler::HaengtEinmal && bleibtMinimiert(act))
        ausgang.act += u"; ACT! stays minimised"_s;
    return ausgang;
}

Ausgang Stoerfall::neben(int k, const std::function<Ablauf()> &uebertragung, const std::function<void()> &handgriff)
{
    m_gruppe.setzeZurueck();
    const Ablauf ablauf = uebertragung();
    Ausgang ausgang{mandant(m_gruppe.konten()), act(k), gesehen(ablauf), {}};
    EXPECT_TRUE(ablauf.beendet);
    EXPECT_TRUE(ausgang.gesehen != "nothing"_L1 || (ausgang.mandant == "everything"_L1 && verknuepft() == alle))
        << "something is missing and nobody said so";
    pruefeKontakte(ausgang.mandant == "everything"_L1);
    handgriff();
    ausgang.weiter = weiter();
    return ausgang;
}

// Fields change to what a good transfer makes of them or not at all, and no member knows an account that is not whole.
void Stoerfall::pruefeKontakte(bool mandantVollstaendig) const
{
    for (const auto &[kennung, kontakt] : m_gruppe.kontakte().asKeyValueRange()) {
        for (const auto &[feld, wert] : kontakt) {
            const bool unveraendert = wert == m_kontakteVorher[kennung].at(feld);
            EXPECT_TRUE(unveraendert || (mandantVollstaendig && wert == m_kontakteNachher[kennung].at(feld)))
                << qPrintable(u"%1, field %2: %3"_s.arg(kennung).arg(feld).arg(wert.toString()));
        }
    }
}

QString Stoerfall::mandant(const QMap<QString, Konto> &konten) const
{
    QMap<QString, Konto> neue = konten;
    for (const auto &[nummer, konto] : m_kontenVorher.asKeyValueRange())
        EXPECT_EQ(neue.take(nummer), konto) << "account of others: " << qPrintable(nummer);
    if (neue.isEmpty())
        return u"nothing new"_s;
    if (neue.size() > 1 || !neue.contains(m_nummer))
        return u"other accounts than expected: "_s + neue.keys().join(u", "_s);
    if (neue[m_nummer] == m_konto)
        return u"everything"_s;
    QStringList fehlende;
    for (const auto &[spalte, wert] : m_konto.spalten.asKeyValueRange()) {
        if (neue[m_nummer].spalten.value(spalte) != wert)
            fehlende += spalte;
    }
    return u"the account, %1 of %2 entries; not yet set: %3"_s.arg(neue[m_nummer].eintraege.size())
        .arg(m_konto.eintraege.size())
        .arg(fehlende.join(u", "_s));
}

// Which of client, number and role each member carries.
QStringList Stoerfall::verknuepft() const
{
    const auto kontakte = m_gruppe.kontakte();
    QStringList stand;
    for (int i = 1; i <= Zehnergruppe::anzahl; ++i) {
        const FakeAct::Contact &felder = kontakte[Zehnergruppe::kennung(i)];
        QStringList teile;
        for (const auto &[feld, name] :
             {std::pair(field::AccountNumber, u"number"_s), {field::Client, u"client"_s}, {field::Role, u"role"_s}}) {
            if (!felder.at(feld).toString().isEmpty())
                teile += name;
        }
        stand += teile.join(u", "_s);
    }
    return stand;
}

// The member that is written back at call k; 0 before the write-back. The last call gives ACT! its window back.
int Stoerfall::mitgliedBei(int k) const
{
    const int jeMitglied = static_cast<int>(m_aufrufe.count(u"SetField"_s)) / Zehnergruppe::anzahl + 2;
    const int anfang = static_cast<int>(m_aufrufe.size()) - 1 - Zehnergruppe::anzahl * jeMitglied;
    if (k <= anfang)
        return 0;
    return std::min((k - anfang - 1) / jeMitglied + 1, Zehnergruppe::anzahl);
}

QString Stoerfall::act(int k) const
{
    const QStringList stand = verknuepft();
    if (const int i = mitgliedBei(k); i > 0 && (k < m_aufrufe.size() || stand != alle)) {
        const QString dieses = stand[i - 1];
        QStringList soWeit = alle.mid(0, i - 1) + QStringList{dieses};
        soWeit.resize(Zehnergruppe::anzahl);
        if (stand == soWeit && dieses.isEmpty())
            return u"the members before this one"_s;
        if (stand == soWeit)
            return u"the members before this one; this one its "_s + dieses;
    }
    return stand.join(QString()).isEmpty() ? u"nobody"_s
        : stand == alle                    ? u"all members"_s
                                           : u"unexpected: "_s + stand.join(u'|');
}

QString Stoerfall::gesehen(const Ablauf &ablauf) const
{
    QStringList boxen = ablauf.boxen;
    for (const QString &box : m_boxen)
        boxen.removeOne(box);
    if (boxen.isEmpty())
        return u"nothing"_s;
    QString text = boxen.join(u" / "_s);
    static const QRegularExpression name(u"(Fehler: \\d+:)\\w+:"_s);
    static const QRegularExpression sekunden(u"nach [\\d,]+ Sek"_s);
    return text.replace(name, u"\\1…:"_s).replace(sekunden, u"nach 15 Sek"_s);
}

// The same user starts the program again, more than once if that is what it takes.
QString Stoerfall::weiter()
{
    if (verknuepft() == alle)
        return u"nothing to do"_s;
    QStringList knoepfe;
    while (knoepfe.size() < 3 && verknuepft() != alle) {
        FakeAct act;
        knoepfe += m_gruppe.uebertrageMit(act).knopf;
    }
    if (verknuepft() != alle)
        return u"neither new nor known: no run completes it"_s;
    const bool einKonto = m_gruppe.konten().size() == m_kontenVorher.size() + 1;
    if (einKonto && !knoepfe.contains(u"cmdEintragen"_s))
        return knoepfe.size() == 1 ? u"known: “Fertig” completes it"_s : u"known: “Fertig” in two runs completes it"_s;
    return einKonto ? u"new: “Transfer” does it all"_s : u"new: “Transfer” makes a second account"_s;
}
