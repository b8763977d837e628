#pragma once

#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include <QDialog>

#include "pck/clPCK.h"
#include "startup/Haupt.h"
#include "transfer/Eintragung.h"

class QComboBox;

namespace Ui {
class frmÜbertragung;
}
class frmMandantenpasswort;

/// The transfer dialog: into which client and as what kind of account the group goes.
class frmÜbertragung : public QDialog
{
public:
    /// Loads the dialog for the program's group. Ends the program if there is no client; a remembered account type
    /// that does not exist is RunTimeError 380.
    explicit frmÜbertragung(Haupt &haupt);
    ~frmÜbertragung() override;

    bool istBeschaeftigt() const { return m_beschaeftigt; } ///< whether one of its commands or selections is running

protected:
    void reject() override; // the window's own button counts as "Abbruch"
    void keyPressEvent(QKeyEvent *ereignis) override; // Esc and Enter end nothing and enter nothing
    bool eventFilter(QObject *objekt, QEvent *ereignis) override; // of txbNummer and of the lists

private:
    using Behandlung = void (frmÜbertragung::*)();

    // Set-up and selection
    void Form_Load();
    void richteAus();
    void richteMausradEin();
    void verbindeBefehle();
    void verbindeAuswahl();
    void behandle(Behandlung behandlung, bool aufschiebbar);
    void fuelleMandanten();
    void fuelleNamen();
    void waehleZuletztVerwendete();
    void waehle(QComboBox &liste, int position, Behandlung behandlung);
    void cbxMandant_Click();
    void cbxTyp_Click();
    void lese_Preisliste();
    void lese_Waehrungsliste();
    bool oeffneMandant();
    bool istMandantBereit();
    void zeigeNeueNummer(qint32 ab);

    // Input and commands
    void cmdNummer_Click();
    void beginneNummerneingabe();
    void uebernimmNummer();
    void verwirfNummer();
    void zeigeNummerneingabe(bool sichtbar);
    void txbNummer_LostFocus();
    void txbNummer_Enter();
    void txbRabatt_Change();
    void txbLaendercode_Change();
    void cmdEintragen_Click();
    void meldeKeinenZugriff();
    void sperre(bool gesperrt);
    Eintragung::Angaben angaben() const;
    void cmdAbbruch_Click();

    QString einstellung(const QString &name, const QString &sonst) const;
    void merke(const std::vector<std::pair<QString, QString>> &einstellungen);
    bool istMandantGewaehlt() const;
    QString typBuchstabe() const;

    Haupt &m_haupt;
    std::unique_ptr<Ui::frmÜbertragung> m_ui;
    std::unique_ptr<frmMandantenpasswort> m_frmMandantenpasswort;
    std::shared_ptr<clPCK> objPCK;
    KontaktPtr objHauptkontakt;
    QString m_nummerVorher; // what lbNummer showed before the number is entered
    std::deque<Behandlung> m_ausstehend;
    bool m_beschaeftigt = false;
    bool m_aufgegeben = false; // the user did not give the password, and is not asked again by what is running
    bool m_speichernGemeldet = false;
};
