// A whole run beside a contact program of its own: from start-up to the end, over a bus, on its contact table.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QPushButton>

#include "groupeditor/frmHauptkontakt.h"
#include "platform/automation/dbus/DBusAutomation.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/automation/PrivateBus.h"
#include "tests/startup/Gestartet.h"

using namespace Qt::StringLiterals;

TEST(Lauf, WritesTheGroupAndWhoIsGivenBackAndNothingElse)
{
    const QTemporaryDir ordner;
    const auto engine = dao::makeEmbeddedEngine();
    beispiel::erzeugeIni(ordner.path(), ordner.path());
    beispiel::erzeugeMapping(*engine, ordner.path());
    ASSERT_TRUE(QFile::link(QStringLiteral(VELDRAK_BILDER), ordner.filePath(u"bilder"_s)));
    const QString tabelle = beispiel::erzeugeKontakttabelle(
        *engine, ordner.path(),
        beispiel::leute(u"A H D010000/Muster.PCK Köhler & Söhne; B N D010000/Muster.PCK Köhler & Söhne; "
                        "C - - Köhler & Söhne; D N D010000/Muster.PCK Köhler & Söhne; Z - - Zeta Handel"));
    beispiel::schreibe(ordner.filePath(u"KONTAKTE.felder"_s),
                       "1|UNIQUE_ID|Kennung\n2|COMPANY|Firma\n26|CONTACT|Name\n3|FIRSTNAME|Vorname\n"
                       "25|LASTNAME|Nachname\n6|STREET|Straße\n7|ZIP|PLZ\n8|CITY|Ort\n11|TELEFON|Telefon\n"
                       "13|TELEFAX|Fax\n14|HANDY|Handy\n15|EMAIL|E-Mail\n17|URL|Internet\n"
                       "60|PCK_NUMMER|Nummer\n61|PCK_MAND|Mandant\n62|PCK_TYP|Art\n");
    const auto saetze = [&] { return beispiel::zeilen(*engine, ordner.path(), u"SELECT * FROM KONTAKTE"_s); };
    QStringList soll = saetze();

    const PrivateBus bus;
    QProcess act;
    ASSERT_TRUE(bus.start(act, QStringLiteral(ACTHOST), {tabelle, u"--kontakt"_s, u"A"_s}));
    DBusAutomation automation({.timeout = std::chrono::seconds(10), .busAddress = bus.address()});
    FakeDesktop tisch;
    Haupt haupt(umgebung(automation, *engine, tisch, ordner.path()));
    frmHauptkontakt *fenster = nullptr;
    haupt.Main([&fenster](Haupt &h) {
        auto neues = std::make_unique<frmHauptkontakt>(h);
        fenster = neues.get();
        return neues;
    });
    ASSERT_TRUE(fenster && fenster->isVisible());
    const auto klicke = [fenster](QStringView knopf) { fenster->findChild<QPushButton *>(knopf.toString())->click(); };
    auto &treffer = *fenster->findChild<KontaktListe *>(u"lvSuchergebnis"_s);
    auto &mitglieder = *fenster->findChild<KontaktListe *>(u"lvMitglieder"_s);
    fenster->findChild<QLineEdit *>(u"tbSuche"_s)->setText(u"söhne"_s);
    klicke(u"cmdSuchen");
    ASSERT_EQ(mitglieder.Anzahl(), 3);

    for (const int satz : {1, 3}) { // each is the second member then
        mitglieder.clearSelection();
        mitglieder.Item(2).setSelected(true);
        klicke(u"cmdEntfernen");
        soll[satz].replace(u"|D010000|Muster.PCK|N|"_s, u"|-|-|-|"_s);
        EXPECT_EQ(saetze(), soll);
    }
    EXPECT_EQ(tisch.boxes.size(), 2U);
    EXPECT_FALSE(haupt.beendet());
    ASSERT_EQ(treffer.Anzahl(), 3);

    treffer.Item(2).setSelected(true);
    klicke(u"cmdÜbernehmen");
    fenster->findChild<QLineEdit *>(u"tbFirma"_s)->setText(u"Köhler GmbH"_s);
    klicke(u"cmdFirmaAngleichen");
    EXPECT_EQ(saetze(), soll) << "nothing is written before the end";
    const QString dazu = treffer.uniqueID(mitglieder.Item(2));
    klicke(u"cmdFertig");
    for (QString &satz : soll) {
        if (satz.startsWith(dazu + u"|-|-|-|"_s))
            satz.replace(dazu.size(), 7, u"|D010000|Muster.PCK|N|"_s);
        if (satz.contains(u"D010000"_s))
            satz.replace(u"Köhler & Söhne"_s, u"Köhler GmbH"_s);
    }
    EXPECT_EQ(saetze(), soll);
    EXPECT_TRUE(haupt.beendet() && tisch.quitCalled);
    EXPECT_EQ(tisch.boxes.size(), 2U);
    EXPECT_EQ(act.state(), QProcess::Running);
    PrivateBus::end(act);
}
