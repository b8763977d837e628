// The command line: the program has no options but those that ask about it.
#include "app/Befehlszeile.h"

#include <cstdio>

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

const QString hilfe = uR"(Aufruf: veldrak

Übernimmt den Kontakt, der in ACT! zu sehen ist, mit den übrigen Kontakten seiner
Firma in einen Mandanten des PC-Kaufmanns. ACT! muss gestartet sein.

  --help       diese Hilfe
  --version    die Version des Programms

VELDRAK.ini, veldrak.piz und bilder/icons liegen im Ordner des Programms oder in
dem, den die Umgebungsvariable VELDRAK_ORDNER nennt.
)"_s;

int sage(std::FILE *wohin, const QString &text, int ergebnis)
{
    std::fputs(text.toUtf8().constData(), wohin);
    return ergebnis;
}

} // namespace

std::optional<int> beantworteBefehlszeile(const QStringList &woerter)
{
    const QCommandLineOption nachHilfe(QStringList{u"h"_s, u"help"_s});
    const QCommandLineOption nachVersion(u"version"_s);
    QCommandLineParser zeile;
    zeile.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    zeile.addOptions({nachHilfe, nachVersion});
    const bool verstanden = zeile.parse(woerter) && zeile.positionalArguments().isEmpty();
    if (!verstanden) {
        const QStringList fremde = zeile.unknownOptionNames() + zeile.positionalArguments();
        const QString fremd = fremde.isEmpty() ? woerter.last() : fremde.first(); // such as --help=ja
        return sage(stderr, u"veldrak: Die Angabe „%1“ gibt es nicht.\nHilfe mit veldrak --help\n"_s.arg(fremd), 2);
    }
    if (zeile.isSet(nachHilfe))
        return sage(stdout, hilfe, 0);
    if (zeile.isSet(nachVersion))
        return sage(stdout, u"VELDRAK "_s + QStringLiteral(VELDRAK_VERSION) + u'\n', 0);
    return std::nullopt;
}
