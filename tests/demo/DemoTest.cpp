// The sample data are what the guided tour and a newcomer's first start rely on; read here through the port alone.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "demo/Clients.h"
#include "demo/Contacts.h"
#include "demo/DemoFolder.h"
#include "demo/Report.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

class DemoData : public testing::Test
{
protected:
    DemoData() { folder.create(*engine, false); }

    QStringList fromContacts(const QString &query) { return beispiel::zeilen(*engine, folder.contacts(), query); }
    QStringList fromMapping(const QString &query)
    {
        return beispiel::zeilen(*engine, folder.path + u"/veldrak.piz"_s, query, coding::mappingZugriff());
    }
    QStringList fromClient(const demo::Client &client, const QString &query)
    {
        return beispiel::zeilen(*engine, folder.clients() + u'/' + client.file.toString(), query,
                                client.password.toString());
    }

    QTemporaryDir place;
    std::unique_ptr<dao::DBEngine> engine = dao::makeEmbeddedEngine();
    demo::DemoFolder folder{place.filePath(u"Daten ä"_s)};
};

TEST_F(DemoData, ContactsComeFromManyCompaniesAndInBothPhoneForms)
{
    EXPECT_GE(fromContacts(u"SELECT UNIQUE_ID FROM KONTAKTE"_s).size(), 60);
    EXPECT_GE(fromContacts(u"SELECT DISTINCT COMPANY FROM KONTAKTE"_s).size(), 20);
    const std::pair<QString, QString> expected[] = {
        {u"SELECT TELEFON FROM KONTAKTE WHERE UNIQUE_ID = 'NORDWIN-0001'"_s, u"49|40|@@@@DD66969300"_s},
        {u"SELECT TELEFON FROM KONTAKTE WHERE UNIQUE_ID = 'MUELLER-0003'"_s, u"040 / 66969-114"_s},
        {u"SELECT COMPANY FROM KONTAKTE WHERE CONTACT = 'Sean O''Connor'"_s, u"Kelly & O'Connor Import"_s},
        {u"SELECT NOTES FROM KONTAKTE WHERE UNIQUE_ID = 'MUELLER-0001'"_s,
         u"Geschäftsführer; am besten vormittags anrufen."_s},
        {u"SELECT UNIQUE_ID FROM KONTAKTE WHERE PCK_NUMMER = 'D010003' AND PCK_TYP = 'H'"_s, // two main contacts
         u"JUERGEN-0001, JUERGEN-0002"_s},
        {u"SELECT UNIQUE_ID FROM KONTAKTE WHERE PCK_NUMMER = 'D010001' AND PCK_TYP = 'H'"_s, u"NORDWIN-0001"_s},
    };
    for (const auto &[query, values] : expected)
        EXPECT_EQ(fromContacts(query).join(u", "_s), values) << query.toStdString();
}

TEST_F(DemoData, ClientsHaveAllKindsOfAccountsAndListsAndThoseOfTheContacts)
{
    for (const demo::Client &client : demo::clients()) {
        SCOPED_TRACE(client.file.toString().toStdString());
        EXPECT_EQ(fromClient(client, u"SELECT DISTINCT PersKtoArt FROM sPersKto ORDER BY PersKtoArt"_s),
                  (QStringList{u"68"_s, u"75"_s, u"77"_s, u"82"_s}));
        EXPECT_FALSE(fromClient(client, u"SELECT PersKommNr FROM sPersKom"_s).isEmpty());
        EXPECT_FALSE(fromClient(client, u"SELECT SchlbezNr FROM sSchlbez WHERE SchlbezTyp = 20"_s).isEmpty());
        EXPECT_EQ(fromClient(client, u"SELECT FKAbfPreisGrp1 FROM SABFKons"_s).size(), 1);
        EXPECT_GE(fromClient(client, u"SELECT WhrgNr FROM Waehrung"_s).size(), 2);
        const auto readCards = [&] { fromClient(client, u"SELECT PersKtoKundenkarte FROM sPersKto"_s); };
        if (client.hasCustomerCards)
            EXPECT_NO_THROW(readCards());
        else
            EXPECT_THROW(readCards(), dao::DaoError);

        const QStringList linked
            = fromContacts(u"SELECT DISTINCT PCK_NUMMER FROM KONTAKTE WHERE PCK_MAND = '%1'"_s.arg(client.file));
        EXPECT_FALSE(linked.isEmpty());
        for (const QString &number : linked) {
            EXPECT_EQ(fromClient(client, u"SELECT PersKtoName FROM sPersKto WHERE PersKtoNummer = '%1'"_s.arg(number)),
                      fromContacts(u"SELECT DISTINCT COMPANY FROM KONTAKTE WHERE PCK_NUMMER = '%1'"_s.arg(number)));
        }
    }
    EXPECT_EQ(fromClient(demo::clients()[2], u"SELECT WhrgName FROM Waehrung ORDER BY WhrgNr"_s).indexOf(u"Euro"_s), 1);
}

TEST_F(DemoData, MappingNumbersItsFieldsWithoutGaps)
{
    const QStringList numbers = fromMapping(u"SELECT ID FROM Felder ORDER BY ID"_s);
    ASSERT_GE(numbers.size(), 20);
    for (qsizetype i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(numbers[i], QString::number(i + 1));
    EXPECT_EQ(fromMapping(u"SELECT Sync_FeldName FROM Felder WHERE ID = 1"_s), QStringList{u"Name"_s})
        << "several main contacts are listed by it";
    EXPECT_EQ(fromMapping(u"SELECT Act_FeldID FROM Felder WHERE Sync_FeldName = 'name'"_s), QStringList{u"26"_s});
}

TEST_F(DemoData, TemplateHasEveryColumnButTheCustomerCard)
{
    const auto columns = [this](const QString &path, const QString &password) {
        const auto database = engine->OpenDatabase(path, false, false, u";PWD="_s + password);
        const auto rows = database->OpenRecordset(u"SELECT * FROM sPersKto"_s);
        QStringList names;
        for (int i = 0; i < rows->FieldCount(); ++i)
            names += rows->Fields(i).Name();
        return names;
    };
    const QStringList known = columns(folder.path + u"/veldrak.piz"_s, coding::mappingZugriff());
    for (const demo::Client &client : demo::clients()) {
        QStringList has = columns(folder.clients() + u'/' + client.file.toString(), client.password.toString());
        EXPECT_EQ(has.removeAll(u"PersKtoKundenkarte"_s), client.hasCustomerCards ? 1 : 0);
        EXPECT_EQ(has, known) << client.file.toString().toStdString();
    }
    EXPECT_EQ(fromMapping(u"SELECT PersKtoGruppe FROM sPersKto WHERE PersKtoID IS NULL AND PersKtoNummer IS NULL "
                          "AND PersKtoArt IS NULL"_s),
              QStringList{u"ACT"_s});
}

TEST_F(DemoData, ReportShowsContactAndAccountOnce)
{
    const QString report = demo::report(*engine, folder, {u"NORDWIN-0001"_s, u"NORDWIN-0002"_s});
    EXPECT_TRUE(report.contains(u"  CONTACT = Fiete Ahlers\n"_s));
    EXPECT_EQ(report.count(u"  PersKtoName = Nordwind Reederei AG\n"_s), 1);
    EXPECT_TRUE(report.contains(u"  D010001 | 3 | Mobil | +49 171 3920030 | Fiete Ahlers | 0\n"_s));
}

TEST_F(DemoData, ExistingFoldersAreOnlyReplacedWhenAskedAndKnown)
{
    const QString changed = folder.path + u"/ACT/KONTAKTE.felder"_s;
    ASSERT_TRUE(QFile(changed).resize(0));
    EXPECT_THROW(folder.create(*engine, false), RunTimeError);
    EXPECT_EQ(QFileInfo(changed).size(), 0);
    for (const QString &left : {folder.contacts() + u"/Tabellen.vjn"_s, folder.clients() + u"/Elbtal.ldb"_s})
        ASSERT_TRUE(QFile::copy(changed, left)); // of a program that was killed
    folder.create(*engine, true);
    EXPECT_GT(QFileInfo(changed).size(), 0);

    const QString foreign = folder.clients() + u"/Eigen.PCK"_s;
    ASSERT_TRUE(QFile::copy(folder.clients() + u"/Elbtal.PCK"_s, foreign));
    EXPECT_THROW(folder.create(*engine, true), RunTimeError);
    EXPECT_TRUE(QFile::exists(foreign));

    EXPECT_THROW(demo::DemoFolder(place.path()).create(*engine, true), RunTimeError); // has something else in it
    EXPECT_THROW(demo::DemoFolder(place.filePath(u"Ole's"_s)).create(*engine, false), RunTimeError);
    EXPECT_EQ(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"Daten ä"_s});
}

} // namespace
