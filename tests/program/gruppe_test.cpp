// Whole runs beside a contact program of its own: from start-up to the end, over a bus, on its contact table.
#include <gmock/gmock.h>

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include "groupeditor/frmHauptkontakt.h"
#include "platform/automation/dbus/DBusAutomation.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/automation/PrivateBus.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeDesktop.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

beispiel::Person person(const QString &id, const QString &typ, const QString &konto)
{
    beispiel::Person person{id, u"Köhler & Söhne"_s};
    person.nachname = u"Name "_s + id;
    person.typ = typ;
    person.nummer = konto.section(u'/', 0, 0);
    person.mandant = konto.section(u'/', 1);
    return person;
}

QByteArray inhalt(const QString &pfad)
{
    QFile datei(pfad);
    EXPECT_TRUE(datei.open(QFile::ReadOnly));
    return datei.readAll();
}

/// A table's bytes with another text in one field of one record (from 1).
QByteArray mitFeld(QByteArray tabelle, int satz, const QByteArray &feld, const QByteArray &text)
{
    const auto zahl
        = [&tabelle](qsizetype stelle) { return uchar(tabelle[stelle]) + 256 * uchar(tabelle[stelle + 1]); };
    qsizetype stelle = zahl(8) + (satz - 1) * zahl(10) + 1; // behind the deletion mark
    for (qsizetype beschreibung = 32; tabelle[beschreibung] != '\r'; beschreibung += 32) {
        const int breite = uchar(tabelle[beschreibung + 16]);
        if (QByteArray(tabelle.constData() + beschreibung) == feld)
            return tabelle.replace(stelle, breite, text.leftJustified(breite, ' '));
        stelle += breite;
    }
    ADD_FAILURE() << "no field " << feld.toStdString();
    return tabelle;
}

} // namespace

class Lauf : public testing::Test
{
protected:
    /// Starts the contact program on a table of these people, the first of them current, and this program beside it.
    void starte(std::vector<beispiel::Person> personen)
    {
        personen.push_back({u"Z"_s, u"Zeta Handel"_s}); // not every contact may match a term
        beispiel::erzeugeIni(m_ordner.path(), m_ordner.path());
        beispiel::erzeugeMapping(*m_engine, m_ordner.path());
        ASSERT_TRUE(QFile::link(QStringLiteral(VELDRAK_BILDER), m_ordner.filePath(u"bilder"_s)));
        m_tabelle = beispiel::erzeugeKontakttabelle(*m_engine, m_ordner.path(), personen);
        QFile felder(m_ordner.filePath(u"KONTAKTE.felder"_s));
        ASSERT_TRUE(felder.open(QFile::WriteOnly));
        felder.write("1|UNIQUE_ID|Kennung\n2|COMPANY|Firma\n26|CONTACT|Name\n3|FIRSTNAME|Vorname\n"
                     "25|LASTNAME|Nachname\n6|STREET|Straße\n7|ZIP|PLZ\n8|CITY|Ort\n11|TELEFON|Telefon\n"
                     "13|TELEFAX|Fax\n14|HANDY|Handy\n15|EMAIL|E-Mail\n17|URL|Internet\n"
                     "60|PCK_NUMMER|Nummer\n61|PCK_MAND|Mandant\n62|PCK_TYP|Art\n");
        felder.close();
        m_vorher = inhalt(m_tabelle);

        ASSERT_TRUE(m_bus.start(m_act, QStringLiteral(ACTHOST), {m_tabelle, u"--kontakt"_s, personen[0].id}));
        m_haupt.Main([this](Haupt &haupt) {
            auto fenster = std::make_unique<frmHauptkontakt>(haupt);
            m_fenster = fenster.get();
            return fenster;
        });
        ASSERT_TRUE(m_fenster && m_fenster->isVisible());
        finde<QLineEdit>(u"tbSuche"_s).setText(u"söhne"_s);
        finde<QPushButton>(u"cmdSuchen"_s).click();
    }

    template <typename Widget> Widget &finde(const QString &name) { return *m_fenster->findChild<Widget *>(name); }
    KontaktListe &treffer() { return finde<KontaktListe>(u"lvSuchergebnis"_s); }
    KontaktListe &mitglieder() { return finde<KontaktListe>(u"lvMitglieder"_s); }
    void klicke(const QString &knopf)
    {
        ASSERT_TRUE(finde<QPushButton>(knopf).isEnabled());
        finde<QPushButton>(knopf).click();
    }
    void TearDown() override { PrivateBus::end(m_act); }

    QTemporaryDir m_ordner;
    std::unique_ptr<dao::DBEngine> m_engine = dao::makeEmbeddedEngine();
    PrivateBus m_bus;
    QProcess m_act;
    DBusAutomation m_automation{DBusSettings{.timeout = std::chrono::seconds(10), .busAddress = m_bus.address()}};
    FakeDesktop m_tisch;
    Haupt m_haupt{Umgebung{m_automation, *m_engine, m_tisch, m_tisch, m_tisch, m_tisch, m_tisch, m_tisch, m_tisch,
                           m_tisch, m_ordner.path()}};
    frmHauptkontakt *m_fenster = nullptr;
    QString m_tabelle;
    QByteArray m_vorher;
};

TEST_F(Lauf, NewGroupIsBuiltAndFinished)
{
    starte({person(u"A"_s, u"H"_s, u"D010000/Muster.PCK"_s), person(u"B"_s, {}, {}), person(u"C"_s, {}, {})});
    ASSERT_EQ(treffer().Anzahl(), 2);
    treffer().selectAll();
    klicke(u"cmdÜbernehmen"_s);
    ASSERT_EQ(mitglieder().Anzahl(), 3);
    finde<QLineEdit>(u"tbFirma"_s).setText(u"Köhler GmbH"_s);
    klicke(u"cmdFirmaAngleichen"_s);
    EXPECT_EQ(inhalt(m_tabelle), m_vorher) << "nothing is written before the end";
    klicke(u"cmdFertig"_s);

    QByteArray soll = m_vorher;
    for (int satz = 1; satz <= 3; ++satz) {
        soll = mitFeld(soll, satz, "COMPANY", "K\xF6hler GmbH");
        soll = mitFeld(soll, satz, "PCK_NUMMER", "D010000");
        soll = mitFeld(soll, satz, "PCK_MAND", "Muster.PCK");
        soll = mitFeld(soll, satz, "PCK_TYP", satz == 1 ? "H" : "N");
    }
    EXPECT_EQ(inhalt(m_tabelle), soll);
    EXPECT_TRUE(m_haupt.beendet());
    EXPECT_TRUE(m_tisch.quitCalled);
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
    EXPECT_EQ(m_act.state(), QProcess::Running);
}

TEST_F(Lauf, MembersGivenBackLoseTheirAccountAndNothingElse)
{
    const QString konto = u"D010000/Muster.PCK"_s;
    starte({person(u"A"_s, u"H"_s, konto), person(u"B"_s, u"N"_s, konto), person(u"C"_s, {}, {}),
            person(u"D"_s, u"N"_s, konto)});
    ASSERT_EQ(mitglieder().Anzahl(), 3);
    mitglieder().Item(2).setSelected(true);
    klicke(u"cmdEntfernen"_s);
    ASSERT_EQ(mitglieder().Anzahl(), 2);
    mitglieder().clearSelection();
    mitglieder().Item(2).setSelected(true);
    klicke(u"cmdEntfernen"_s);
    EXPECT_EQ(treffer().Anzahl(), 3);

    QByteArray soll = m_vorher;
    for (int satz : {2, 4}) {
        for (const char *feld : {"PCK_NUMMER", "PCK_MAND", "PCK_TYP"})
            soll = mitFeld(soll, satz, feld, "");
    }
    EXPECT_EQ(inhalt(m_tabelle), soll);
    EXPECT_FALSE(m_haupt.beendet());
    EXPECT_EQ(m_tisch.boxes.size(), 2U);
    klicke(u"cmdAbbruch"_s);
    EXPECT_EQ(inhalt(m_tabelle), soll) << "cancelling writes nothing";
}

TEST_F(Lauf, RemovingTheOnlyMainContactEndsTheProgram)
{
    starte({person(u"A"_s, u"H"_s, u"D010000/Muster.PCK"_s), person(u"B"_s, {}, {})});
    ASSERT_EQ(mitglieder().Anzahl(), 1);
    mitglieder().Item(1).setSelected(true);
    klicke(u"cmdEntfernen"_s);
    EXPECT_TRUE(m_haupt.beendet());
    EXPECT_TRUE(m_fenster->isHidden());
    QByteArray soll = m_vorher;
    for (const char *feld : {"PCK_NUMMER", "PCK_MAND", "PCK_TYP"})
        soll = mitFeld(soll, 1, feld, "");
    EXPECT_EQ(inhalt(m_tabelle), soll);
}
