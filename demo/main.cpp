// veldrak-demo: makes the sample data, and reads back what became of it.
#include <cstdio>

#include <QCoreApplication>
#include <QLocale>

#include "demo/DemoFolder.h"
#include "demo/Report.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto help = R"(Aufruf: veldrak-demo ZIELORDNER [--neu]
        veldrak-demo --zeige ORDNER KENNUNG...

Legt die Beispieldaten für VELDRAK an: Feldzuordnung, drei Mandanten,
eine Kontaktdatenbank und die Konfiguration.

  --neu      vorhandene Beispieldaten verwerfen und neu anlegen
  --zeige    nichts anlegen, sondern diese Kontakte und die Konten zeigen,
             zu denen sie gehören
  --help     diese Hilfe
)";

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toUtf8().constData(), stream);
}

int run(const QStringList &arguments)
{
    QStringList words = arguments;
    if (words.removeAll(u"--help"_s) + words.removeAll(u"-h"_s) > 0) {
        print(stdout, QString::fromUtf8(help));
        return 0;
    }
    const bool replace = words.removeAll(u"--neu"_s) > 0;
    const bool show = words.removeAll(u"--zeige"_s) > 0;
    const bool fits = show ? words.size() >= 2 && !replace : words.size() == 1;
    if (!fits || words.first().startsWith(u'-')) {
        print(stderr, QString::fromUtf8(help));
        return 2;
    }
    const auto engine = dao::makeEmbeddedEngine();
    const demo::DemoFolder folder(words.takeFirst());
    if (show)
        print(stdout, demo::report(*engine, folder, words));
    else
        folder.create(*engine, replace);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication program(argc, argv);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    try {
        return run(QCoreApplication::arguments().sliced(1));
    } catch (const RunTimeError &error) {
        print(stderr, u"veldrak-demo: %1 (Fehler %2)\n"_s.arg(error.Description()).arg(error.Number()));
        return 1;
    }
}
