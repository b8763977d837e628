// Contact tables as they should not be, seen from the window.
#include <gmock/gmock.h>

#include <QFile>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

QByteArray lies(const QString &pfad)
{
    QFile datei(pfad);
    EXPECT_TRUE(datei.open(QFile::ReadOnly));
    return datei.readAll();
}

void schreibe(const QString &pfad, const QByteArray &bytes)
{
    QFile datei(pfad);
    ASSERT_TRUE(datei.open(QFile::WriteOnly | QFile::Truncate));
    datei.write(bytes);
}

/// A dBASE table of two records made one of many: copies of the first, then the second.
QByteArray vervielfacht(const QByteArray &tabelle, quint32 saetze)
{
    const auto zahl
        = [&tabelle](qsizetype stelle) { return uchar(tabelle[stelle]) + 256 * uchar(tabelle[stelle + 1]); };
    QByteArray kopf = tabelle.left(zahl(8));
    for (int i = 0; i < 4; ++i)
        kopf[4 + i] = static_cast<char>(saetze >> (8 * i));
    if (saetze == 0)
        return kopf + '\x1A';
    return kopf + tabelle.mid(zahl(8), zahl(10)).repeated(saetze - 1) + tabelle.mid(zahl(8) + zahl(10));
}

} // namespace

TEST(Tabelle, WithoutContactsListsNone)
{
    for (const bool geloescht : {false, true}) {
        SCOPED_TRACE(geloescht ? "deleted records only" : "no records");
        Buehne b({person(u"A"_s), person(u"B"_s)});
        QByteArray bytes = lies(b.tabelle());
        if (geloescht) {
            const int kopf = uchar(bytes[8]) + 256 * uchar(bytes[9]);
            const int satz = uchar(bytes[10]) + 256 * uchar(bytes[11]);
            bytes[kopf] = bytes[kopf + satz] = '*';
        } else {
            bytes = vervielfacht(bytes, 0);
        }
        schreibe(b.tabelle(), bytes);
        b.zeige();
        b.suche(u"Alpha"_s);
        EXPECT_THAT(Buehne::ids(b.treffer()), IsEmpty());
        EXPECT_THAT(Buehne::ids(b.mitglieder()), ElementsAre(u"A"_s));
        EXPECT_THAT(b.tisch.boxTexts(), IsEmpty());
    }
}

TEST(Tabelle, OfTwoHundredThousandContactsIsSearched)
{
    Buehne b({person(u"A"_s), person(u"Z"_s, {}, {}, u"Zeta Handel"_s)});
    schreibe(b.tabelle(), vervielfacht(lies(b.tabelle()), 200'000));
    b.zeige();
    b.suche(u"zeta"_s);
    EXPECT_THAT(Buehne::ids(b.treffer()), ElementsAre(u"Z"_s));
    b.suche(u"alpha"_s); // all but one
    EXPECT_EQ(b.tisch.boxes.size(), 1U);
    EXPECT_EQ(b.treffer().Anzahl(), 0) << "the first fifty are the current contact again and again";
}

TEST(Tabelle, ThatCannotBeAskedEndsTheProgram)
{
    // clang-format off
    struct Row { const char *name; std::function<void(Buehne &)> fall; QString begriff; QString anfang; bool abfrage; };
    const Row rows[] = {
        {"an apostrophe",    [](Buehne &) {},                                                       u"O'N"_s,
         u"Es ist ein Fehler beim Zugriff"_s, true},
        {"no such column",   [](Buehne &b) { b.haupt().konfiguration.IdTypName = u"PCK_ART"_s; },    u"Alph"_s,
         u"Es ist ein Fehler beim Zugriff"_s, true},
        {"cut off",          [](Buehne &b) { schreibe(b.tabelle(), lies(b.tabelle()).left(50)); },   u"Alph"_s,
         u"Es ist ein Fehler beim Zugriff"_s, true},
        {"no table",         [](Buehne &b) { QFile::remove(b.tabelle()); },                          u"Alph"_s,
         u"Es ist ein Fehler beim Zugriff"_s, true},
        {"no folder",        [](Buehne &b) { b.act.databasePath = u"/weg/KONTAKTE.DBF"_s; },         u"Alph"_s,
         u"Konnte Ihre ACT!-Datenbank nicht öffnen !"_s, false},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Buehne b({person(u"A"_s), person(u"B"_s)});
        b.zeige();
        row.fall(b);
        b.suche(row.begriff);
        ASSERT_EQ(b.tisch.boxes.size(), 1U);
        EXPECT_TRUE(b.tisch.boxes[0].text.startsWith(row.anfang)) << b.tisch.boxes[0].text.toStdString();
        EXPECT_EQ(b.tisch.clipboard.startsWith(u"SELECT [KONTAKTE].UNIQUE_ID,"_s), row.abfrage);
        EXPECT_TRUE(b.haupt().beendet());
        EXPECT_THAT(b.act.callsOf(u"Resize"_s), ElementsAre(u"Resize(800, 600)"_s));
        EXPECT_TRUE(b.fenster().isHidden());
        EXPECT_TRUE(b.haupt().Status().isHidden());
    }
}
