// Judges what a transfer beside a failing ACT! has left: client, ACT!, what the user saw, and how it can go on.
#include "tests/act_faults/Stoerfall.h"

#include <QRegularExpression>
#include <gmock/gmock.h>

#include "acthost/FieldList.h"

using namespace Qt::StringLiterals;
namespace field = acthost::field;

Stoerfall::Stoerfall()
    : m_kontenVorher(m_gruppe.konten())
    , m_kontakteVorher(m_gruppe.kontakte())
{
    m_gruppe.setzeZurueck();
    ActAufTabelle act(m_gruppe.tabelle(), Zehnergruppe::kennung(1));
    const Ablauf ablauf = m_gruppe.uebertrage(act);
    m_aufrufe = act.aufrufe;
    m_boxen = ablauf.boxen;
    m_kontakteNachher = m_gruppe.kontakte();
    QMap<QString, Konto> konten = m_gruppe.konten();
    for (const QString &nummer : m_kontenVorher.keys())
        konten.remove(nummer);
    EXPECT_EQ(konten.size(), 1);
    EXPECT_TRUE(ablauf.beendet && alleVerknuepft());
    EXPECT_FALSE(act.minimiert);
    m_nummer = konten.firstKey();
    m_konto = konten.first();
}

Ausgang Stoerfall::beiAufruf(int k, Fehler fehler, const std::function<void()> &handgriff)
{
    bool minimiert = false;
    Ausgang ausgang = neben(
        k,
        [&] {
            ActAufTabelle act(m_gruppe.tabelle(), Zehnergruppe::kennung(1), fehler, k);
            const Ablauf ablauf = m_gruppe.uebertrage(act);
            minimiert = act.minimiert;
            return ablauf;
        },
        handgriff);
    if (fehler == Fehler::HaengtEinmal && minimiert)
        ausgang.act += u"; ACT! stays minimised"_s;
    return ausgang;
}

Ausgang Stoerfall::neben(int k, const std::function<Ablauf()> &uebertragung, const std::function<void()> &handgriff)
{
    m_gruppe.setzeZurueck();
    const Ablauf ablauf = uebertragung();
    Ausgang ausgang{mandant(m_gruppe.konten()), act(k), gesehen(ablauf), {}};
    EXPECT_TRUE(ablauf.beendet);
    EXPECT_TRUE(ausgang.gesehen != "nothing"_L1 || (ausgang.mandant == "everything"_L1 && alleVerknuepft()))
        << "something is missing and nobody said so";
    pruefeKontakte(ausgang.mandant == "everything"_L1);
    handgriff();
    ausgang.weiter = weiter();
    return ausgang;
}

// Fields change to what a good transfer makes of them or not at all, and no member knows an account that is not whole.
void Stoerfall::pruefeKontakte(bool mandantVollstaendig) const
{
    const auto kontakte = m_gruppe.kontakte();
    for (const QString &kennung : kontakte.keys()) {
        for (const int feld : kontakte[kennung].keys()) {
            const QString wert = kontakte[kennung][feld];
            const bool unveraendert = wert == m_kontakteVorher[kennung][feld];
            EXPECT_TRUE(unveraendert || (mandantVollstaendig && wert == m_kontakteNachher[kennung][feld]))
                << qPrintable(u"%1, field %2: %3"_s.arg(kennung).arg(feld).arg(wert));
        }
    }
}

QString Stoerfall::mandant(const QMap<QString, Konto> &konten) const
{
    QMap<QString, Konto> neue = konten;
    for (const auto &[nummer, konto] : m_kontenVorher.asKeyValueRange()) {
        EXPECT_EQ(neue.value(nummer), konto) << "account of others: " << qPrintable(nummer);
        neue.remove(nummer);
    }
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

// Which of client, number and role a contact carries.
QString Stoerfall::verknuepft(const QString &kennung) const
{
    const QMap<int, QString> felder = m_gruppe.kontakte()[kennung];
    QStringList teile;
    if (!felder[field::AccountNumber].isEmpty())
        teile += u"number"_s;
    if (!felder[field::Client].isEmpty())
        teile += u"client"_s;
    if (!felder[field::Role].isEmpty())
        teile += u"role"_s;
    return teile.join(u", "_s);
}

bool Stoerfall::alleVerknuepft() const
{
    for (int i = 1; i <= Zehnergruppe::anzahl; ++i) {
        if (verknuepft(Zehnergruppe::kennung(i)) != "number, client, role"_L1)
            return false;
    }
    return true;
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
    QStringList stand;
    for (int i = 1; i <= Zehnergruppe::anzahl; ++i)
        stand += verknuepft(Zehnergruppe::kennung(i));
    const int i = mitgliedBei(k);
    QStringList vorher(i > 0 ? i - 1 : 0, u"number, client, role"_s);
    const QString dieses = i > 0 ? stand[i - 1] : QString();
    if (stand == vorher + QStringList{dieses} + QStringList(Zehnergruppe::anzahl - i, QString())) {
        if (dieses.isEmpty())
            return u"the members before this one"_s;
        return i == Zehnergruppe::anzahl && k == m_aufrufe.size()
            ? u"all members"_s
            : u"the members before this one; this one its "_s + dieses;
    }
    return stand.join(u'|') == QString(Zehnergruppe::anzahl - 1, u'|') ? u"nobody"_s
        : alleVerknuepft()                                             ? u"all members"_s
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
    static const QRegularExpression mitglied(u"(Fehler: \\d+:)\\w+:"_s);
    static const QRegularExpression sekunden(u"nach [\\d,]+ Sek"_s);
    return text.replace(mitglied, u"\\1…:"_s).replace(sekunden, u"nach 15 Sek"_s);
}

// The same user starts the program again, more than once if that is what it takes.
QString Stoerfall::weiter()
{
    if (alleVerknuepft())
        return u"nothing to do"_s;
    QStringList knoepfe;
    for (int lauf = 1; lauf <= 3 && !alleVerknuepft(); ++lauf) {
        ActAufTabelle act(m_gruppe.tabelle(), Zehnergruppe::kennung(1));
        knoepfe += m_gruppe.uebertrage(act).knopf;
    }
    const qsizetype neue = m_gruppe.konten().size() - m_kontenVorher.size();
    const QString weg = knoepfe.join(u", "_s);
    if (!alleVerknuepft())
        return u"neither new nor known: no run completes it"_s;
    if (neue == 1 && !weg.contains(u"cmdEintragen"_s))
        return knoepfe.size() == 1 ? u"known: “Fertig” completes it"_s : u"known: “Fertig” in two runs completes it"_s;
    return neue == 1 ? u"new: “Transfer” does it all"_s : u"new: “Transfer” makes a second account"_s;
}
