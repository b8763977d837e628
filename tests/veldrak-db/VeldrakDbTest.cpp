// The tool as its users call it.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tools/veldrak-db/Arguments.h"
#include "tools/veldrak-db/Json.h"
#include "tools/veldrak-db/Script.h"

using namespace Qt::StringLiterals;
using storage::Type;
using storage::Value;
using testing::HasSubstr;

namespace {

struct Result {
    int code;
    std::string data;
    std::string messages;
};

Result run(const QStringList &words, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(VELDRAK_DB), words);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished();
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

class VeldrakDb : public testing::TestWithParam<const char *>
{
protected:
    Result create(const QByteArray &script, const QStringList &more = {}) const
    {
        return run(QStringList{u"create"_s, file, u"--version"_s, QString::fromLatin1(GetParam())} + more, script);
    }

    QTemporaryDir m_folder{};
    QString file = m_folder.filePath(u"a.mdb"_s);
};

INSTANTIATE_TEST_SUITE_P(Versions, VeldrakDb, testing::Values("3", "4"),
                         [](const auto &version) { return "Jet" + std::string(version.param); });

constexpr auto script = "-- people; and more\n"
                        "CREATE TABLE Leute (Nr LONG, Name TEXT(20), Geld CURRENCY, Da YESNO);\n"
                        "CREATE UNIQUE INDEX iName ON Leute (Name DESC);\n"
                        "INSERT INTO Leute VALUES (1, 'Groß; \"klein\"', 12.5, True);\n"
                        "INSERT INTO Leute (Nr) VALUES (2)";

} // namespace

TEST_P(VeldrakDb, MakesAFileAndShowsIt)
{
    const Result made = create(script);
    ASSERT_EQ(made.code, 0) << made.messages;
    EXPECT_THAT(run({u"info"_s, file}).data,
                HasSubstr("{\"version\": \"Jet " + std::string(GetParam()) + "\", \"pages\": "));
    EXPECT_EQ(run({u"tables"_s, file}).data, "Leute\n");
    EXPECT_THAT(run({u"schema"_s, file, u"leute"_s}).data,
                testing::AllOf(HasSubstr(R"({"name": "Name", "type": "text", "size": 20, "required": false)"),
                               HasSubstr(R"({"name": "iName", "columns": [{"name": "Name", "order": "descending"}], )"
                                         R"("unique": true, "primary": false)")));
    EXPECT_EQ(run({u"dump"_s, file, u"Leute"_s}).data,
              "{\"Nr\": 1, \"Name\": \"Groß; \\\"klein\\\"\", \"Geld\": \"12.5000\", \"Da\": true}\n"
              "{\"Nr\": 2, \"Name\": null, \"Geld\": null, \"Da\": false}\n");
    EXPECT_EQ(run({u"sql"_s, file, u"SELECT Geld FROM Leute WHERE Nr = 1"_s}).data, "{\"Geld\": \"12.5000\"}\n");
    EXPECT_EQ(run({u"sql"_s, file, u"UPDATE Leute SET Geld = 3"_s}).data, "{\"rows\": 2}\n");
    EXPECT_EQ(run({u"check"_s, file}).data, "ok\n");
}

TEST_P(VeldrakDb, WantsThePassword)
{
    const Result made = create("Geheim!\nCREATE TABLE T (A LONG);", {u"--password-stdin"_s});
    ASSERT_EQ(made.code, 0) << made.messages;
    EXPECT_THAT(run({u"info"_s, file}).data, HasSubstr("\"password\": true"));
    const Result without = run({u"tables"_s, file});
    EXPECT_EQ(without.code, 2);
    EXPECT_EQ(without.data, "");
    EXPECT_THAT(without.messages, HasSubstr("Kennwort"));
    EXPECT_EQ(run({u"tables"_s, file, u"--password-stdin"_s}, "geheim!\n").code, 2);
    EXPECT_EQ(run({u"tables"_s, file, u"--password-stdin"_s}, "Geheim!\r\n").data, "T\n");
}

TEST_P(VeldrakDb, LeavesNothingOfAScriptThatFails)
{
    const Result made = create("CREATE TABLE T (A LONG); INSERT INTO U VALUES (1);");
    EXPECT_EQ(made.code, 2);
    EXPECT_THAT(made.messages, HasSubstr("Anweisung 2 des Skripts"));
    EXPECT_FALSE(QFile::exists(file));

    ASSERT_EQ(create("CREATE TABLE T (A LONG);").code, 0);
    EXPECT_EQ(create("CREATE TABLE U (A LONG);").code, 2) << "never over a file that exists";
    EXPECT_EQ(run({u"tables"_s, file}).data, "T\n");
}

TEST_P(VeldrakDb, LeavesNoHalfFileWhenItIsKilled)
{
    QByteArray longScript = "CREATE TABLE T (A LONG);";
    for (int i = 0; i < 20000; ++i)
        longScript += "INSERT INTO T VALUES (1);";
    QProcess process;
    process.start(QStringLiteral(VELDRAK_DB), {u"create"_s, file});
    process.write(longScript);
    process.closeWriteChannel();
    const auto begun = [&] { return !QDir(m_folder.path()).entryList(QDir::Files).filter(u"mdb"_s).isEmpty(); };
    while (!begun() && !process.waitForFinished(1)) { }
    process.kill();
    process.waitForFinished();
    ASSERT_EQ(process.exitStatus(), QProcess::CrashExit) << "too fast for this test";
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(create("CREATE TABLE T (A LONG);").code, 0);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList(u"a.mdb"_s));
}

TEST_P(VeldrakDb, TellsFaultsFromFailure)
{
    ASSERT_EQ(create(script).code, 0);
    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    const qint64 pageSize = *GetParam() == '3' ? 2048 : 4096;
    ASSERT_TRUE(damaged.seek(4 * pageSize + 8)); // a definition's length
    damaged.write("\xFF\xFF");
    damaged.close();
    const Result checked = run({u"check"_s, file});
    EXPECT_EQ(checked.code, 1);
    EXPECT_THAT(checked.data, HasSubstr("Seite 4"));
    EXPECT_EQ(run({u"check"_s, m_folder.filePath(u"b.mdb"_s)}).code, 2);
}

TEST(VeldrakDbTool, ReadsDbfFilesToo)
{
    const QTemporaryDir folder;
    const auto database = dao::makeEmbeddedEngine()->OpenDatabase(folder.path(), 0, false, u"FoxPro 2.6;"_s);
    database->Execute(u"CREATE TABLE LEUTE (NAME TEXT(10))"_s);
    database->Execute(u"INSERT INTO LEUTE VALUES ('Jürgen')"_s);
    const QString file = folder.filePath(u"LEUTE.DBF"_s);
    EXPECT_EQ(run({u"dump"_s, file}).data, "{\"NAME\": \"Jürgen\"}\n");
    EXPECT_EQ(run({u"sql"_s, file, u"SELECT NAME FROM LEUTE"_s}).data, "{\"NAME\": \"Jürgen\"}\n");
    EXPECT_EQ(run({u"check"_s, file}).data, "ok\n");
    EXPECT_THAT(run({u"info"_s, file}).data, HasSubstr("dBASE/FoxPro"));
    QFile table(file);
    ASSERT_TRUE(table.open(QIODevice::ReadWrite) && table.seek(4) && table.putChar('\0')); // the number of records
    table.close();
    const Result miscounted = run({u"check"_s, file});
    EXPECT_EQ(miscounted.code, 1);
    EXPECT_THAT(miscounted.data, HasSubstr("Der Kopf nennt 0 Sätze, die Datei enthält 1"));
}

TEST(VeldrakDbArguments, ThatAreWrongSayWhy)
{
    const auto errorOf = [](const QStringList &words) {
        try {
            Arguments::parse(words);
        } catch (const UsageError &error) {
            return error.text();
        }
        return QString();
    };
    EXPECT_EQ(errorOf({}), u"Es fehlt ein Befehl."_s);
    EXPECT_EQ(errorOf({u"melt"_s}), u"Den Befehl „melt“ gibt es nicht."_s);
    EXPECT_EQ(errorOf({u"dump"_s}), u"Dem Befehl „dump“ fehlen Angaben."_s);
    EXPECT_EQ(errorOf({u"info"_s, u"a"_s, u"b"_s}), u"Zu viele Angaben für den Befehl „info“."_s);
    EXPECT_EQ(errorOf({u"create"_s, u"a"_s, u"--version"_s, u"5"_s}), u"Die Version ist 3 oder 4, nicht „5“."_s);
    for (const QString &unknown : {u"--version"_s, u"--password=x"_s})
        EXPECT_EQ(errorOf({u"info"_s, u"a"_s, unknown}), u"Die Angabe „%1“ ist hier nicht bekannt."_s.arg(unknown));
    EXPECT_EQ(Arguments::parse({u"info"_s, u"--"_s, u"--help"_s}).operands, QStringList(u"--help"_s));
}

TEST(VeldrakDbScript, IsTakenApartAtSemicolons)
{
    EXPECT_EQ(statementsOf(u"a; b ;;\n"_s), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(statementsOf(u"'a;''b' \"c;\" [d;e]; f"_s), QStringList({u"'a;''b' \"c;\" [d;e]"_s, u"f"_s}));
    EXPECT_EQ(statementsOf(u"-- x; y\na '\n-- kept'\n--z"_s), QStringList({u"a '\n-- kept'"_s}));
}

TEST(VeldrakDbJson, HasItsFormForEachType)
{
    const auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(json::value(Value(), Type::Long), u"null"_s);
    EXPECT_EQ(json::value(storage::Currency{-5}, Type::Currency), u"\"-0.0005\""_s);
    EXPECT_EQ(json::value(storage::Currency{least}, Type::Currency), u"\"-922337203685477.5808\""_s);
    EXPECT_EQ(json::value(storage::DateTime{36925.5}, Type::DateTime), u"\"2001-02-03T12:00:00\""_s);
    EXPECT_EQ(json::value(static_cast<double>(0.1F), Type::Single), u"0.1"_s);
    EXPECT_EQ(json::value(0.1, Type::Double), u"0.1"_s);
    EXPECT_EQ(json::value(1.0 / 3, Type::Double), u"0.3333333333333333"_s);
    EXPECT_EQ(json::value(storage::Decimal{u"12.50"_s}, Type::Numeric), u"\"12.50\""_s);
    EXPECT_EQ(json::value(QByteArray("\x01\xFE"), Type::Binary), u"{\"$hex\": \"01fe\"}"_s);
    EXPECT_EQ(json::value(storage::Currency{12'345'678}, Type::Currency), u"\"1234.5678\""_s);
    EXPECT_EQ(json::value(std::numeric_limits<std::int64_t>::min(), Type::Long), u"-9223372036854775808"_s);
    EXPECT_EQ(json::value(storage::DateTime{-657434 + 1.5 / 86'400}, Type::DateTime), u"\"0100-01-02T23:59:58.500\""_s);
    EXPECT_EQ(json::value(u"\t\r\u007F€\U0001F600"_s, Type::Text), u"\"\\t\\r\\u007f€\\ud83d\\ude00\""_s);
    EXPECT_EQ(json::value(u"a\\\"\n\u0001ß"_s, Type::Text), u"\"a\\\\\\\"\\n\\u0001ß\""_s);
}
