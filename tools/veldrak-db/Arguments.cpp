// The command line.
#include "tools/veldrak-db/Arguments.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Command {
    const char16_t *name;
    int fewest;
    int most;
};

constexpr std::array commands{
    Command{u"info", 1, 1}, Command{u"tables", 1, 1}, Command{u"schema", 1, 2}, Command{u"dump", 1, 2},
    Command{u"sql", 2, 2},  Command{u"check", 1, 1},  Command{u"create", 1, 1},
};

const Command &findCommand(const QString &name)
{
    const auto found
        = std::ranges::find_if(commands, [&name](const Command &command) { return name == QStringView(command.name); });
    if (found == commands.end())
        throw UsageError(u"Den Befehl „%1“ gibt es nicht."_s.arg(name));
    return *found;
}

storage::FileVersion versionOf(const QString &text)
{
    if (text == u"3")
        return storage::FileVersion::Jet3;
    if (text == u"4")
        return storage::FileVersion::Jet4;
    throw UsageError(u"Die Version ist 3 oder 4, nicht „%1“."_s.arg(text));
}

} // namespace

Arguments Arguments::parse(const QStringList &words)
{
    Arguments arguments;
    bool onlyOperands = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString &word = words[i];
        if (onlyOperands || !word.startsWith(u"--")) {
            (arguments.command.isEmpty() ? arguments.command : arguments.operands.emplaceBack()) = word;
        } else if (word == u"--") {
            onlyOperands = true;
        } else if (word == u"--help") {
            arguments.help = true;
        } else if (word == u"--password-stdin") {
            arguments.passwordFromInput = true;
        } else if (word == u"--counts" && arguments.command == u"check") {
            arguments.counts = true;
        } else if (word == u"--version" && arguments.command.isEmpty()) {
            arguments.showVersion = true;
        } else if (word == u"--version" && arguments.command == u"create") {
            arguments.version = versionOf(words.value(++i));
        } else {
            throw UsageError(u"Die Angabe „%1“ ist hier nicht bekannt."_s.arg(word));
        }
    }
    if (arguments.help || arguments.showVersion)
        return arguments;
    if (arguments.command.isEmpty())
        throw UsageError(u"Es fehlt ein Befehl."_s);
    const Command &command = findCommand(arguments.command);
    if (arguments.operands.size() < command.fewest)
        throw UsageError(u"Dem Befehl „%1“ fehlen Angaben."_s.arg(arguments.command));
    if (arguments.operands.size() > command.most)
        throw UsageError(u"Zu viele Angaben für den Befehl „%1“."_s.arg(arguments.command));
    return arguments;
}

QString Arguments::helpText()
{
    return u"veldrak-db untersucht Datenbanken: Jet 3 und 4 (*.mdb, *.piz, *.PCK) und dBASE/FoxPro (*.dbf).\n"
           "\n"
           "  veldrak-db info DATEI                Version, Seiten, Zeichensatz, Sortierung, Kennwort, "
           "Verschlüsselung\n"
           "  veldrak-db tables DATEI              die Namen der Tabellen\n"
           "  veldrak-db schema DATEI [TABELLE]    Spalten, Indizes und Beziehungen\n"
           "  veldrak-db dump DATEI TABELLE        alle Zeilen; bei einer .dbf-Datei ohne TABELLE\n"
           "  veldrak-db sql DATEI ANWEISUNG       führt eine SQL-Anweisung aus\n"
           "  veldrak-db check DATEI [--counts]    prüft die ganze Datei; --counts nennt, was geprüft wurde\n"
           "  veldrak-db create DATEI [--version 3|4] < SKRIPT\n"
           "                                       legt eine Jet-Datenbank an; das Skript enthält SQL-Anweisungen,\n"
           "                                       jede endet mit einem Semikolon\n"
           "\n"
           "  --password-stdin   liest das Kennwort aus der ersten Zeile der Eingabe; sonst wird danach gefragt\n"
           "  --help             diese Hilfe\n"
           "  --version          die Version des Programms\n"
           "\n"
           "Daten erscheinen auf der Standardausgabe, Zeilen von Tabellen als je ein JSON-Objekt; Meldungen auf der\n"
           "Fehlerausgabe. Ergebnis 0: erledigt, 1: Fehler in der Datei gefunden, 2: nicht möglich.\n"_s;
}
