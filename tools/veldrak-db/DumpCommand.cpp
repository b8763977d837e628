// All rows of a table.
#include "tools/veldrak-db/Commands.h"
#include "tools/veldrak-db/Json.h"
#include "tools/veldrak-db/Source.h"

using namespace Qt::StringLiterals;

ExitCode dump(const Arguments &arguments, Output &output)
{
    const Source source(arguments.operands[0], arguments.passwordFromInput);
    const auto database = source.open();
    storage::Table &table = source.table(*database, arguments.operands.value(1));
    const std::vector<storage::Column> &columns = table.schema().columns;
    std::int64_t rows = 0;
    const auto cursor = table.scan();
    while (cursor->next()) {
        json::Members members;
        for (std::size_t i = 0; i < columns.size(); ++i)
            members.emplace_back(columns[i].name, json::value(cursor->value(static_cast<int>(i)), columns[i].type));
        output.line(json::object(members));
        output.progress(u"%1 Zeilen"_s.arg(++rows));
    }
    return Done;
}
