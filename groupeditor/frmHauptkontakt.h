#pragma once

#include <memory>

#include <QDialog>
#include <QTimer>

#include "groupeditor/KontaktListe.h"
#include "startup/Haupt.h"

namespace Ui {
class frmHauptkontakt;
}
class frmFehlerHptkt;
class frmÜbertragung;

/// The main window: contacts are searched, gathered into one company group and given their roles; the transfer and the
/// write-back of a group that is already in PC-Kaufmann start here.
class frmHauptkontakt : public QDialog
{
public:
    /// Loads the window with ACT!'s current contact as the group's first member.
    explicit frmHauptkontakt(Haupt &haupt);
    ~frmHauptkontakt() override;

protected:
    void reject() override; // the window's own button counts as "Abbruch"
    void keyPressEvent(QKeyEvent *ereignis) override; // Esc does not end the program

private:
    // Set-up and state of the window
    void Form_Load();
    void verbinde();
    void einzeln(void (frmHauptkontakt::*befehl)());
    void warteAufBenutzer();
    void sperre(bool gesperrt);
    void richteListenEin();
    void checkFlags();
    void setzeKnoepfe(int flagzahl);
    void pruefeFirmennamen();
    void zeigeFirma(const QString &firma);
    void Timer1_Timer();

    // Search
    void cmdSuchen_Click();
    void sucheKontakte(const QString &suchbegriff, const QString &mandant, const QString &nummer);
    int trefferzahl(dao::Recordset &treffer, int alleKontakte);
    void uebernimmTreffer(dao::Recordset &treffer, int n);
    void checkeQuery(const clKontakt &kontakt);

    // Members and roles
    void cmdÜbernehmen_Click();
    void adoptiere(int &i);
    void adoptiereUnbekannten(int i);
    void übernimmGruppe(int i);
    void übertrageRest(const QTreeWidgetItem &item);
    void cmdEntfernen_Click();
    bool gibZurueck(int i);
    void cmdHauptkontakt_Click();
    void cmdFirmaAngleichen_Click();
    void checkeHauptkontakte();
    void LVSucheZuLVMitglieder(const QTreeWidgetItem &item, int icon);
    void LVMitgliederZuLVSuche(const QTreeWidgetItem &item, int icon);
    KontaktPtr LVItemNachKontakt(const QTreeWidgetItem &item) const;

    // Finishing
    void ListviewNachKontakt();
    void cmdTransfer_Click();
    void cmdFertig_Click();
    void schreibeNachAct(const clKontakt &kontakt);
    void cmdInfo_Click();
    void cmdAbbruch_Click();

    KontaktListe &lvSuche() const;
    KontaktListe &lvMitglieder() const;

    Haupt &m_haupt;
    std::unique_ptr<Ui::frmHauptkontakt> m_ui;
    frmFehlerHptkt *m_frmFehlerHptkt = nullptr; // loaded on first showing, as the next
    frmÜbertragung *m_frmUebertragung = nullptr;
    QTimer m_Timer1;
    bool m_hatHaupt = false;
    bool m_hatNeben = false;
    bool m_firmaGleich = false;
    bool m_bilderFehlen = false;
    bool m_befehlLaeuft = false;
    bool m_gesperrt = false;
    QWidget *m_fokusVorher = nullptr; // one of the window's own
};
