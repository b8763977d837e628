// The sample data with ten people of one company more, and the user who transfers them.
#include "tests/act_faults/Zehnergruppe.h"

#include <algorithm>

#include <QApplication>
#include <QPushButton>

#include "acthost/ContactBook.h"
#include "demo/DemoFolder.h"
#include "groupeditor/frmHauptkontakt.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/dbf/DbfDriver.h"
#include "tests/startup/Gestartet.h"

using namespace Qt::StringLiterals;

namespace {

/// ACT!'s contacts as the stand-in program reads and writes them.
struct Kontaktbuch {
    explicit Kontaktbuch(const QString &tabelle)
        : buch(treiber, tabelle, acthost::FieldList::read(QString(tabelle).replace(u".DBF"_s, u".felder"_s)))
    { }

    dbf::DbfDriver treiber;
    acthost::ContactBook buch;
};

template <typename Widget> Widget *finde(const QString &name)
{
    for (QWidget *fenster : QApplication::topLevelWidgets()) {
        if (auto *gefunden = fenster->findChild<Widget *>(name); gefunden && fenster->isVisible())
            return gefunden;
    }
    return nullptr;
}

/// False if there is no such button or it cannot be pressed.
bool druecke(const QString &name, Ablauf &ablauf)
{
    auto *knopf = finde<QPushButton>(name);
    if (!knopf || !knopf->isEnabled())
        return false;
    ablauf.knopf = name;
    knopf->click();
    return true;
}

void bediene(Ablauf &ablauf)
{
    auto *treffer = finde<KontaktListe>(u"lvSuchergebnis"_s);
    auto *mitglieder = finde<KontaktListe>(u"lvMitglieder"_s);
    if (!treffer)
        return;
    treffer->selectAll();
    druecke(u"cmdÜbernehmen"_s, ablauf);
    mitglieder->Item(1).setSelected(true);
    druecke(u"cmdHauptkontakt"_s, ablauf);
    if (druecke(u"cmdFertig"_s, ablauf))
        return;
    if (druecke(u"cmdTransfer"_s, ablauf))
        druecke(u"cmdEintragen"_s, ablauf);
    druecke(u"cmdAbbruch"_s, ablauf);
}

bool nichtsZuSehen()
{
    const QWidgetList fenster = QApplication::topLevelWidgets();
    return QApplication::overrideCursor() == nullptr
        && std::none_of(fenster.begin(), fenster.end(), [](const QWidget *eines) { return eines->isVisible(); });
}

} // namespace

Zehnergruppe::Zehnergruppe()
    : m_engine(dao::makeEmbeddedEngine())
{
    demo::DemoFolder(ordner()).create(*m_engine, false);
    QStringList anweisungen;
    for (int i = 1; i <= anzahl; ++i) {
        anweisungen += u"INSERT INTO KONTAKTE (UNIQUE_ID, COMPANY, CONTACT, SALUTATION, FIRSTNAME, LASTNAME, STREET, "
                       "ZIP, CITY, TELEFON, HANDY, EMAIL) VALUES ('%1', 'Zehnder Anlagenbau GmbH', 'Vera Müller%2', "
                       "'Frau', 'Vera', 'Müller%2', 'Deichstraße 7', '20459', 'Hamburg', '040 / 12345-%2', "
                       "'0171 39200%2', 'v.mueller%2@zehnder.example')"_s.arg(kennung(i))
                           .arg(i);
    }
    beispiel::fuehreAus(*m_engine, ordner(u"/ACT"), anweisungen);
    m_act = readFolder(ordner(u"/ACT"));
    m_pck = readFolder(ordner(u"/PCK"));
}

QString Zehnergruppe::kennung(int mitglied)
{
    return u"ZEHNDER-%1"_s.arg(mitglied, 4, 10, QChar(u'0'));
}

void Zehnergruppe::setzeZurueck() const
{
    writeFolder(ordner(u"/ACT"), m_act);
    writeFolder(ordner(u"/PCK"), m_pck);
}

void Zehnergruppe::verknuepfeHauptkontakt(const QString &nummer)
{
    beispiel::fuehreAus(*m_engine, ordner(u"/ACT"),
                        {u"UPDATE KONTAKTE SET PCK_NUMMER = '%1', PCK_MAND = 'Alsterland.PCK', PCK_TYP = 'H' "
                         "WHERE UNIQUE_ID = '%2'"_s.arg(nummer, kennung(1))});
}

void Zehnergruppe::loescheKonto(const QString &nummer)
{
    beispiel::fuehreAus(*m_engine, mandant(),
                        {u"DELETE FROM sPersKom WHERE PersKommNummer = '%1'"_s.arg(nummer),
                         u"DELETE FROM sPersKto WHERE PersKtoNummer = '%1'"_s.arg(nummer)});
}

Ablauf Zehnergruppe::uebertrage(Automation &act)
{
    FakeDesktop tisch;
    tisch.save(u"VELDRAK"_s, u"Setting"_s, u"Mandant"_s, u"1"_s);
    const auto engine = dao::makeEmbeddedEngine();
    Haupt haupt(umgebung(act, *engine, tisch, ordner()));
    Ablauf ablauf;
    try {
        haupt.Main([](Haupt &h) { return std::make_unique<frmHauptkontakt>(h); });
        bediene(ablauf);
    } catch (const ProgrammBeendet &) { // start-up could not go on and has said why
        haupt.Status().hide(); // the process would end here
    }
    ablauf.boxen = tisch.boxTexts();
    ablauf.beendet = haupt.beendet() && tisch.quitCalled && nichtsZuSehen();
    return ablauf;
}

Ablauf Zehnergruppe::uebertrageMit(FakeAct &act)
{
    const auto vorher = kontakte();
    act.databasePath = tabelle();
    act.contacts = {vorher.begin(), vorher.end()};
    act.current = static_cast<std::size_t>(act.find(kennung(1)) - act.contacts.data());
    const Ablauf ablauf = uebertrage(act);
    Kontaktbuch k(tabelle());
    for (const FakeAct::Contact &kontakt : act.contacts) {
        const QString id = kontakt.at(1).toString();
        for (const auto &[feld, wert] : kontakt) {
            if (wert != vorher[id].at(feld))
                k.buch.write(*k.buch.find(id), feld, wert.toString());
        }
    }
    return ablauf;
}

QMap<QString, Konto> Zehnergruppe::konten()
{
    const QString pfad = mandant();
    const auto datenbank = m_engine->OpenDatabase(pfad, 0, true, u";DATABASE="_s + pfad + u";PWD="_s);
    QMap<QString, Konto> konten;
    const auto zeilen = datenbank->OpenRecordset(u"SELECT * FROM sPersKto"_s);
    for (; !zeilen->Eof(); zeilen->MoveNext()) {
        QMap<QString, QString> spalten;
        for (int i = 0; i < zeilen->FieldCount(); ++i)
            spalten[zeilen->Fields(i).Name()] = dao::textOf(zeilen->Fields(i).Value());
        konten[spalten.value(u"PersKtoNummer"_s)].spalten = spalten;
    }
    for (const QString &eintrag : beispiel::zeilen(*m_engine, pfad, u"SELECT * FROM sPersKom"_s))
        konten[eintrag.section(u'|', 0, 0)].eintraege += eintrag;
    datenbank->Close();
    return konten;
}

QMap<QString, FakeAct::Contact> Zehnergruppe::kontakte() const
{
    const Kontaktbuch k(tabelle());
    QMap<QString, FakeAct::Contact> kontakte;
    for (const acthost::Contact &kontakt : k.buch.contacts()) {
        for (const acthost::Field &feld : k.buch.fields().fields())
            kontakte[kontakt.uniqueId][feld.number] = k.buch.value(kontakt.row, feld.number);
    }
    return kontakte;
}
