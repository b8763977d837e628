// The main window's search: which hits there are, and in which list each of them goes.
#include "groupeditor/frmHauptkontakt.h"

#include "ui_frmHauptkontakt.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int hoechstensTreffer = 50;

} // namespace

void frmHauptkontakt::cmdSuchen_Click()
{
    sucheKontakte(m_ui->tbSuche->text(), m_haupt.Kontakt->Mandant, m_haupt.Kontakt->Nummer);
    checkFlags();
}

// Client and number are handed over by every caller, but the search takes the current contact's client for both.
void frmHauptkontakt::sucheKontakte(const QString &suchbegriff, const QString & /*mandant*/, const QString & /*nummer*/)
{
    frmStatus &status = m_haupt.Status();
    QString begriff = Trim(suchbegriff);
    if (begriff.isEmpty()) {
        m_haupt.MsgBox({u"Bitte geben Sie einen Suchbegriff ein !"_s});
        status.hide();
        checkeHauptkontakte();
        return;
    }
    status.setze_ProgressBar1(0);
    status.show();
    m_haupt.zeigeStatus(u"ACT!-Daten werden durchsucht ..."_s);
    lvSuche().clear();

    m_haupt.ActKontaktfenster->call(u"LookupALL"_s);
    const QString zaehlt = u"GetCount"_s;
    const int alle = wholeNumberOf(zaehlt, m_haupt.ActKontaktfenster->call(zaehlt));
    const QString client = m_haupt.Kontakt->Mandant;
    const auto treffer = m_haupt.ActDB.SucheInActDB(*m_haupt.ActApp, begriff, client, client);
    uebernimmTreffer(*treffer, trefferzahl(*treffer, alle));
    treffer->Close();

    status.hide();
    checkeHauptkontakte();
}

// A term that finds every contact lists none, and more than fifty are cut.
int frmHauptkontakt::trefferzahl(dao::Recordset &treffer, int alleKontakte)
{
    if (treffer.RecordCount() == 0)
        return 0;
    treffer.MoveLast();
    const int n = treffer.RecordCount();
    treffer.MoveFirst();
    if (n == alleKontakte)
        return 0;
    if (n <= hoechstensTreffer)
        return n;
    m_haupt.MsgBox({u"Es wurden mehr als 50 Kontakte gefunden."_s + u"\r"_s
                    + u"Daher werden nur die ersten 50 Kontakte angezeigt."_s + u"\r"_s
                    + u"Tip: Sie sollten Ihren Suchbegriff etwas erweitern."_s});
    return hoechstensTreffer;
}

void frmHauptkontakt::uebernimmTreffer(dao::Recordset &treffer, int n)
{
    clKontakt kontakt(m_haupt.konfiguration, m_haupt);
    kontakt.init(m_haupt.SyncFelder);
    for (int i = 1; i <= n; ++i) {
        kontakt.setzeDatenVonDBF(treffer);
        checkeQuery(kontakt);
        treffer.MoveNext();
        m_haupt.Status().setze_lbStatus(u"gefundenen Kontakte: "_s + QString::number(i));
        m_haupt.Status().setze_ProgressBar1(CInt(100.0 * i / n));
        m_haupt.Status().repaint(); // no events here: a click must not meet half a list
    }
}

void frmHauptkontakt::checkeQuery(const clKontakt &kontakt)
{
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        if (lvMitglieder().uniqueID(lvMitglieder().Item(i)) == kontakt.UniqueID)
            return;
    }
    if (kontakt.Typ.isEmpty() || (!m_hatHaupt && !m_hatNeben)) {
        lvSuche().haengeAn(kontakt);
        return;
    }
    if (!lvMitglieder().hatKonto(lvMitglieder().Item(1), kontakt.Nummer, kontakt.Mandant))
        return; // another account's contact has no business here
    lvMitglieder().haengeAn(kontakt);
    if (!m_hatHaupt && kontakt.Typ == u"H"_s) {
        m_hatHaupt = true;
        zeigeFirma(kontakt.Daten(u"Firma"_s));
    }
}
