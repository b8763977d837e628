// The ini reader on files as people write them.
#include <QFile>
#include <QStringConverter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "platform/errors/RunTimeError.h"
#include "tests/fakes/FakeDesktop.h"
#include "util/iniDatei.h"

using namespace Qt::StringLiterals;

namespace {

class IniDatei : public testing::Test
{
protected:
    bool lade(const QByteArray &inhalt)
    {
        QFile datei(m_pfad);
        EXPECT_TRUE(datei.open(QIODevice::WriteOnly));
        datei.write(inhalt);
        datei.close();
        return m_ini.IniLaden(m_pfad);
    }

    QString lies(QString sektion, QString schluessel) const { return m_ini.IniLesen(sektion, schluessel); }

    FakeDesktop m_desktop;
    QTemporaryDir m_ordner;
    QString m_pfad = m_ordner.filePath(u"VELDRAK.ini"_s);
    iniDatei m_ini{m_desktop};
};

} // namespace

TEST_F(IniDatei, FindsValuesBySectionAndKey)
{
    ASSERT_TRUE(lade("; not a comment\r\n"
                     "'ganz weg = 1\r\n"
                     "[VELDRAK]\r\n"
                     "  ID_Nummer  =  60|PCK_NUMMER   ' die Nummer\r\n"
                     "a==b\r\n"
                     "=ohne Schluessel\r\n"
                     "ohne Gleichheitszeichen\r\n"
                     "Ort=M\xFCnchen\r\n"
                     "doppelt=1\r\n"
                     "doppelt=2\r\n"
                     "[ VELDRAK ]\n"
                     "blank=ja\n"
                     "[andere]\n"
                     "ID_Nummer=1\n"
                     "x=1\ny=2\nz=3\nu=4\nv=5\nw=6\nletzter=7\n"
                     "[VELDRAK] ' noch einmal\n"
                     "spaeter=da\n"));
    EXPECT_EQ(lies(u"VELDRAK"_s, u"ID_Nummer"_s), u"60|PCK_NUMMER"_s) << "comment and blanks are cut";
    QString sektion = u" VELDRAK "_s, schluessel = u" ID_Nummer "_s;
    EXPECT_EQ(m_ini.IniLesen(sektion, schluessel), u"60|PCK_NUMMER"_s);
    EXPECT_EQ(sektion + u'|' + schluessel, u"VELDRAK|ID_Nummer"_s) << "the caller's variables are trimmed";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"a"_s), u"=b"_s) << "the first equals sign divides";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"Ort"_s), u"München"_s) << "the file is Windows-1252";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"doppelt"_s), u"1"_s) << "the first of two counts";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"blank"_s), u""_s) << "blanks in brackets make another name";
    EXPECT_EQ(lies(u"andere"_s, u"letzter"_s), u"7"_s) << "every key of a long section is kept";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"spaeter"_s), u"da"_s) << "a section may come again";
    EXPECT_EQ(lies(u"veldrak"_s, u"ID_Nummer"_s), u""_s) << "capitals count in sections";
    EXPECT_EQ(lies(u"VELDRAK"_s, u"id_nummer"_s), u""_s) << "capitals count in keys";
}

TEST_F(IniDatei, SaysWhetherThereIsAnythingToRead)
{
    EXPECT_FALSE(m_ini.IniLaden(m_ordner.filePath(u"fehlt.ini"_s)));
    EXPECT_FALSE(lade(""));
    EXPECT_FALSE(lade("'x=1\n[VELDRAK]\n\n")) << "only comments and headers";
    EXPECT_FALSE(lade("[a=b]\n")) << "only a header's look-alike";
    EXPECT_TRUE(lade("[VELDRAK]\nalt=1\n"));
    EXPECT_TRUE(lade("[VELDRAK]\nk=w"));
    EXPECT_EQ(lies(u"VELDRAK"_s, u"k"_s), u"w"_s);
    EXPECT_EQ(lies(u"VELDRAK"_s, u"alt"_s), u""_s) << "nothing is kept of an earlier load";
}

TEST_F(IniDatei, HonoursAByteOrderMarkAndNamesTheLineThatCannotBeRead)
{
    const QString text = u"[VELDRAK]\r\nOrt=Łódź\r\n"_s;
    for (const auto art : {QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        ASSERT_TRUE(lade(QStringEncoder(art, QStringConverter::Flag::WriteBom)(text)));
        EXPECT_EQ(lies(u"VELDRAK"_s, u"Ort"_s), u"Łódź"_s);
    }
    // clang-format off
    struct Row { const char *name; QByteArray inhalt; int nummer; int zeile; };
    const Row rows[] = {
        {"a key before the first section",     "\n\nk=w\n[VELDRAK]\nID_Nummer=1|A\n",         9,   3},
        {"the same behind a mark",             "\xEF\xBB\xBFk=w\n[VELDRAK]\n",                9,   1},
        {"not the encoding that it says",      "\xEF\xBB\xBF[VELDRAK]\nOrt=M\xFCnchen\n",     321, 2},
        {"cut in the middle of a character",   QByteArray("\xFF\xFE[\0V\0]\0\n\0k\0=\0w", 15), 321, 2},
        {"two bytes a character, but no mark", QByteArray("[\0V\0]\0\n\0k\0=\0w\0", 14),      321, 1},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        try {
            lade(row.inhalt);
            ADD_FAILURE() << "it can be read";
        } catch (const RunTimeError &fehler) {
            EXPECT_EQ(fehler.Number(), row.nummer);
            EXPECT_TRUE(fehler.Description().startsWith(u"%1, Zeile %2: "_s.arg(m_pfad).arg(row.zeile)))
                << fehler.what();
        }
    }
}
