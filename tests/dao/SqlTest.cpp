// The statements that the program sends, and what Jet's SQL means.
#include <gtest/gtest.h>

#include <QLocale>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

class Sql : public testing::Test
{
protected:
    Sql()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        t.run({
            u"CREATE TABLE sPersKto (PersKtoNummer TEXT(10) NOT NULL CONSTRAINT PrimaryKey PRIMARY KEY, PersKtoArt "
            u"SHORT, PersKtoName TEXT(50), PersKtoRabatt DOUBLE, PersKtoAktiv YESNO DEFAULT Yes, PersKtoAenderDatum "
            u"DATETIME)",
            u"CREATE INDEX iArt ON sPersKto (PersKtoArt, PersKtoNummer)",
            u"CREATE TABLE sPersKom (PersKommNummer TEXT(10), PersKommTyp SHORT)",
            u"CREATE TABLE Felder (ID LONG, Act_FeldName TEXT(40), Sync_H YESNO, Datentyp TEXT(20))",
            u"INSERT INTO Felder VALUES (1, 'COMPANY', Yes, 'String')",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('D010000',68);",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt,PersKtoName,PersKtoRabatt,PersKtoAktiv)"
            u" VALUES ('D010001',68,'Bäckerei O''Neill',2.5,False)",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt,PersKtoAenderDatum) VALUES ('K000001',75,#12/24/2003#)",
        });
    }

    TestEngine t;
};

} // namespace

// The program's own statements run in the tests of the parts that send them.
TEST_F(Sql, ChangesRows)
{
    EXPECT_EQ(t.db->Execute(u"UPDATE sPersKto SET PersKtoArt=1 WHERE PersKtoNummer='fehlt'"_s), 0);
    EXPECT_EQ(t.db->Execute(u"update [sPersKto] set sPersKto.PersKtoArt = PersKtoArt + 1, [PersKtoName] = Null"_s), 3);
    EXPECT_EQ(t.rows(u"SELECT PersKtoArt,PersKtoName FROM sPersKto"_s), u"69,-;69,-;76,-"_s);
    EXPECT_EQ(t.db->Execute(u"DELETE * FROM sPersKto WHERE PersKtoArt = 69"_s), 2);
    EXPECT_EQ(t.db->Execute(u"INSERT INTO sPersKom (PersKommNummer) SELECT PersKtoNummer FROM sPersKto"_s), 1);
    EXPECT_EQ(t.rows(u"SELECT PersKommNummer FROM sPersKom WHERE PersKommTyp IS NULL"_s), u"K000001"_s);
}

TEST_F(Sql, MeansWhatJetMeans)
{
    const std::pair<QString, QString> conditions[] = {
        {u"Not PersKtoAktiv"_s, u"D010001"_s},
        {u"PersKtoAktiv = No"_s, u"D010001"_s},
        {u"PersKtoName = \"bäckerei o'neill\""_s, u"D010001"_s},
        {u"PersKtoName < 'Bb'"_s, u"D010001"_s},
        {u"Left(PersKtoName, 3) = 'BÄC'"_s, u"D010001"_s},
        {u"Mid(PersKtoNummer,2,3)='010' And Len(PersKtoName)>3"_s, u"D010001"_s},
        {u"UCase(PersKtoName) Like 'BÄCK*' AND Right(PersKtoNummer,1)='1'"_s, u"D010001"_s},
        {u"PersKtoAenderDatum = #24/12/2003#"_s, u"K000001"_s},
        {u"PersKtoAenderDatum < #2003-12-25 10:30:00#"_s, u"K000001"_s},
        {u"PersKtoAenderDatum <= Now() And Date() > PersKtoAenderDatum"_s, u"K000001"_s},
        {u"PersKtoRabatt = 5/2"_s, u"D010001"_s},
        {u"sPersKto!PersKtoArt <> 68"_s, u"K000001"_s},
        {u"PersKtoNummer In (SELECT PersKtoNummer FROM sPersKto WHERE PersKtoArt = 75)"_s, u"K000001"_s},
    };
    for (const auto &[condition, expected] : conditions) {
        const QString sql = u"SELECT PersKtoNummer FROM sPersKto WHERE "_s + condition;
        EXPECT_EQ(t.rows(sql), expected) << condition.toStdString();
    }
    EXPECT_EQ(t.rows(u"SELECT Count(*) AS Anzahl, PersKtoArt FROM sPersKto GROUP BY PersKtoArt"_s), u"2,68;1,75"_s);
    EXPECT_EQ(t.rows(u"SELECT TOP 1 PersKtoNummer AS Nr FROM sPersKto AS k WHERE k.PersKtoArt=68 ORDER BY Nr DESC;"_s),
              u"D010001"_s);
    EXPECT_EQ(t.rows(u"SELECT DISTINCT PersKtoArt FROM sPersKto ORDER BY 1"_s), u"68;75"_s);
    EXPECT_EQ(t.rows(u" [felder] "_s), u"1,COMPANY,Wahr,String"_s);
    EXPECT_EQ(t.rows(u"SELECT PersKtoRabatt, PersKtoAktiv, PersKtoAenderDatum FROM sPersKto"_s),
              u"-,Wahr,-;2,5,Falsch,-;-,Wahr,24.12.2003"_s);
}

TEST_F(Sql, ComparesTextsExactlyInDBaseTables)
{
    for (const QString &statement : {u"CREATE TABLE K (NAME CHAR(20))"_s, u"INSERT INTO K VALUES ('Müller')"_s,
                                     u"INSERT INTO K VALUES ('MÜLLER')"_s})
        t.exact->Execute(statement);
    t.db = t.exact;
    EXPECT_EQ(t.rows(u"SELECT NAME FROM K WHERE NAME = 'Müller'"_s), u"Müller"_s);
    EXPECT_EQ(t.rows(u"SELECT [K].NAME FROM [K] WHERE ([K].Name Like '*[L][L]*')"_s), u"MÜLLER"_s);
    EXPECT_EQ(t.rows(u"SELECT NAME FROM K ORDER BY NAME"_s), u"MÜLLER;Müller"_s);
}

TEST_F(Sql, SaysWhatIsWrong)
{
    struct Row {
        QString sql;
        int number;
        QString named; // what the description mentions
    };
    // clang-format off
    const Row queries[] = {
        {u"Fehlt"_s, 3078, u"Fehlt"_s},              {u"SELECT x FROM Fehlt"_s, 3078, u"Fehlt"_s},
        {u"SELECT rowid FROM Felder"_s, 3061, u"rowid"_s},
        {u"SELECT Fehlt FROM Felder"_s, 3061, u"1 Parameter wurde"_s},
        {u"SELECT 1 FROM Felder WHERE ID=abc"_s, 3061, u"abc"_s},
        {u"SELECT 1 FROM Felder WHERE ID ="_s, 3075, u"Ende"_s},
        {u"SELECT 1 FROM Felder WHERE ID == 1"_s, 3075, u"="_s}, {u"SELECT ID FROM Felder WHERE 1 % 2"_s, 3075, u"%"_s},
        {u"SELECT ID FROM Felder WHERE Datentyp = 'O'Neill'"_s, 3075, u"'"_s},
        {u"SELECT ID FROM Felder WHERE Act_FeldName = #99/99/2003#"_s, 3075, u"99/99"_s},
        {u"SELECT FROM Felder"_s, 3141, u"FROM"_s},  {u"SELECT ID Felder WHERE"_s, 3075, u"Ende"_s},
        {u"SELECT [ID FROM Felder"_s, 3126, u"ID FROM"_s}, {u"SELECT ID FROM Felder; SELECT 1"_s, 3142, u"SELECT 1"_s},
        {u"SELECT ID FROM Felder WHERE ID = '1'"_s, 3464, u"ID"_s}, {u"SELECT Foo(ID) FROM Felder"_s, 3085, u"Foo"_s},
        {u"SELECT ID FROM Felder WHERE Datentyp > 5"_s, 3464, u"Datentyp"_s},
        {u"SELECT Left(Datentyp) FROM Felder"_s, 3075, u"left"_s}, {u"PRAGMA encoding"_s, 3078, u"PRAGMA"_s},
        {u"SELECT a.ID, ID FROM Felder AS a, Felder AS b"_s, 3079, u"ID"_s},
        {u"SELECT Datentyp & 'x' FROM Felder"_s, 3251, u"&"_s}, {u"UPDATE Felder SET ID = 1"_s, 3219, u"Ungültig"_s},
        {u"SELECT Datentyp + Act_FeldName FROM Felder"_s, 3251, u"+"_s},
    };
    const Row actions[] = {
        {u"SELECT ID FROM Felder"_s, 3065, u"Auswahlabfrage"_s}, {u"PRAGMA encoding"_s, 3129, u"PRAGMA"_s},
        {u"ALTER TABLE Felder ADD COLUMN x LONG"_s, 3293, u"ALTER"_s}, {u"DELETE sPersKto"_s, 3131, u"Ende"_s},
        {u"UPDATE sPersKto SET PersKtoRabatt=5,5 WHERE PersKtoNummer='D010000'"_s, 3144, u"5"_s},
        {u"INSERT INTO sPersKto (Fehlt) VALUES (1)"_s, 3127, u"Fehlt"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('x')"_s, 3346, u"Anzahl"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer VALUES ('x')"_s, 3134, u"VALUES"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('d010000',68)"_s, 3022, u"doppelte"_s},
        {u"INSERT INTO sPersKto (PersKtoArt) VALUES (68)"_s, 3314, u"PersKtoNummer"_s},
    };
    // clang-format on
    const auto check = [](const Row &row, const auto &error) {
        SCOPED_TRACE(row.sql.toStdString());
        QString description;
        EXPECT_EQ(error(row.sql, &description), row.number);
        EXPECT_TRUE(description.contains(row.named)) << description.toStdString();
    };
    for (const auto &row : queries)
        check(row, std::bind_front(&TestEngine::openError, &t));
    for (const auto &row : actions)
        check(row, std::bind_front(&TestEngine::executeError, &t));
}

TEST_F(Sql, SeesTablesAsTheyAreNow)
{
    EXPECT_EQ(t.rows(u"SELECT * FROM sPersKom"_s), QString());
    t.run({u"DROP TABLE sPersKom"});
    EXPECT_EQ(t.openError(u"SELECT * FROM sPersKom"_s), 3078);
    t.run({u"CREATE TABLE SPERSKOM (a LONG, Übung TEXT(5))", u"INSERT INTO sPersKom VALUES (7, 'x')"});
    EXPECT_EQ(t.rows(u"SELECT * FROM sPersKom WHERE ÜBUNG = 'X'"_s), u"7,x"_s);

    const auto other = t.otherProgram();
    const auto scope = other->beginWrite();
    other->dropTable(u"Felder"_s);
    other->createTable({u"Felder"_s, {{u"Neu"_s, storage::Type::Long}}});
    scope->commit();
    EXPECT_EQ(t.openError(u"SELECT ID FROM Felder"_s), 3061);
    EXPECT_EQ(t.rows(u"SELECT Neu FROM Felder"_s), QString());
}
