// Index pages of a damaged Jet file: ranges are walked, and rows are added, changed and removed all the same.
#include "fuzz/JetBase.h"
#include "fuzz/TableWork.h"

using namespace Qt::StringLiterals;

namespace {

void walk(storage::Database &database, fuzz::Input &input)
{
    for (const QString &name : database.tableNames()) {
        storage::Table &table = *database.table(name);
        const auto range = fuzz::drawRange(input, table.schema());
        if (!range)
            continue;
        storage::RowId last = -1;
        for (const auto cursor = table.range(*range); cursor->next();) {
            fuzz::require(cursor->rowId() != last, u"an index shows a row twice"_s);
            last = cursor->rowId();
        }
    }
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes);
    const JetFile file(input);
    bool sound = file.fault().isEmpty();
    std::unique_ptr<jet::JetDatabase> database;
    if (!succeeds([&] { database = file.open(false); }))
        return;
    succeeds([&] { walk(*database, input); });
    for (int i = 0; i < 4 && !input.atEnd(); ++i) {
        const QByteArray before = file.content();
        const bool changed = succeeds([&] { change(*database, input); });
        require(changed || file.content() == before, u"a failed write has left something"_s);
        const QString fault = file.fault();
        require(fault.isEmpty() || !sound, u"a write has spoiled a good file: "_s + fault);
        sound = fault.isEmpty();
    }
    if (sound)
        require(succeeds([&] { readDatabase(*database); }), u"a good file cannot be read"_s);
}
