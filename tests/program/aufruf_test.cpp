// Both programs on the command line, without a display.
#include <gtest/gtest.h>

#include <QProcess>

using namespace Qt::StringLiterals;

TEST(Aufruf, IsAnsweredInGermanWithoutADisplay)
{
    const QString veldrak = QStringLiteral(VELDRAK), act = QStringLiteral(ACTHOST);
    const QString ohne = u"Es ist kein grafischer Bildschirm zu erreichen"_s;
    // clang-format off
    struct Row { QString programm; QStringList woerter; int code; QString ausgabe, fehler; };
    const Row rows[] = {
        {veldrak, {u"--help"_s},                0, u"Aufruf: veldrak\n"_s, {}},
        {veldrak, {u"--version"_s},             0, u"VELDRAK 1."_s, {}},
        {veldrak, {u"--hilfe"_s, u"--help"_s},  2, {}, u"veldrak: Die Angabe „hilfe“ gibt es nicht.\n"_s},
        {veldrak, {u"--help=ja"_s},             2, {}, u"veldrak: Die Angabe „--help=ja“ gibt es nicht.\n"_s},
        {veldrak, {u"Kontakt"_s},               2, {}, u"veldrak: Die Angabe „Kontakt“ gibt es nicht.\n"_s},
        {veldrak, {},                           1, {}, u"veldrak: "_s + ohne},
        {act,     {u"--help"_s},                0, u"Aufruf: acthost "_s, {}},
        {act,     {u"--hilfe"_s},               2, {}, u"acthost: Die Option --hilfe gibt es nicht."_s},
        {act,     {u"x.DBF"_s},                 1, {}, u"acthost: "_s + ohne},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE((row.programm + u' ' + row.woerter.join(u' ')).toStdString());
        QProcess prozess;
        QProcessEnvironment umgebung = QProcessEnvironment::systemEnvironment();
        for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            umgebung.remove(name);
        prozess.setProcessEnvironment(umgebung);
        prozess.start(row.programm, row.woerter);
        ASSERT_TRUE(prozess.waitForFinished());
        EXPECT_EQ(prozess.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(prozess.exitCode(), row.code);
        const QString ausgabe = QString::fromUtf8(prozess.readAllStandardOutput());
        const QString fehler = QString::fromUtf8(prozess.readAllStandardError());
        EXPECT_TRUE(ausgabe.startsWith(row.ausgabe) && ausgabe.isEmpty() == row.ausgabe.isEmpty())
            << ausgabe.toStdString();
        EXPECT_TRUE(fehler.startsWith(row.fehler) && fehler.isEmpty() == row.fehler.isEmpty()) << fehler.toStdString();
    }
}
