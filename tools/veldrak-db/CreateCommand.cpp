// Makes a new Jet database from an SQL script on the standard input.
#include <cstdio>

#include <QFile>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"
#include "platform/jet/PageFile.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/NewFile.h"
#include "tools/veldrak-db/Commands.h"
#include "tools/veldrak-db/Script.h"
#include "tools/veldrak-db/Source.h"
#include "tools/veldrak-db/Terminal.h"

using namespace Qt::StringLiterals;

namespace {

QString readInput()
{
    QFile input;
    if (terminal::hasInput() || !input.open(stdin, QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(input.readAll());
}

/// Runs a script; a statement that fails is named in the error.
void run(dao::Database &database, const QStringList &statements, Output &output)
{
    for (qsizetype i = 0; i < statements.size(); ++i) {
        output.progress(u"Anweisung %1 von %2"_s.arg(i + 1).arg(statements.size()));
        try {
            database.Execute(statements[i]);
        } catch (const dao::DaoError &error) {
            throw dao::DaoError(error.Number(), u"Anweisung %1 des Skripts: %2"_s.arg(i + 1).arg(error.Description()));
        }
    }
}

/// Makes the database with all that the script puts into it.
void make(storage::FileSystem &files, const QString &path, const Arguments &arguments, Output &output)
{
    const QString password = arguments.passwordFromInput ? passwordFromInput() : QString();
    const QStringList statements = statementsOf(readInput());
    dao::EmbeddedEngine engine(std::make_unique<jet::JetDriver>(files), nullptr);
    const bool isJet3 = arguments.version == storage::FileVersion::Jet3;
    const auto database = engine.CreateDatabase(path, u";PWD="_s + password,
                                                isJet3 ? dao::DBEngine::dbVersion30 : dao::DBEngine::dbVersion40);
    run(*database, statements, output);
    database->Close();
}

} // namespace

ExitCode create(const Arguments &arguments, Output &output)
{
    const QString path = storage::localPath(arguments.operands[0]);
    storage::NewFile made(storage::systemFiles(), path, jet::PageFile::besides());
    make(made.files(), made.path(), arguments, output);
    made.finish();
    made.keep();
    return Done;
}
