// The main window's ways on: transfer, write-back to ACT!, information, and the end.
#include "groupeditor/frmHauptkontakt.h"

#include <utility>

#include "transfer/frmUebertragung.h"
#include "ui_frmHauptkontakt.h"
#include "util/Zahlen.h"

using namespace Qt::StringLiterals;

void frmHauptkontakt::ListviewNachKontakt()
{
    m_haupt.Mitglieder.clear();
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        m_haupt.Mitglieder.push_back(LVItemNachKontakt(lvMitglieder().Item(i)));
        if (m_haupt.Mitglieder.back()->Typ == u"H"_s)
            m_haupt.HauptIndex = i;
    }
}

// Where the dialog about several main contacts has brought this window back, there may be a transfer dialog already: it
// keeps its group while it is at work, and makes way for the new group otherwise.
void frmHauptkontakt::cmdTransfer_Click()
{
    const bool beschaeftigt = m_frmUebertragung && m_frmUebertragung->istBeschaeftigt();
    if (m_frmUebertragung && !beschaeftigt) {
        m_haupt.schliesseMandant();
        m_haupt.entlade(*std::exchange(m_frmUebertragung, nullptr));
    }
    if (!beschaeftigt)
        ListviewNachKontakt();
    m_Timer1.stop();
    hide();
    m_haupt.DoEvents();
    if (!m_frmUebertragung)
        m_frmUebertragung = &m_haupt.lade(std::make_unique<frmÜbertragung>(m_haupt));
    m_frmUebertragung->show();
    m_frmUebertragung->activateWindow();
}

void frmHauptkontakt::cmdFertig_Click()
{
    m_Timer1.stop();
    m_haupt.Status().setze_ProgressBar1(0);
    m_haupt.Status().show();
    m_haupt.zeigeStatus(u"Daten werden nach ACT! geschrieben ..."_s);
    ListviewNachKontakt();
    m_haupt.ActKontaktfenster->call(u"LookupALL"_s);
    for (int i = 1; i <= m_haupt.AnzahlMitglieder(); ++i) {
        schreibeNachAct(*m_haupt.Mitglied(i));
        m_haupt.Status().setze_ProgressBar1(CInt(100.0 * i / m_haupt.AnzahlMitglieder()));
        m_haupt.DoEvents();
    }
    m_haupt.Status().hide();
    m_haupt.ProgrammEnde();
}

void frmHauptkontakt::schreibeNachAct(const clKontakt &kontakt)
{
    if (kontakt.Mandant.isEmpty() || kontakt.Nummer.isEmpty())
        return;
    AutomationObject &fenster = *m_haupt.ActKontaktfenster;
    const auto setze = [&fenster](qint16 &feld, const QString &wert) {
        fenster.call(u"SetField"_s, {Argument::byReference(feld), wert});
    };
    qint16 firma = m_haupt.SyncFelder.ActFeldID(u"Firma"_s);
    fenster.call(u"LookupALL"_s);
    fenster.call(u"createLookup"_s, {kontakt.UniqueID});
    setze(firma, kontakt.Daten(u"Firma"_s));
    setze(m_haupt.konfiguration.IdNummer, kontakt.Nummer);
    setze(m_haupt.konfiguration.IdMandant, kontakt.Mandant);
    setze(m_haupt.konfiguration.IdTyp, kontakt.Typ);
}

void frmHauptkontakt::cmdInfo_Click()
{
    AutomationObject &act = *m_haupt.ActApp;
    const QStringList zeilen = {
        u"VELDRAK für PC-Kaufmann"_s,
        u"ACT!-Version: "_s + act.get(u"ActVersion"_s).toString(),
        u"Datenbank: "_s + act.call(u"getopendbname"_s).toString(),
        u"User: "_s + act.call(u"getcurrentusername"_s).toString() + u", "_s
            + act.call(u"getuserprivilege"_s).toString(),
        u"PCK-Pfad: "_s + m_haupt.konfiguration.PckPfad,
    };
    m_haupt.InfoStart().setze_txbInfo(zeilen.join(u"\r\n"_s));
    m_haupt.InfoStart().exec();
}

void frmHauptkontakt::cmdAbbruch_Click()
{
    m_haupt.ProgrammEnde();
}
