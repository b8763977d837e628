// From the command line to a command, and from its errors to messages.
#include "tools/veldrak-db/Program.h"

#include "platform/errors/RunTimeError.h"
#include "platform/storage/StorageError.h"
#include "tools/veldrak-db/Commands.h"

using namespace Qt::StringLiterals;

namespace {

ExitCode runCommand(const Arguments &arguments, Output &output)
{
    const QString &command = arguments.command;
    if (command == u"info")
        return info(arguments, output);
    if (command == u"tables")
        return tables(arguments, output);
    if (command == u"schema")
        return schema(arguments, output);
    if (command == u"dump")
        return dump(arguments, output);
    if (command == u"sql")
        return sql(arguments, output);
    if (command == u"check")
        return check(arguments, output);
    return create(arguments, output);
}

ExitCode run(const QStringList &words, Output &output)
{
    const Arguments arguments = Arguments::parse(words);
    if (arguments.help) {
        output.line(Arguments::helpText().trimmed());
        return Done;
    }
    if (arguments.showVersion) {
        output.line(u"veldrak-db "_s + QStringLiteral(VELDRAK_VERSION));
        return Done;
    }
    return runCommand(arguments, output);
}

} // namespace

int runProgram(const QStringList &words)
{
    Output output;
    try {
        const ExitCode code = run(words, output);
        output.finish();
        return code;
    } catch (const UsageError &error) {
        output.message(error.text());
        output.message(u"„veldrak-db --help“ zeigt, was möglich ist."_s);
    } catch (const storage::StorageError &error) {
        output.message(error.text());
    } catch (const RunTimeError &error) {
        output.message(u"Fehler %1: %2"_s.arg(error.Number()).arg(error.Description()));
    } catch (const std::bad_alloc &) {
        output.message(u"Nicht genügend Speicher."_s);
    }
    return NotPossible;
}
