#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <QString>

#include "contacts/ActDBF.h"
#include "contacts/clKontakt.h"
#include "mapping/clSyncFelder.h"
#include "startup/Umgebung.h"
#include "startup/frmInfoStart.h"
#include "startup/frmStatus.h"
#include "util/Konfiguration.h"
#include "util/Programmlauf.h"
#include "util/iniDatei.h"

class QWidget;

/// The program's state, which everything gets by reference, and its course from start to end.
///
/// One object a run, made by main(); it owns the forms and destroys them with itself, after the event loop.
class Haupt : public Programmlauf
{
public:
    explicit Haupt(const Umgebung &umgebung);
    ~Haupt() override;
    Haupt(const Haupt &) = delete;
    Haupt &operator=(const Haupt &) = delete;

    // The link to ACT!. Objects are nullptr until start-up made them and after ProgrammEnde.
    AutomationObjectPtr ActApp;
    AutomationObjectPtr ActViews;
    AutomationObjectPtr ActKontaktfenster; ///< all reads and writes of ACT! fields go through it
    bool ActFensterMaximiert = false;
    qint32 ActFensterBreite = 0; // pixels
    qint32 ActFensterHoehe = 0;

    Konfiguration konfiguration;
    clSyncFelder SyncFelder;
    ActDBF ActDB;
    KontaktPtr Kontakt; ///< the contact that was current in ACT! at start

    // The group that the main window hands to the transfer dialog.
    std::vector<KontaktPtr> Mitglieder; ///< member i of the program is element i - 1
    /// Member i, from 1. RunTimeError 9 for any other number.
    const KontaktPtr &Mitglied(int i) const;
    int AnzahlMitglieder() const { return static_cast<int>(Mitglieder.size()); }
    int HauptIndex = 0; ///< number (from 1) of the member with the role "H"; 0 before there was one

    /// Closes the client that is open, at the program's end; set by whoever opens clients.
    std::function<void()> schliesseMandant;

    /// Start-up, until the main window is shown. Ends the program (ProgrammBeendet) where it cannot go on.
    /// `hauptfenster` makes the main window once ACT!'s current contact has been read.
    void Main(const std::function<std::unique_ptr<QWidget>(Haupt &)> &hauptfenster);

    void DoEvents() override;
    /// The same with a short rest, for loops that only wait for something.
    void DoEventsUndWarten();
    desktop::Answer MsgBox(const desktop::Box &box) override;
    bool beendet() const { return m_beendet; }

    /// Runs program code for the event loop: the program's end is the end of the code, and a run-time error is shown
    /// and ends the program regularly. Nothing runs any more once the program has ended.
    void ausgefuehrt(const std::function<void()> &code);

    const Umgebung &umgebung() const { return m_umgebung; }
    frmStatus &Status(); ///< created on first use
    frmInfoStart &InfoStart(); ///< created on first use
    /// Takes a form over: it is hidden at the program's end and destroyed with this object, or before by entlade().
    template <typename Form> Form &lade(std::unique_ptr<Form> form)
    {
        Form &geladen = *form;
        m_formulare.push_back(std::move(form));
        return geladen;
    }

    /// Destroys a form that was taken over. None of its code may be running.
    void entlade(const QWidget &form);

    /// Shows a status text and lets it be painted.
    void zeigeStatus(const QString &text);

    /// Takes client, number and role from a contact in ACT!; nothing changes in PC-Kaufmann.
    void PCKDatenLoeschen(const clKontakt &kontakt);

protected:
    void regulaeresEnde() override;
    void sofortigesEnde() override;

private:
    void pruefeActGestartet();
    void richteDatenbankmaschineEin();
    void pruefeMappingDatei();
    void verbindeMitAct();
    void erzeugeKontaktfenster();
    void frischeActAuf();
    void merkeUndMinimiereAct();
    void leseKonfiguration();
    void ladeIni();
    QString iniDateiname() const;
    QString iniWert(const QString &name) const;
    void leseKennung(const QString &name, qint16 &id, QString &spalte);
    [[noreturn]] void meldeFalschenParameter();
    void frageMapping();
    void leseAktuellenKontakt();

    void warteSekunden(int n);
    void wiederhole(const QString &frage, const std::function<void()> &versuch);
    [[noreturn]] void meldeUndBeende(const desktop::Box &box);
    void versuche(const std::function<void()> &code);
    void stelleActWiederHer();
    void schliesseDatenbanken();
    void entlade();
    void pruefeBeendet() const;

    Umgebung m_umgebung;
    iniDatei m_ini;
    std::optional<RunTimeError> m_fehler; // pending, shown at the end
    bool m_beendet = false;
    std::unique_ptr<frmStatus> m_frmStatus;
    std::unique_ptr<frmInfoStart> m_frmInfoStart;
    std::vector<std::unique_ptr<QWidget>> m_formulare;
};

/// Makes a slot of program code: everything that a form connects goes through it.
template <typename Code> auto guarded(Haupt &haupt, Code code)
{
    return [&haupt, code = std::move(code)] { haupt.ausgefuehrt(code); };
}
