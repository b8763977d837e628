// What is left of databases that one process opens and closes again and again: no handle, and no file beside them.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/dao/DaoError.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"

using namespace Qt::StringLiterals;

namespace {

qsizetype offeneGriffe()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

TEST(Griffe, NothingIsLeftOfDatabasesThatWereOpen)
{
    const QTemporaryDir ordner;
    const auto engine = dao::makeEmbeddedEngine();
    const QString mandant = ordner.filePath(u"Muster.PCK"_s);
    const QString brief = ordner.filePath(u"Brief.PCK"_s);
    const QString mapping = beispiel::erzeugeMapping(*engine, ordner.path());
    beispiel::erzeugeKontakttabelle(*engine, ordner.path(), beispiel::firmengruppe());
    beispiel::erzeugeMandant(*engine, mandant, u"geheim"_s);
    ASSERT_TRUE(QFile::copy(QStringLiteral(VELDRAK_BILDER) + u"/icons/veldrak.ico"_s, brief));

    const auto oeffne
        = [&](const QString &pfad, const QString &connect) { return engine->OpenDatabase(pfad, 0, false, connect); };
    const auto scheitert
        = [](int nummer) { return testing::Throws<dao::DaoError>(testing::Property(&dao::DaoError::Number, nummer)); };
    const auto durchgang = [&](int nr) {
        beispiel::fuegeKontenHinzu(*engine, ordner.filePath(u"Ohne.PCK"_s), {u"D%1"_s.arg(nr, 6, 10, QChar(u'0'))});
        beispiel::fuehreAus(*engine, mandant, {u"UPDATE sPersKto SET PersKtoName='x'"_s}, u"geheim"_s);
        EXPECT_FALSE(oeffne(ordner.path(), u"FoxPro 2.6;"_s)->OpenRecordset(u"SELECT * FROM KONTAKTE"_s)->Eof());
        EXPECT_THAT([&] { oeffne(mandant, u";PWD=falsch"_s); }, scheitert(3031));
        EXPECT_THAT([&] { oeffne(brief, {}); }, scheitert(3343));
        EXPECT_THAT([&] { oeffne(ordner.filePath(u"fehlt.PCK"_s), {}); }, scheitert(3024));
        const auto offen = oeffne(mandant, u";PWD=geheim"_s)->OpenRecordset(u"sPersKto"_s); // outlives its database
    };
    beispiel::erzeugeMandant(*engine, ordner.filePath(u"Ohne.PCK"_s));
    durchgang(0);
    const qsizetype griffe = offeneGriffe();
    const QStringList dateien = QDir(ordner.path()).entryList(QDir::Files | QDir::Hidden);
    EXPECT_THAT(dateien, testing::Not(testing::Contains(u"Ohne.ldb"_s)));
    for (int nr = 1; nr <= 200; ++nr)
        durchgang(nr);
    EXPECT_EQ(offeneGriffe(), griffe);
    EXPECT_EQ(QDir(ordner.path()).entryList(QDir::Files | QDir::Hidden), dateien);
}
