// The transfer itself: accounts and contact persons into the client, client and number back into ACT!.
#include "transfer/Eintragung.h"

#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

bool nochNichtUebertragen(const clKontakt &kontakt)
{
    return kontakt.Mandant.isEmpty() && kontakt.Nummer.isEmpty();
}

} // namespace

Eintragung::Eintragung(Haupt &haupt, clPCK &objPCK, clKontakt &hauptkontakt, const Angaben &angaben)
    : m_haupt(haupt)
    , m_objPCK(objPCK)
    , m_hauptkontakt(hauptkontakt)
    , m_angaben(angaben)
{ }

bool Eintragung::fuehreAus()
{
    m_haupt.Status().show();
    m_haupt.zeigeStatus(u"Daten werden nach PCK übertragen ..."_s);
    if (nochNichtUebertragen(m_hauptkontakt) && !legeKontoAn())
        return false;
    uebertrageMitglieder();
    schreibeNachAct();
    return true;
}

bool Eintragung::legeKontoAn()
{
    clKontakt &kontakt = m_hauptkontakt;
    m_haupt.ActKontaktfenster->call(u"createLookup"_s, {kontakt.UniqueID});
    kontakt.Mandant = m_angaben.mandantName;
    kontakt.Nummer = m_angaben.nummer;

    // Asked once more from the number itself on: another user may have taken it since it was proposed.
    const qint32 ab = CLng(Val(kontakt.Nummer.right(6)));
    if (m_objPCK.NeueNummer(m_angaben.mandant, m_angaben.typ, ab) != kontakt.Nummer) {
        m_haupt.MsgBox({u"Die Nummer "_s + kontakt.Nummer + u" ist schon vergeben !"_s});
        m_haupt.Status().hide();
        return false;
    }
    m_haupt.zeigeStatus(u"Neue PCK-Adresse wird angelegt..."_s);
    neueAdresse(kontakt);
    m_haupt.zeigeStatus(u"Neuer PCK-Ansprechpartner wird angelegt..."_s);
    neuerAnsprechpartner(kontakt);
    const bool hatDatevNr = m_angaben.typ == u"K" || m_angaben.typ == u"D";
    if (hatDatevNr && m_haupt.konfiguration.DatevNr) {
        m_objPCK.setzeWert(u"sPersKto"_s, u"PersKtoDATEVNr"_s, Trim(kontakt.Nummer).right(5),
                           u"PersktoNummer='"_s + kontakt.Nummer + u"'"_s);
    }
    return true;
}

void Eintragung::uebertrageMitglieder()
{
    for (int i = 1; i <= m_haupt.AnzahlMitglieder(); ++i) {
        clKontakt &kontakt = *m_haupt.Mitglied(i);
        if (!nochNichtUebertragen(kontakt))
            continue;
        kontakt.Mandant = m_hauptkontakt.Mandant;
        kontakt.Nummer = m_hauptkontakt.Nummer;
        if (i == m_haupt.HauptIndex) {
            m_haupt.MsgBox({u"Neuer Hauptkontakt !!!"_s});
            m_haupt.zeigeStatus(u"Hauptkontakt wird in PCK überschrieben ..."_s);
            neueAdressdaten(kontakt);
        } else {
            m_haupt.zeigeStatus(u"Ansprechpartner wird in PCK angelegt ..."_s);
            neuerAnsprechpartner(kontakt);
        }
    }
}

void Eintragung::schreibeNachAct()
{
    m_haupt.Status().setze_ProgressBar1(0);
    m_haupt.Status().show();
    m_haupt.zeigeStatus(u"Daten werden nach ACT! geschrieben ..."_s);
    m_haupt.ActKontaktfenster->call(u"LookupALL"_s);
    int i = 0;
    for (const KontaktPtr &mitglied : m_haupt.Mitglieder) {
        schreibeNachAct(*mitglied);
        m_haupt.Status().setze_ProgressBar1(CInt(100.0 * ++i / m_haupt.AnzahlMitglieder()));
        m_haupt.DoEvents();
    }
}

// Every mapped field goes back, whatever its direction flags say.
void Eintragung::schreibeNachAct(const clKontakt &kontakt)
{
    waehleInAct(kontakt);
    setzeFeld(m_haupt.konfiguration.IdNummer, kontakt.Nummer);
    setzeFeld(m_haupt.konfiguration.IdMandant, kontakt.Mandant);
    setzeFeld(m_haupt.konfiguration.IdTyp, kontakt.Typ);
    for (qint16 j = 1; j <= m_haupt.SyncFelder.FelderAnzahl(); ++j) {
        QString wert = kontakt.Daten(j);
        qint16 id = m_haupt.SyncFelder.ActFeldID(j);
        setzeFeld(id, OLE_Schreib_Filter(wert, m_haupt.SyncFelder.SyncFeldname(j)));
    }
}

void Eintragung::neueAdresse(const clKontakt &kontakt)
{
    const auto vorlage = m_haupt.SyncFelder.get_sPersKto();
    const bool angelegt = m_objPCK.neueAdresse(kontakt.Nummer, *vorlage);
    vorlage->Close();
    if (!angelegt)
        m_haupt.ProgrammEnde(); // the user has been told why
    neueAdressdaten(kontakt);
    waehleInAct(kontakt); // the composed values are read from ACT!'s current contact
    setzeZusammengesetzte(kontakt);
    setzeAngaben(kontakt.Nummer);
}

void Eintragung::neueAdressdaten(const clKontakt &kontakt)
{
    const clSyncFelder &felder = m_haupt.SyncFelder;
    for (qint16 j = 1; j <= felder.FelderAnzahl(); ++j) {
        if (felder.IsSyncH(j)) {
            m_objPCK.setzeWert(felder.OLTabelle(j), felder.OLFeldname(j), getvalue(kontakt.Daten(j)),
                               u"PersKtoNummer='"_s + kontakt.Nummer + u"'"_s);
        }
    }
}

void Eintragung::setzeZusammengesetzte(const clKontakt &kontakt)
{
    const clSyncFelder &felder = m_haupt.SyncFelder;
    const int anzahl = felder.VELDRAK_Anzahl();
    for (qint16 k = 1; k <= anzahl; ++k) {
        m_objPCK.setzeWert(felder.VELDRAK_OLTabelle(k), felder.VELDRAK_OLFeld(k),
                           getvalue(felder.VELDRAK_ActString(*m_haupt.ActKontaktfenster, k)),
                           u"PersktoNummer='"_s + kontakt.Nummer + u"'"_s);
    }
}

void Eintragung::setzeAngaben(const QString &nummer)
{
    const auto setze = [&](const QString &spalte, const std::optional<double> &wert) {
        if (wert)
            m_objPCK.setzeWert(u"SPersKto"_s, spalte, *wert, u"PersktoNummer='"_s + nummer + u"'"_s);
    };
    setze(u"PersKtoRabatt"_s, m_angaben.rabatt);
    setze(u"PersKtoLaendercode"_s, m_angaben.laendercode);
    setze(u"PersKtoPreisGruppe"_s, m_angaben.preisgruppe);
    setze(u"PersKtoDefWaehrungIdx"_s, m_angaben.waehrung);
}

// The main contact's telephone and fax stand in the account itself.
void Eintragung::neuerAnsprechpartner(const clKontakt &kontakt)
{
    const clSyncFelder &felder = m_haupt.SyncFelder;
    const bool istHaupt = kontakt.Typ == u"H";
    for (qint16 j = 1; j <= felder.FelderAnzahl(); ++j) {
        if (!(istHaupt ? felder.IsKomH(j) : felder.IsKomN(j)))
            continue;
        QString art = felder.SyncFeldname(j);
        if (istHaupt && (art.contains(u"Fax"_s) || art.contains(u"Telefon"_s)))
            continue;
        m_objPCK.neuerAnsprechpartnerWert(kontakt.Nummer, kontakt.Daten(u"Name"_s), art, kontakt.Daten(j));
    }
}

QString Eintragung::OLE_Schreib_Filter(QString &wert, const QString &feldname)
{
    const bool istNummer
        = feldname.contains(u"Telefon"_s) || feldname.contains(u"Handy"_s) || feldname.contains(u"Fax"_s);
    const qsizetype blank = wert.indexOf(u' ');
    if (istNummer && wert.contains(u'+') && blank > 0) // without a blank there is no telling where the code ends
        wert = u"["_s + wert.mid(1, blank - 1) + u"]"_s + Trim(wert.mid(blank + 1));
    return wert;
}

QVariant Eintragung::getvalue(const QVariant &wert)
{
    return wert.isValid() ? wert : QVariant(QString());
}

void Eintragung::waehleInAct(const clKontakt &kontakt)
{
    m_haupt.ActKontaktfenster->call(u"LookupALL"_s);
    m_haupt.ActKontaktfenster->call(u"createLookup"_s, {kontakt.UniqueID});
}

void Eintragung::setzeFeld(qint16 &id, const QString &wert)
{
    m_haupt.ActKontaktfenster->call(u"SetField"_s, {Argument::byReference(id), wert});
}
