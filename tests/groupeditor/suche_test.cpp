// The window as it is loaded, its search, and how buttons and warnings follow the group.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Fenster, LoadsWithTheCurrentContact)
{
    Buehne b(u"A N D1/M Äußere Werke; B N D1/M Äußere Werke");
    b.zeige();
    EXPECT_EQ(b.fenster().windowTitle(), u"VELDRAK - Hauptkontakt"_s);
    EXPECT_EQ(b.finde<QLineEdit>(u"tbSuche").text(), u"Äuße"_s);
    EXPECT_EQ(b.finde<QLineEdit>(u"tbFirma").text(), u"Äußere Werke"_s);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2 D1/M"_s);
    EXPECT_EQ(b.treffer().Anzahl(), 0);

    const KontaktListe &liste = b.mitglieder();
    QStringList spalten;
    for (int i = 0; i < liste.columnCount(); ++i)
        spalten += liste.headerItem()->text(i);
    EXPECT_EQ(spalten.join(u' '),
              u"Firma Firma Name Vorname Nachname Strasse PLZ Ort Telefon Fax Handy Email URL Nummer Mandant "
              "UniqueID"_s);
    for (const auto &[spalte, teil] : {std::pair(0, 4), {1, 5}, {12, 5}, {13, 7}, {14, 7}, {15, 7}})
        EXPECT_EQ(liste.columnWidth(spalte), liste.width() / teil) << spalte;
    EXPECT_EQ(liste.Item(1).text(2), u"Name A"_s);
    EXPECT_EQ(liste.Item(1).data(0, Qt::AccessibleTextRole), u"Äußere Werke, Nebenkontakt"_s);
    EXPECT_THAT(liste.Item(1).toolTip(5).toStdString(), testing::HasSubstr("Nebenkontakt"));

    for (int icon = 1; icon <= 3; ++icon) {
        const QString datei = QStringLiteral(VELDRAK_BILDER "/icons/%1.ico")
                                  .arg(QStringList{u"unbek"_s, u"neben"_s, u"haupt"_s}[icon - 1]);
        liste.setzeIcon(liste.Item(1), icon);
        EXPECT_EQ(liste.Item(1).icon(0).pixmap(16).toImage(), QIcon(datei).pixmap(16).toImage()) << icon;
    }

    b.act.contacts[0][8] = u"Bremen"_s;
    b.zeige(0, false, u"CITY"_s);
    EXPECT_EQ(b.finde<QLineEdit>(u"tbSuche").text(), u"Brem"_s);
    b.zeige(0, true); // as configured, it searches at once
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2 D1/M, B 2 D1/M"_s);
    EXPECT_TRUE(b.haupt().Status().isHidden());
}

TEST(Fenster, DoesWithoutItsIconsAndSaysSoOnce)
{
    Buehne b(u"A H D1/M; B N D1/M");
    b.zeige();
    const auto lade = [&b](const QString &programmordner) {
        Haupt haupt(umgebung(b.act, b.engine(), b.tisch, programmordner));
        haupt.ActApp = b.haupt().ActApp;
        haupt.ActKontaktfenster = b.haupt().ActKontaktfenster;
        haupt.konfiguration = b.haupt().konfiguration;
        haupt.konfiguration.AutoSuche = true;
        haupt.SyncFelder.init(b.haupt().umgebung().programmordner + u"/veldrak.piz"_s, coding::mappingZugriff());
        haupt.Kontakt = gelesenerKontakt(haupt);
        const frmHauptkontakt fenster(haupt);
        const auto &liste = *fenster.findChild<KontaktListe *>(u"lvMitglieder"_s);
        EXPECT_EQ(Buehne::inhalt(liste), u"A 3 D1/M, B 2 D1/M"_s);
        return !liste.Item(1).icon(0).isNull();
    };
    // An installed program has them beside its bin.
    const QString installiert = QCoreApplication::applicationDirPath() + u"/../share/veldrak"_s;
    QFile::remove(installiert + u"/bilder"_s);
    b.tisch.boxes.clear();
    EXPECT_FALSE(lade(b.ordner()));
    EXPECT_THAT(b.tisch.boxTexts(),
                ElementsAre(u"Die Symbole der Kontakte fehlen (bilder/icons). Ihre Rolle steht im Hinweistext."_s));

    ASSERT_TRUE(QDir().mkpath(installiert));
    ASSERT_TRUE(QFile::link(QStringLiteral(VELDRAK_BILDER), installiert + u"/bilder"_s));
    b.tisch.boxes.clear();
    EXPECT_TRUE(lade(b.ordner()));
    EXPECT_THAT(b.tisch.boxTexts(), testing::IsEmpty());
    QFile::remove(installiert + u"/bilder"_s);
}

TEST(Fenster, BlinksItsWarnings)
{
    Buehne b(u"A N; B - - Alpha Nord; C");
    b.zeige();
    const auto *haupt = &b.finde<QLabel>(u"lbHaupt");
    const auto *firma = &b.finde<QLabel>(u"lbFirma");
    EXPECT_TRUE(haupt->isHidden());
    EXPECT_TRUE(QTest::qWaitFor([haupt] { return !haupt->isHidden(); }, 900));
    EXPECT_TRUE(QTest::qWaitFor([haupt] { return haupt->isHidden(); }, 900));
    EXPECT_TRUE(firma->isHidden());

    b.suche(u"Alph");
    b.uebernimm(u"B C");
    EXPECT_TRUE(QTest::qWaitFor([firma] { return !firma->isHidden(); }, 900));
    b.macheHauptkontakt(u"B");
    b.klicke(u"cmdFirmaAngleichen");
    EXPECT_TRUE(QTest::qWaitFor([=] { return haupt->isHidden() && firma->isHidden(); }, 900));
    QTest::qWait(500);
    EXPECT_TRUE(haupt->isHidden() && firma->isHidden()) << "nothing to warn of any more";
}

TEST(Suche, CountsItsHits)
{
    QString personen = u"A; E1 - - Einer GmbH"_s;
    for (int i = 1; i <= 50; ++i)
        personen += u"; F%1 - - Fünfzig GmbH"_s.arg(i);
    for (int i = 1; i <= 51; ++i)
        personen += u"; V%1 - - Viele GmbH; A - - Dieselbe GmbH"_s.arg(i);
    Buehne b(personen);
    b.zeige();
    const QStringView mehr = u"Es wurden mehr als 50 Kontakte gefunden.\rDaher werden nur die ersten 50 Kontakte "
                             "angezeigt.\rTip: Sie sollten Ihren Suchbegriff etwas erweitern.";
    // clang-format off
    struct Row { const char *name; QStringView begriff; int treffer; QStringView letzter, box; };
    const Row rows[] = {
        {"nothing",                         u"Keiner",     0,  u"",    u""},
        {"one",                             u"Einer",      1,  u"E1",  u""},
        {"small letters find capitals",     u"einer gmbh", 1,  u"E1",  u""},
        {"umlauts in capitals",             u"FÜNFZIG",    50, u"F50", u""},
        {"blanks around do not count",      u"  Fünfzig ", 50, u"F50", u""},
        {"the first fifty in record order", u"Viele",      50, u"V50", mehr},
        {"the contact itself is none",      u"Dieselbe",   0,  u"",    mehr},
        {"the second search field",         u"Name V5",    3,  u"V51", u""}, // V5, V50, V51
        {"a term that finds all",           u"a",          0,  u"",    u""},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        b.tisch.boxes.clear();
        b.act.calls.clear();
        QStringList status;
        b.tisch.onYield = [&] {
            const frmStatus &fenster = b.haupt().Status();
            status += u"%1 %2"_s.arg(fenster.isVisible() ? fenster.ProgressBar1() : -1).arg(fenster.lbStatus());
        };
        b.suche(row.begriff);
        EXPECT_THAT(status, ElementsAre(u"0 ACT!-Daten werden durchsucht ..."_s));
        EXPECT_EQ(b.treffer().Anzahl(), row.treffer);
        EXPECT_EQ(Buehne::ids(b.treffer()).section(u' ', -1), row.letzter);
        if (row.treffer > 0) {
            EXPECT_EQ(b.haupt().Status().lbStatus(), u"gefundenen Kontakte: %1"_s.arg(row.treffer));
            EXPECT_EQ(b.haupt().Status().ProgressBar1(), 100);
        }
        EXPECT_EQ(b.tisch.boxTexts().join(u'|'), row.box);
        EXPECT_THAT(b.act.calls, ElementsAre(u"LookupALL()"_s, u"GetCount()"_s, u"getopendbname()"_s));
        EXPECT_TRUE(b.haupt().Status().isHidden());
    }
    b.tisch.onYield = nullptr;
    b.suche(u"Einer");
    b.act.calls.clear();
    b.suche(u"   ");
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Bitte geben Sie einen Suchbegriff ein !"_s));
    EXPECT_THAT(b.act.calls, IsEmpty());
    EXPECT_EQ(Buehne::ids(b.treffer()), u"E1"_s) << "the former hits stay";

    b.suche(u"O'N"); // cannot be asked
    EXPECT_TRUE(b.tisch.boxTexts().last().startsWith(u"Es ist ein Fehler beim Zugriff"_s));
    EXPECT_EQ(b.act.calls.last(), u"Resize(800, 600)"_s);
    EXPECT_TRUE(b.haupt().beendet() && b.fenster().isHidden() && b.haupt().Status().isHidden());
    EXPECT_THAT(b.offen(), IsEmpty());
}

TEST(Suche, PlacesEachHitAndSetsTheButtons)
{
    // clang-format off
    struct Row { const char *name; QStringView personen, treffer, mitglieder, knoepfe; };
    const Row rows[] = {
        {"never grouped, in a new group",      u"A; B",                   u"B 1",      u"A 1",           u"H--"},
        {"never grouped, whatever its number", u"A H D1/M; B - D9/X",     u"B 1 D9/X", u"A 3 D1/M",      u"---"},
        {"a small role letter is another one", u"A H D1/M; B n D9/M",     u"",         u"A 3 D1/M",      u"---"},
        {"secondary, in a new group",          u"A; B N D1/M",            u"B 2 D1/M", u"A 1",           u"H--"},
        {"main, in a new group",               u"A; B H D1/M",            u"B 3 D1/M", u"A 1",           u"H--"},
        {"same account joins",                 u"A H D1/M; B N D1/M",     u"", u"A 3 D1/M, B 2 D1/M",   u"--F"},
        {"main of the same account joins",     u"A N D1/M; B H D1/M Alpha Haus", u"", u"A 2 D1/M, B 3 D1/M", u"--F"},
        {"two main contacts are none",         u"A N D1/M; B H D1/M Alpha Haus; C H D1/M Alpha Süd", u"",
         u"A 2 D1/M, B 2 D1/M, C 2 D1/M", u"H--"},
        {"another number is left out",         u"A H D1/M; B N D2/M",     u"",         u"A 3 D1/M",      u"---"},
        {"another client is left out",         u"A N D1/M; B H D1/X",     u"",         u"A 2 D1/M",      u"H--"},
        {"accounts compare with case",         u"A N D1/M; B H d1/M",     u"",         u"A 2 D1/M",      u"H--"},
        // The client stands for number and client of the search alike.
        {"found by client as number",          u"A N M/M; B N M/M Omega", u"",         u"A 2 M/M, B 2 M/M", u"H--"},
        {"half an account is none",            u"A H /M; B",              u"B 1",      u"A 3 /M",        u"-T-"},
        {"a small letter is no role",          u"A h; B",                 u"B 1",      u"A 1",           u"H--"},
        {"a role is missing",                  u"A - D1/M; B",            u"B 1",      u"A 1 D1/M",      u"H--"},
        {"not found by its number",            u"A N D1/M; B N D1/M Omega", u"",       u"A 2 D1/M",      u"H--"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Buehne b(row.personen);
        b.zeige();
        b.suche(u"alpha");
        EXPECT_EQ(Buehne::inhalt(b.treffer()), row.treffer);
        EXPECT_EQ(Buehne::inhalt(b.mitglieder()), row.mitglieder);
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_EQ(b.tisch.boxTexts().isEmpty(), row.mitglieder != u"A 1 D1/M");
        EXPECT_THAT(b.tisch.boxTexts(), testing::Each(u"Flagzahl = 1"_s));
        const bool neuerHauptkontakt = row.personen.contains(u"Alpha Haus");
        EXPECT_EQ(b.finde<QLineEdit>(u"tbFirma").text(), neuerHauptkontakt ? u"Alpha Haus"_s : u"Alpha Werke"_s);
        EXPECT_EQ(b.mehrdeutig() != nullptr, row.personen.contains(u"C H"));
    }
}
