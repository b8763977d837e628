// The main window's group: moving contacts between the lists, and exactly one main contact.
#include "groupeditor/frmHauptkontakt.h"

#include "groupeditor/frmFehlerHptkt.h"
#include "ui_frmHauptkontakt.h"

using namespace Qt::StringLiterals;

void frmHauptkontakt::LVSucheZuLVMitglieder(const QTreeWidgetItem &item, int icon)
{
    lvMitglieder().haengeAn(item, icon);
    if (icon == KontaktListe::Haupt)
        zeigeFirma(lvSuche().firma(item));
    checkFlags();
}

void frmHauptkontakt::LVMitgliederZuLVSuche(const QTreeWidgetItem &item, int icon)
{
    lvSuche().haengeAn(item, icon);
}

void frmHauptkontakt::cmdÜbernehmen_Click()
{
    for (int i = 1; i <= lvSuche().Anzahl();) {
        if (lvSuche().istGewaehlt(i))
            adoptiere(i);
        else
            ++i;
    }
}

// Some items are looked at again and again while they stay selected. That is meant; the user can deselect the item or
// end the program meanwhile.
void frmHauptkontakt::adoptiere(int &i)
{
    switch (KontaktListe::icon(lvSuche().Item(i))) {
    case KontaktListe::Unbekannt:
        adoptiereUnbekannten(i);
        return;
    case KontaktListe::Neben:
        if (m_hatHaupt || m_hatNeben)
            warteAufBenutzer();
        else
            übernimmGruppe(i);
        return;
    case KontaktListe::Haupt:
        if (!m_hatHaupt)
            return übernimmGruppe(i);
        m_haupt.MsgBox({u"Es gibt schon einen Hauptkontakt !"_s});
        ++i;
        return;
    default:
        m_haupt.MsgBox({u"ERROR: Falscher Icon-Index!"_s});
        warteAufBenutzer();
    }
}

void frmHauptkontakt::adoptiereUnbekannten(int i)
{
    QTreeWidgetItem &item = lvSuche().Item(i);
    int icon = KontaktListe::Unbekannt;
    if (m_hatHaupt || m_hatNeben) {
        const QTreeWidgetItem &bezug = lvMitglieder().Item(1);
        lvSuche().setzeKonto(item, lvMitglieder().nummer(bezug), lvMitglieder().mandant(bezug));
        icon = KontaktListe::Neben;
    }
    LVSucheZuLVMitglieder(item, icon);
    lvSuche().entferne(i);
}

void frmHauptkontakt::übernimmGruppe(int i)
{
    übertrageRest(lvSuche().Item(i));
    const QTreeWidgetItem &bezug = lvMitglieder().Item(1);
    sucheKontakte(m_haupt.Kontakt->Daten(u"Firma"_s).left(4), lvMitglieder().mandant(bezug),
                  lvMitglieder().nummer(bezug));
    übertrageRest(lvMitglieder().Item(1));
    checkFlags(); // the search may have brought members without it
    warteAufBenutzer(); // an item that is still there, and still selected, is taken again
}

void frmHauptkontakt::übertrageRest(const QTreeWidgetItem &item)
{
    const QString nummer = lvSuche().nummer(item); // the item itself may move below
    const QString mandant = lvSuche().mandant(item);
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        QTreeWidgetItem &mitglied = lvMitglieder().Item(i);
        if (KontaktListe::icon(mitglied) != KontaktListe::Unbekannt)
            continue;
        lvMitglieder().setzeKonto(mitglied, nummer, mandant);
        lvMitglieder().setzeIcon(mitglied, KontaktListe::Neben);
    }
    const QTreeWidgetItem &bezug = lvMitglieder().Item(1);
    for (int i = 1; i <= lvSuche().Anzahl();) {
        const QTreeWidgetItem &treffer = lvSuche().Item(i);
        if (!lvSuche().hatKonto(treffer, lvMitglieder().nummer(bezug), lvMitglieder().mandant(bezug))) {
            ++i;
            continue;
        }
        LVSucheZuLVMitglieder(treffer, KontaktListe::icon(treffer));
        lvSuche().entferne(i);
    }
    checkeHauptkontakte();
}

void frmHauptkontakt::cmdEntfernen_Click()
{
    // The member that moves up into place i is not looked at in this pass.
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        if (!lvMitglieder().istGewaehlt(i))
            continue;
        if (!gibZurueck(i))
            return;
        lvMitglieder().entferne(i);
    }
    checkFlags();
}

// False: the member has to stay, the user was told why.
bool frmHauptkontakt::gibZurueck(int i)
{
    const QTreeWidgetItem &item = lvMitglieder().Item(i);
    const int icon = KontaktListe::icon(item);
    const bool einziges = lvMitglieder().Anzahl() == 1;
    if (icon == KontaktListe::Unbekannt) {
        if (einziges) {
            m_haupt.MsgBox({u"Es gibt nur noch den einen Unbekannten-Kontakt !"_s});
            return false;
        }
        LVMitgliederZuLVSuche(item, KontaktListe::Unbekannt);
        return true;
    }
    if (icon == KontaktListe::Neben && einziges) {
        m_haupt.MsgBox({u"Es gibt nur noch den einen Neben-Kontakt !"_s});
        return false;
    }
    const KontaktPtr kontakt = LVItemNachKontakt(item);
    if (kontakt->Nummer != u"-"_s)
        m_haupt.PCKDatenLoeschen(*kontakt);
    if (icon == KontaktListe::Haupt && einziges)
        cmdAbbruch_Click();
    kontakt->Nummer.clear();
    kontakt->Mandant.clear();
    kontakt->Typ.clear();
    lvSuche().haengeAn(*kontakt);
    return true;
}

void frmHauptkontakt::cmdHauptkontakt_Click()
{
    int gewaehlt = 1;
    while (gewaehlt <= lvMitglieder().Anzahl() && !lvMitglieder().istGewaehlt(gewaehlt))
        ++gewaehlt;
    if (gewaehlt > lvMitglieder().Anzahl()) {
        m_haupt.MsgBox({u"Bitte wählen Sie zuvor einen Kontakt an."_s});
        return;
    }
    lvMitglieder().setzeIcon(lvMitglieder().Item(gewaehlt), KontaktListe::Haupt);
    m_hatHaupt = true;
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        QTreeWidgetItem &item = lvMitglieder().Item(i);
        if (KontaktListe::icon(item) != KontaktListe::Haupt)
            lvMitglieder().setzeIcon(item, KontaktListe::Neben);
    }
    checkFlags();
}

void frmHauptkontakt::checkeHauptkontakte()
{
    if (!m_hatHaupt)
        return;
    int anzahl = 0;
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i)
        anzahl += KontaktListe::icon(lvMitglieder().Item(i)) == KontaktListe::Haupt ? 1 : 0;
    if (anzahl <= 1)
        return;
    if (!m_frmFehlerHptkt) {
        m_frmFehlerHptkt = &m_haupt.lade(std::make_unique<frmFehlerHptkt>(lvMitglieder(), *this, [this] {
            show();
            activateWindow();
        }));
    }
    m_frmFehlerHptkt->show();
    m_hatHaupt = false;
    m_hatNeben = true;
    checkFlags();
}

void frmHauptkontakt::cmdFirmaAngleichen_Click()
{
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i)
        lvMitglieder().setzeFirma(lvMitglieder().Item(i), m_ui->tbFirma->text());
    checkFlags();
}

KontaktPtr frmHauptkontakt::LVItemNachKontakt(const QTreeWidgetItem &item) const
{
    auto kontakt = std::make_shared<clKontakt>(m_haupt.konfiguration, m_haupt);
    kontakt->init(m_haupt.SyncFelder);
    lvMitglieder().fuelle(*kontakt, item);
    return kontakt;
}
