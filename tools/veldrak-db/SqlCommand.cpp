// One SQL statement, run by the embedded engine.
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tools/veldrak-db/Commands.h"
#include "tools/veldrak-db/Json.h"
#include "tools/veldrak-db/Source.h"

using namespace Qt::StringLiterals;

namespace {

bool isQuery(const QString &statement)
{
    return statement.trimmed().startsWith(u"select"_s, Qt::CaseInsensitive);
}

void printRows(dao::Recordset &rows, Output &output)
{
    for (; !rows.Eof(); rows.MoveNext()) {
        json::Members members;
        for (int i = 0; i < rows.FieldCount(); ++i)
            members.emplace_back(rows.Fields(i).Name(), json::value(rows.Fields(i).Value()));
        output.line(json::object(members));
    }
}

} // namespace

ExitCode sql(const Arguments &arguments, Output &output)
{
    const Source source(arguments.operands[0], arguments.passwordFromInput);
    const QString &statement = arguments.operands[1];
    const QString path = source.isDbf() ? source.folder() : source.path();
    const QString connect = source.isDbf() ? u"FoxPro 2.6;"_s : u";PWD="_s + source.password();
    const auto engine = dao::makeEmbeddedEngine();
    const auto database = engine->OpenDatabase(path, 0, isQuery(statement), connect);
    if (isQuery(statement))
        printRows(*database->OpenRecordset(statement), output);
    else
        output.line(json::object({{u"rows"_s, QString::number(database->Execute(statement))}}));
    return Done;
}
