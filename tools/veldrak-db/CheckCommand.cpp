// Checks a file from end to end.
#include "platform/dbf/Table.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/Verifier.h"
#include "tools/veldrak-db/Commands.h"
#include "tools/veldrak-db/Json.h"
#include "tools/veldrak-db/Source.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

jet::VerifyReport checkJet(const Source &source, Output &output)
{
    jet::PageFile file(storage::systemFiles(), {source.path(), source.password(), true});
    return jet::verify(file, [&output](const QString &what) { output.progress(what); });
}

/// A dBASE file has nothing but its rows and their number that could be wrong.
jet::VerifyReport checkDbf(const Source &source, Output &output)
{
    jet::VerifyReport report;
    const auto database = source.open();
    storage::Table &table = source.table(*database, {});
    const auto columns = static_cast<int>(table.schema().columns.size());
    const auto cursor = table.scan();
    for (report.tables = 1; cursor->next(); ++report.rows) {
        for (int i = 0; i < columns; ++i)
            cursor->value(i);
        output.progress(u"%1 Zeilen"_s.arg(report.rows));
    }
    for (const QString &fault : dynamic_cast<dbf::Table &>(table).headFaults())
        report.faults.push_back(fault);
    return report;
}

} // namespace

ExitCode check(const Arguments &arguments, Output &output)
{
    const Source source(arguments.operands[0], arguments.passwordFromInput);
    jet::VerifyReport report;
    try {
        report = source.isDbf() ? checkDbf(source, output) : checkJet(source, output);
    } catch (const StorageError &error) {
        if (error.kind() != StorageError::Damaged)
            throw;
        report.faults.push_back(error.text());
    }
    for (const QString &note : report.notes)
        output.message(u"Hinweis: "_s + note);
    for (const QString &fault : report.faults)
        output.line(fault);
    if (report.faults.size() == jet::VerifyReport::faultLimit)
        output.message(u"Weitere Fehler werden nicht genannt."_s);
    if (report.faults.empty())
        output.line(u"ok"_s);
    if (arguments.counts) {
        output.message(u"%1 Tabellen, %2 Zeilen, %3 Indizes, %4 Einträge, davon %5 mit nachgerechnetem Schlüssel"_s
                           .arg(report.tables)
                           .arg(report.rows)
                           .arg(report.indexes)
                           .arg(report.entries)
                           .arg(report.equalEntries));
    }
    return report.faults.empty() ? Done : FaultsFound;
}
