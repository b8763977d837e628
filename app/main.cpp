// Puts the program together: the ports of this machine, one object with the program's state, and the event loop.
#include <optional>

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>

#include "app/Befehlszeile.h"
#include "groupeditor/frmHauptkontakt.h"
#include "platform/automation/dbus/DBusAutomation.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/desktop/application/DisplayGuard.h"
#include "platform/desktop/application/EndRequests.h"
#include "platform/desktop/application/OnScreen.h"
#include "platform/desktop/qt/QtDesktop.h"
#include "startup/Bilder.h"
#include "startup/Haupt.h"

using namespace Qt::StringLiterals;

namespace {

QString programmordner()
{
    const QString anderer = qEnvironmentVariable("VELDRAK_ORDNER");
    return QDir(anderer.isEmpty() ? QCoreApplication::applicationDirPath() : anderer).absolutePath();
}

// Before ACT!'s window was measured and minimised there is nothing to give back.
void beende(Haupt &haupt)
{
    haupt.ausgefuehrt([&haupt] {
        if (haupt.ActFensterBreite > 0)
            haupt.ProgrammEnde();
        haupt.SofortEnde();
    });
}

int ausgefuehrt(Haupt &haupt)
{
    try {
        haupt.Main([](Haupt &h) { return std::make_unique<frmHauptkontakt>(h); });
    } catch (const ProgrammBeendet &) { // start-up could not go on and has said why
    }
    return haupt.beendet() ? 0 : QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList woerter;
    for (int i = 0; i < argc; ++i)
        woerter += QString::fromLocal8Bit(argv[i]);
    if (const std::optional<int> ergebnis = beantworteBefehlszeile(woerter))
        return *ergebnis;

    std::optional<desktop::DisplayGuard> wache(u"veldrak"_s);
    QApplication anwendung(argc, argv);
    wache.reset();
    const desktop::OnScreen fensterwacht;
    QApplication::setApplicationName(u"veldrak"_s);
    QApplication::setApplicationVersion(QStringLiteral(VELDRAK_VERSION));
    QApplication::setQuitOnLastWindowClosed(false); // the program's end is its own decision

    QTranslator deutsch; // for the toolkit's own texts, such as the menus of text boxes
    if (deutsch.load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&deutsch);

    const QString ordner = programmordner();
    QApplication::setWindowIcon(QIcon(bilddatei(ordner, u"bilder/icons/veldrak.ico"_s)));

    DBusAutomation automation;
    const auto engine = dao::makeEmbeddedEngine();
    desktop::QtDesktop tisch([&automation](const QString &progId) { return automation.nameKnown(progId); });
    Haupt haupt(Umgebung{automation, *engine, tisch.messageBoxes, tisch.settings, tisch.clipboard, tisch.windows,
                         tisch.screen, tisch.clock, tisch.messageLoop, tisch.files, ordner});
    const desktop::EndRequests endwunsch([&haupt] { beende(haupt); });
    return ausgefuehrt(haupt);
}
