// The command line, in German like everything that a user reads.
#include "acthost/Options.h"

#include <map>

#include <QFileInfo>

#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kInvalidCall = 5;

int countFrom(const QString &option, const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1)
        throw RunTimeError(kInvalidCall, u"Nach %1 muss eine Zahl ab 1 stehen, nicht „%2“."_s.arg(option, text));
    return number;
}

} // namespace

Options Options::parse(const QStringList &arguments)
{
    Options options;
    const std::map<QString, bool *> switches{
        {u"--ohne-automation"_s, &options.withoutAutomation},
        {u"--hinweis"_s, &options.noticeOpen},
        {u"--haengend"_s, &options.hanging},
    };
    const std::map<QString, QString *> values{
        {u"--felder"_s, &options.fieldList},
        {u"--kontakt"_s, &options.uniqueId},
        {u"--name"_s, &options.busName},
    };
    const std::map<QString, int *> counts{
        {u"--stirbt-bei"_s, &options.faults.diesAt},
        {u"--haengt-bei"_s, &options.faults.hangsAt},
        {u"--beschaeftigt-bei"_s, &options.faults.busyAt},
        {u"--beschaeftigt"_s, &options.faults.busySeconds},
    };
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (const auto found = switches.find(argument); found != switches.end()) {
            *found->second = true;
        } else if (values.contains(argument) || counts.contains(argument)) {
            if (++i == arguments.size())
                throw RunTimeError(kInvalidCall, u"Nach %1 fehlt der Wert."_s.arg(argument));
            if (const auto named = values.find(argument); named != values.end())
                *named->second = arguments[i];
            else
                *counts.at(argument) = countFrom(argument, arguments[i]);
        } else if (argument.startsWith(u'-')) {
            throw RunTimeError(kInvalidCall, u"Die Option %1 gibt es nicht."_s.arg(argument));
        } else if (options.database.isEmpty()) {
            options.database = argument;
        } else {
            throw RunTimeError(kInvalidCall,
                               u"„%1“ ist zu viel: nur eine Datenbank kann geöffnet werden."_s.arg(argument));
        }
    }
    if (options.database.isEmpty())
        throw RunTimeError(kInvalidCall, u"Es fehlt die Kontaktdatenbank."_s);
    if (options.fieldList.isEmpty()) {
        const QFileInfo database(options.database);
        options.fieldList = u"%1/%2.felder"_s.arg(database.path(), database.completeBaseName());
    }
    return options;
}

QString Options::helpText()
{
    return uR"(Aufruf: acthost DATENBANK.DBF [Optionen]

Zeigt die Kontakte einer Kontaktdatenbank und bietet sie anderen Programmen
über die Automatisierung am Sitzungsbus an.

  --felder DATEI         Feldliste: je Zeile Nummer|SPALTE|Bezeichnung
                         (sonst die Datei DATENBANK.felder neben der Datenbank)
  --kontakt KENNUNG      mit diesem Kontakt beginnen (sonst mit dem ersten)
  --name NAME            Name am Sitzungsbus (sonst ACTOLE.APPOBJECT)
  --ohne-automation      beginnen, bevor die Automatisierung bereit ist
  --hinweis              mit offenem Hinweisfenster beginnen
  --haengend             Anrufe anderer Programme nicht beantworten
  --stirbt-bei N         beim N-ten Anruf enden, ohne ihn auszuführen
  --haengt-bei N         den N-ten Anruf ausführen, ab da aber nicht mehr antworten
  --beschaeftigt-bei N   statt des N-ten Anrufs melden, dass ACT! beschäftigt ist
  --beschaeftigt S       und zwar S Sekunden lang (sonst für immer)
  --help                 diese Hilfe
)"_s;
}

} // namespace acthost
