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
    QByteArrayList labels; // the same in every row
    for (const storage::Column &column : columns)
        labels += (labels.isEmpty() ? "{" : ", ") + json::text(column.name).toUtf8() + ": ";

    std::int64_t rows = 0;
    const auto cursor = table.scan();
    QByteArray row;
    QString text;
    const auto readRow = [&] {
        row.resize(0); // keeps its room
        for (int i = 0; i < labels.size(); ++i) {
            row += labels[i];
            if (cursor->readText(i, text))
                json::append(row, text);
            else
                json::append(row, cursor->value(i), columns[static_cast<std::size_t>(i)].type);
        }
    };
    while (cursor->next()) {
        try {
            readRow();
        } catch (const storage::StorageError &error) {
            if (error.kind() != storage::StorageError::RowGone)
                throw;
            continue; // deleted between finding and reading it: as if it had been a moment before
        }
        row += "}\n";
        output.data(row);
        if (++rows % 1000 == 0)
            output.progress(u"%1 Zeilen"_s.arg(rows));
    }
    return Done;
}
