// Rows, values and long values of a damaged Jet file: all of them are read, and nothing is written by that.
#include "fuzz/JetBase.h"
#include "fuzz/TableWork.h"

using namespace Qt::StringLiterals;

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes);
    const JetFile file(input);
    const QByteArray before = file.content();
    bool whole = false;
    succeeds([&] {
        const auto database = file.open(false);
        whole = true;
        for (const QString &name : database->tableNames()) {
            // one table's damage must not keep the others from being read
            whole &= succeeds([&] { readTable(*database->table(name)); });
        }
        database->relationships();
    });
    require(whole || !file.fault().isEmpty(), u"a good file cannot be read"_s);
    require(file.content() == before, u"reading has changed the file"_s);
}
