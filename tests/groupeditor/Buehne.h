#pragma once

#include <memory>
#include <vector>

#include <QPushButton>
#include <QTemporaryDir>

#include "groupeditor/frmHauptkontakt.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/FakeDesktop.h"

/// The main window on a stage: an ACT! that records, a contact table with the same people, and hands for its controls.
class Buehne
{
public:
    struct Wunsch {
        std::size_t aktueller = 0; ///< who is ACT!'s current contact
        bool autoSuche = false;
    };
    /// A folder with the contact table of these people, whose window is then opened by zeige().
    explicit Buehne(const std::vector<beispiel::Person> &personen);
    ~Buehne();

    /// Loads and shows the window; a former one is gone.
    void zeige(Wunsch wunsch);
    void zeige() { zeige({}); }

    FakeAct act;
    FakeDesktop tisch;
    Haupt &haupt() { return *m_haupt; }
    frmHauptkontakt &fenster() { return *m_fenster; }
    KontaktListe &treffer() { return finde<KontaktListe>(QStringLiteral("lvSuchergebnis")); }
    KontaktListe &mitglieder() { return finde<KontaktListe>(QStringLiteral("lvMitglieder")); }
    template <typename Widget> Widget &finde(const QString &name) { return *m_fenster->findChild<Widget *>(name); }
    QString tabelle() const { return m_folder.filePath(QStringLiteral("KONTAKTE.DBF")); }

    /// Makes a client in the folder of the clients.
    void erzeugeMandant(const QString &name) { beispiel::erzeugeMandant(*m_engine, m_folder.filePath(name)); }
    dao::DBEngine &engine() { return *m_engine; }

    /// Types a term and clicks "neue Suche".
    void suche(const QString &begriff);
    /// Clicks a button, which must be there and enabled.
    void klicke(const QString &knopf);
    /// Selects the items with these unique ids, and no others.
    static void waehle(KontaktListe &liste, const QStringList &ids);
    void uebernimm(const QStringList &ids);
    void entferne(const QStringList &ids);

    /// What a list shows, an item as "id, icon" or "id, icon, number/client".
    static QStringList inhalt(const KontaktListe &liste);
    static QStringList ids(const KontaktListe &liste);
    /// "HTF" with a "-" for each of "Hauptkontakt", "Transfer" and "Fertig" that is off; "?" if it is half off.
    QString knoepfe();

    /// The dialog about several main contacts; nullptr before it was loaded.
    QDialog *mehrdeutig() const;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<dao::DBEngine> m_engine;
    std::unique_ptr<Haupt> m_haupt;
    frmHauptkontakt *m_fenster = nullptr;
};

/// Someone in the contact table. An account is "number/client".
beispiel::Person person(const QString &id, const QString &typ = {}, const QString &konto = {},
                        const QString &firma = QStringLiteral("Alpha Werke"));
