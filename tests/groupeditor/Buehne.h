#pragma once

#include <QApplication>
#include <QPushButton>

#include "groupeditor/frmFehlerHptkt.h"
#include "groupeditor/frmHauptkontakt.h"
#include "tests/fakes/MitschreibendeEngine.h"
#include "tests/startup/Gestartet.h"

/// The main window on a stage: an ACT! that records, a contact table with the same people, and hands for its controls.
/// Ids are given and told as one text, separated by blanks.
class Buehne
{
public:
    /// The contact table of these people, as beispiel::leute() takes them, and of "Z" of "Zeta Handel": not every
    /// contact may match a term.
    explicit Buehne(QStringView personen);
    ~Buehne();

    /// Loads and shows the window beside this contact; a former one is gone.
    void zeige(std::size_t aktueller = 0, bool autoSuche = false, const QString &suchFeld1 = QStringLiteral("COMPANY"));

    FakeAct act;
    FakeDesktop tisch;
    Haupt &haupt() { return *m_haupt; }
    frmHauptkontakt &fenster() { return *m_fenster; }
    KontaktListe &treffer() { return finde<KontaktListe>(u"lvSuchergebnis"); }
    KontaktListe &mitglieder() { return finde<KontaktListe>(u"lvMitglieder"); }
    template <typename Widget> Widget &finde(QStringView name)
    {
        return *m_fenster->findChild<Widget *>(name.toString());
    }
    QString tabelle() const { return act.databasePath; }
    QString ordner() const { return m_folder.path(); }
    dao::DBEngine &engine() { return m_engine.dahinter(); }
    QStringList offen() const { return m_engine.offen; } ///< what the program has not closed

    /// Types a term and clicks "neue Suche".
    void suche(QStringView begriff);
    /// Clicks a button, which must be there and enabled.
    void klicke(QStringView knopf);
    /// Selects the items with these unique ids, and no others.
    static void waehle(KontaktListe &liste, QStringView ids);
    void uebernimm(QStringView ids);
    void entferne(QStringView ids);
    void macheHauptkontakt(QStringView ids);

    /// What a list shows: "id icon number/client", separated by ", "; without the account if there is none.
    static QString inhalt(const KontaktListe &liste);
    static QString ids(const KontaktListe &liste);
    /// "HTF" with a "-" for each of "Hauptkontakt", "Transfer" and "Fertig" that is off; "?" if it is half off.
    QString knoepfe();

    /// The dialog of this kind, once it was loaded; else nullptr.
    template <typename Dialog> static Dialog *dialog()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *dialog = dynamic_cast<Dialog *>(widget))
                return dialog;
        }
        return nullptr;
    }
    /// About several main contacts.
    static QDialog *mehrdeutig() { return dialog<frmFehlerHptkt>(); }

private:
    QTemporaryDir m_folder;
    MitschreibendeEngine m_engine;
    std::unique_ptr<Haupt> m_haupt;
    frmHauptkontakt *m_fenster = nullptr;
};
