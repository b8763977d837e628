// The sample data with ten people of one company more, and the user who transfers them.
#include "tests/act_faults/Zehnergruppe.h"

#include <algorithm>
#include <stdexcept>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>

#include "acthost/ContactBook.h"
#include "demo/DemoFolder.h"
#include "groupeditor/frmHauptkontakt.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/dbf/DbfDriver.h"
#include "tests/fakes/Beispieldaten.h"

using namespace Qt::StringLiterals;

namespace {

const QString kontaktOrdner = u"Daten/ACT"_s;
const QString mandantOrdner = u"Daten/PCK"_s;

void kopiere(const QString &von, const QString &nach, const QStringList &muster)
{
    QDir().mkpath(nach);
    for (const QString &name : QDir(nach).entryList(muster, QDir::Files))
        QFile::remove(nach + u'/' + name);
    for (const QString &name : QDir(von).entryList(muster, QDir::Files)) {
        if (!QFile::copy(von + u'/' + name, nach + u'/' + name))
            throw std::runtime_error("cannot copy the sample data");
    }
}

void stelleEin(dao::DBEngine &engine, const QString &ordner)
{
    const auto kontakte = engine.OpenDatabase(ordner, 0, false, u"FoxPro 2.6;"_s);
    for (int i = 1; i <= Zehnergruppe::anzahl; ++i) {
        kontakte->Execute(
            u"INSERT INTO KONTAKTE (UNIQUE_ID, COMPANY, CONTACT, SALUTATION, FIRSTNAME, LASTNAME, STREET, "
            "ZIP, CITY, TELEFON, HANDY, EMAIL) VALUES ('%1', 'Zehnder Anlagenbau GmbH', 'Vera Müller%2', "
            "'Frau', 'Vera', 'Müller%2', 'Deichstraße 7', '20459', 'Hamburg', '040 / 12345-%2', "
            "'0171 39200%2', 'v.mueller%2@zehnder.example')"_s.arg(Zehnergruppe::kennung(i))
                .arg(i));
    }
    kontakte->Close();
}

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
    demo::DemoFolder(m_ordner.filePath(u"Daten"_s)).create(*m_engine, false);
    stelleEin(*m_engine, m_ordner.filePath(kontaktOrdner));
    kopiere(m_ordner.filePath(kontaktOrdner), m_ordner.filePath(u"Anfang"_s), {u"KONTAKTE.*"_s});
    kopiere(m_ordner.filePath(mandantOrdner), m_ordner.filePath(u"Anfang"_s), {u"Alsterland.PCK"_s});
}

QString Zehnergruppe::tabelle() const
{
    return m_ordner.filePath(kontaktOrdner) + u"/KONTAKTE.DBF"_s;
}

QString Zehnergruppe::kennung(int mitglied)
{
    return u"ZEHNDER-%1"_s.arg(mitglied, 4, 10, QChar(u'0'));
}

void Zehnergruppe::setzeZurueck()
{
    kopiere(m_ordner.filePath(u"Anfang"_s), m_ordner.filePath(kontaktOrdner), {u"KONTAKTE.*"_s});
    kopiere(m_ordner.filePath(u"Anfang"_s), m_ordner.filePath(mandantOrdner), {u"Alsterland.PCK"_s});
}

void Zehnergruppe::verknuepfeHauptkontakt(const QString &nummer)
{
    const auto kontakte = m_engine->OpenDatabase(m_ordner.filePath(kontaktOrdner), 0, false, u"FoxPro 2.6;"_s);
    kontakte->Execute(u"UPDATE KONTAKTE SET PCK_NUMMER = '%1', PCK_MAND = 'Alsterland.PCK', PCK_TYP = 'H' "
                      "WHERE UNIQUE_ID = '%2'"_s.arg(nummer, kennung(1)));
    kontakte->Close();
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
    Haupt haupt(
        Umgebung{act, *engine, tisch, tisch, tisch, tisch, tisch, tisch, tisch, tisch, m_ordner.filePath(u"Daten"_s)});
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

void Zehnergruppe::bediene(Ablauf &ablauf)
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

QMap<QString, QMap<int, QString>> Zehnergruppe::kontakte() const
{
    dbf::DbfDriver treiber;
    const acthost::ContactBook buch(treiber, tabelle(),
                                    acthost::FieldList::read(m_ordner.filePath(kontaktOrdner) + u"/KONTAKTE.felder"_s));
    QMap<QString, QMap<int, QString>> kontakte;
    for (const acthost::Contact &kontakt : buch.contacts()) {
        for (const acthost::Field &feld : buch.fields().fields())
            kontakte[kontakt.uniqueId][feld.number] = dao::textOf(buch.value(kontakt.row, feld.number));
    }
    return kontakte;
}
