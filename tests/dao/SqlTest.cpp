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
            u"SHORT,"
            u" PersKtoName TEXT(50), PersKtoLKZ TEXT(3) DEFAULT \"D\", PersKtoRabatt DOUBLE, PersKtoLimit CURRENCY,"
            u" PersKtoAktiv YESNO DEFAULT Yes, PersKtoAenderDatum DATETIME, PersKtoBemerkung MEMO)",
            u"CREATE INDEX iArt ON sPersKto (PersKtoArt, PersKtoNummer)",
            u"CREATE TABLE sPersKom (PersKommNummer TEXT(10), PersKommLfdNr SHORT, PersKommName TEXT(30),"
            u" PersKommNr TEXT(60), PersKommAnsprech TEXT(50), PersKommTyp SHORT)",
            u"CREATE TABLE Felder (ID LONG, Act_FeldName TEXT(40), PCK_FeldName TEXT(40), Sync_FeldName TEXT(40),"
            u" Sync_H YESNO, Datentyp TEXT(20))",
            u"INSERT INTO Felder VALUES (1, 'COMPANY', 'PersKtoName', 'Firma', Yes, 'String')",
            u"INSERT INTO Felder VALUES (2, 'CONTACT', 'PersKtoAnsprech', 'Name', No, 'String')",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('D010000',68);",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt,PersKtoName,PersKtoRabatt,PersKtoLimit,PersKtoAktiv)"
            u" VALUES ('D010001',68,'Bäckerei O''Neill',2.5,12.3456,False)",
            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt,PersKtoAenderDatum) VALUES ('K000001',75,#12/24/2003#)",
        });
    }

    TestEngine t;
};

} // namespace

TEST_F(Sql, RunsTheProgramsQueries)
{
    const std::pair<QString, QString> queries[] = {
        {u"SELECT PCK_FeldName FROM Felder WHERE ID = 2"_s, u"PersKtoAnsprech"_s},
        {u"SELECT Sync_H FROM Felder WHERE ID = 1"_s, u"Wahr"_s},
        {u"SELECT ID FROM Felder WHERE Sync_Feldname = 'FIRMA'"_s, u"1"_s},
        {u"SELECT Act_FeldName FROM Felder  WHERE PCK_Feldname = 'perskToname' OR Sync_Feldname = 'x'"_s, u"COMPANY"_s},
        {u"SELECT ID FROM Felder WHERE ID = 99"_s, u""_s},
        {u"SELECT PersKtoNummer  FROM sPersKto  WHERE PersKtoArt=68  AND PersKtoNummer >= 'D000000'"
         "  ORDER BY PersKtoNummer DESC"_s,
         u"D010001;D010000"_s},
        {u"Select PersKtoNummer FROM sPersKto WHERE PersKtoNummer = 'd010001'"_s, u"D010001"_s},
        {u"Select * from sPersKto where PersKtoNummer='D010000'"_s, u"D010000,68,-,D,-,-,Wahr,-,-"_s},
        {u"SELECT PersKommLfdNr FROM sPersKom WHERE PersKommNummer='D010000' ORDER BY PersKommLfdNr DESC"_s, u""_s},
        {u"SELECT [Felder].ID,[Felder].Datentyp,[Felder].sync_feldname FROM [Felder]  WHERE ("
         "[Felder].Act_FeldName Like '*[Cc][Oo][Mm]*' Or [Felder].Sync_FeldName Like '*[Xx]*' Or ("
         "[Felder].PCK_FeldName = 'a'  AND [Felder].Datentyp = '' ))"_s,
         u"1,String,Firma"_s},
        {u"Felder"_s, u"1,COMPANY,PersKtoName,Firma,Wahr,String;2,CONTACT,PersKtoAnsprech,Name,Falsch,String"_s},
        {u" [felder] "_s, u"1,COMPANY,PersKtoName,Firma,Wahr,String;2,CONTACT,PersKtoAnsprech,Name,Falsch,String"_s},
    };
    for (const auto &[sql, expected] : queries) {
        SCOPED_TRACE(sql.toStdString());
        EXPECT_EQ(t.rows(sql), expected);
    }
}

TEST_F(Sql, RunsTheProgramsWrites)
{
    EXPECT_EQ(t.db->Execute(u"INSERT INTO sPersKom (PersKommNummer,PersKommLfdNr,PersKommName,PersKommNr,"
                            "PersKommAnsprech,PersKommTyp) VALUES ('D010000',1,'Telefon','+49 40 1','Jürgen',0);"_s),
              1);
    EXPECT_EQ(t.rows(u"sPersKom"_s), u"D010000,1,Telefon,+49 40 1,Jürgen,0"_s);
    EXPECT_EQ(t.db->Execute(u"UPDATE sPersKto SET PersKtoName='O''Neill & Töchter' WHERE PersKtoNummer='D010000'"_s),
              1);
    EXPECT_EQ(t.db->Execute(u"UPDATE SPersKto SET PersKtoRabatt=5 WHERE PersktoNummer='d010000'"_s), 1);
    EXPECT_EQ(t.rows(u"SELECT PersKtoName,PersKtoRabatt FROM sPersKto WHERE PersKtoNummer='D010000'"_s),
              u"O'Neill & Töchter,5"_s);
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
        {u"PersKtoAktiv = True"_s, u"D010000;K000001"_s},
        {u"PersKtoAktiv"_s, u"D010000;K000001"_s},
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
        {u"PersKtoLimit = 12.3456"_s, u"D010001"_s},
        {u"PersKtoName Is Null"_s, u"D010000;K000001"_s},
        {u"PersKtoArt In (75, 77) Or PersKtoArt Between 1 And 10"_s, u"K000001"_s},
        {u"sPersKto!PersKtoArt <> 68"_s, u"K000001"_s},
        {u"PersKtoNummer In (SELECT PersKtoNummer FROM sPersKto WHERE PersKtoArt = 75)"_s, u"K000001"_s},
    };
    for (const auto &[condition, expected] : conditions) {
        SCOPED_TRACE(condition.toStdString());
        EXPECT_EQ(t.rows(u"SELECT PersKtoNummer FROM sPersKto WHERE "_s + condition), expected);
    }
    EXPECT_EQ(t.rows(u"SELECT Count(*) AS Anzahl, PersKtoArt FROM sPersKto GROUP BY PersKtoArt"_s), u"2,68;1,75"_s);
    EXPECT_EQ(t.rows(u"SELECT TOP 1 PersKtoNummer AS Nr FROM sPersKto AS k WHERE k.PersKtoArt=68 ORDER BY Nr DESC;"_s),
              u"D010001"_s);
    EXPECT_EQ(t.rows(u"SELECT DISTINCT PersKtoArt FROM sPersKto ORDER BY 1"_s), u"68;75"_s);
    EXPECT_EQ(t.rows(u"SELECT a.PersKtoNummer, b.PersKtoAktiv FROM sPersKto AS a INNER JOIN sPersKto AS b ON "
                     "a.PersKtoNummer = b.PersKtoNummer WHERE b.PersKtoRabatt > 1"_s),
              u"D010001,Falsch"_s);
    EXPECT_EQ(t.rows(u"SELECT TOP 2 PersKtoNummer FROM sPersKto ORDER BY PersKtoArt DESC, PersKtoNummer DESC"_s),
              u"K000001;D010001"_s);
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
    const Row queries[] = {
        {u"SELECT x FROM Fehlt"_s, 3078, u"Fehlt"_s},
        {u"Fehlt"_s, 3078, u"Fehlt"_s},
        {u"SELECT Fehlt FROM Felder"_s, 3061, u"1 Parameter wurden erwartet"_s},
        {u"SELECT ID FROM Felder WHERE ID = abc"_s, 3061, u"abc"_s},
        {u"SELECT rowid FROM Felder"_s, 3061, u"rowid"_s},
        {u"SELECT ID FROM Felder WHERE Sync_Feldname = 'O'Neill'"_s, 3075, u"'"_s},
        {u"SELECT ID FROM Felder WHERE Sync_Feldname = 'a'b'c'"_s, 3075, u"b"_s},
        {u"SELECT ID FROM Felder WHERE ID = "_s, 3075, u"Ende"_s},
        {u"SELECT ID FROM Felder WHERE ID == 1"_s, 3075, u"="_s},
        {u"SELECT ID FROM Felder WHERE ID = 1 % 2"_s, 3075, u"%"_s},
        {u"SELECT ID FROM Felder WHERE Act_FeldName = #99/99/2003#"_s, 3075, u"99/99"_s},
        {u"SELECT FROM Felder"_s, 3141, u"FROM"_s},
        {u"SELECT ID Felder WHERE"_s, 3075, u"Ende"_s},
        {u"SELECT [ID FROM Felder"_s, 3126, u"ID FROM"_s},
        {u"SELECT ID FROM Felder; SELECT 1"_s, 3142, u"SELECT 1"_s},
        {u"SELECT ID FROM Felder WHERE ID = '1'"_s, 3464, u"ID"_s},
        {u"SELECT ID FROM Felder WHERE Datentyp > 5"_s, 3464, u"Datentyp"_s},
        {u"SELECT Foo(ID) FROM Felder"_s, 3085, u"Foo"_s},
        {u"SELECT Left(Datentyp) FROM Felder"_s, 3075, u"left"_s},
        {u"SELECT a.ID, ID FROM Felder AS a, Felder AS b"_s, 3079, u"ID"_s},
        {u"SELECT Datentyp & 'x' FROM Felder"_s, 3251, u"&"_s},
        {u"SELECT Datentyp + Act_FeldName FROM Felder"_s, 3251, u"+"_s},
        {u"UPDATE Felder SET ID = 1"_s, 3219, u"Ungültig"_s},
        {u"PRAGMA encoding"_s, 3078, u"PRAGMA"_s},
    };
    const Row actions[] = {
        {u"SELECT ID FROM Felder"_s, 3065, u"Auswahlabfrage"_s},
        {u"PRAGMA encoding"_s, 3129, u"PRAGMA"_s},
        {u"ALTER TABLE Felder ADD COLUMN x LONG"_s, 3293, u"ALTER"_s},
        {u"UPDATE sPersKto SET PersKtoRabatt=5,5 WHERE PersKtoNummer='D010000'"_s, 3144, u"5"_s},
        {u"UPDATE sPersKto SET Fehlt=1"_s, 3061, u"Fehlt"_s},
        {u"UPDATE sPersKto SET PersKtoArt=1 WHERE PersKtoNummer="_s, 3075, u"Ende"_s},
        {u"INSERT INTO sPersKto (Fehlt) VALUES (1)"_s, 3127, u"Fehlt"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('x')"_s, 3346, u"Anzahl"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer VALUES ('x')"_s, 3134, u"VALUES"_s},
        {u"INSERT INTO sPersKom (PersKommName) VALUES ('O'Neill')"_s, 3075, u"'"_s},
        {u"DELETE FROM sPersKto WHERE"_s, 3075, u"Ende"_s},
        {u"DELETE sPersKto"_s, 3131, u"Ende"_s},
        {u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('d010000',68)"_s, 3022, u"doppelte"_s},
        {u"INSERT INTO sPersKto (PersKtoArt) VALUES (68)"_s, 3314, u"PersKtoNummer"_s},
        {u"UPDATE sPersKto SET PersKtoArt='vier'"_s, 3421, u"PersKtoArt"_s},
    };
    for (const auto &row : queries) {
        SCOPED_TRACE(row.sql.toStdString());
        QString description;
        EXPECT_EQ(t.openError(row.sql, &description), row.number);
        EXPECT_TRUE(description.contains(row.named)) << description.toStdString();
    }
    for (const auto &row : actions) {
        SCOPED_TRACE(row.sql.toStdString());
        QString description;
        EXPECT_EQ(t.executeError(row.sql, &description), row.number);
        EXPECT_TRUE(description.contains(row.named)) << description.toStdString();
    }
}

TEST_F(Sql, LeavesNothingOfAFailedStatement)
{
    const QString before = t.rows(u"sPersKto"_s);
    EXPECT_EQ(t.executeError(u"UPDATE sPersKto SET PersKtoNummer='X'"_s), 3022) << "fails at the second row";
    EXPECT_EQ(t.rows(u"sPersKto"_s), before);
    EXPECT_EQ(t.executeError(u"INSERT INTO sPersKto (PersKtoNummer) SELECT Datentyp FROM Felder"_s), 3022);
    EXPECT_EQ(t.rows(u"sPersKto"_s), before);
    EXPECT_EQ(t.executeError(u"CREATE TABLE Neu (a LONG, CONSTRAINT f FOREIGN KEY (a) REFERENCES Fehlt)"_s), 3078);
    EXPECT_EQ(t.openError(u"Neu"_s), 3078);
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
