// What a file is and what it is made of.
#include <QFileInfo>

#include "tools/veldrak-db/Commands.h"
#include "tools/veldrak-db/Json.h"
#include "tools/veldrak-db/Source.h"

using namespace Qt::StringLiterals;

namespace {

QString typeName(storage::Type type)
{
    switch (type) {
    case storage::Type::Boolean:
        return u"boolean"_s;
    case storage::Type::Byte:
        return u"byte"_s;
    case storage::Type::Integer:
        return u"integer"_s;
    case storage::Type::Long:
        return u"long"_s;
    case storage::Type::Currency:
        return u"currency"_s;
    case storage::Type::Single:
        return u"single"_s;
    case storage::Type::Double:
        return u"double"_s;
    case storage::Type::DateTime:
        return u"datetime"_s;
    case storage::Type::Binary:
        return u"binary"_s;
    case storage::Type::Text:
        return u"text"_s;
    case storage::Type::LongBinary:
        return u"longbinary"_s;
    case storage::Type::Memo:
        return u"memo"_s;
    case storage::Type::Guid:
        return u"guid"_s;
    case storage::Type::Numeric:
        return u"numeric"_s;
    }
    Q_UNREACHABLE();
}

QString textOrNull(const QString &text)
{
    return text.isEmpty() ? u"null"_s : json::text(text);
}

QString describe(const storage::Column &column)
{
    json::Members members{{u"name"_s, json::text(column.name)}, {u"type"_s, json::text(typeName(column.type))}};
    if (column.size != 0)
        members.emplace_back(u"size"_s, QString::number(column.size));
    if (column.type == storage::Type::Numeric)
        members.emplace_back(u"scale"_s, QString::number(column.scale));
    members.emplace_back(u"required"_s, json::truth(column.required));
    if (column.type == storage::Type::Text || column.type == storage::Type::Memo)
        members.emplace_back(u"zeroLengthAllowed"_s, json::truth(column.zeroLengthAllowed));
    members.emplace_back(u"default"_s, textOrNull(column.defaultValue));
    members.emplace_back(u"autonumber"_s, json::truth(column.autonumber));
    if (!column.validationRule.isEmpty()) {
        members.emplace_back(u"validationRule"_s, json::text(column.validationRule));
        members.emplace_back(u"validationText"_s, textOrNull(column.validationText));
    }
    return json::object(members);
}

QString describe(const storage::Index &index, const storage::TableSchema &schema)
{
    QStringList columns;
    for (const storage::IndexColumn &part : index.columns) {
        const storage::Column &column = schema.columns[static_cast<std::size_t>(part.column)];
        columns += json::object({{u"name"_s, json::text(column.name)},
                                 {u"order"_s, json::text(part.descending ? u"descending"_s : u"ascending"_s)}});
    }
    return json::object({{u"name"_s, json::text(index.name)},
                         {u"columns"_s, json::array(columns)},
                         {u"unique"_s, json::truth(index.unique)},
                         {u"primary"_s, json::truth(index.primary)},
                         {u"required"_s, json::truth(index.required)},
                         {u"ignoreNulls"_s, json::truth(index.ignoreNulls)}});
}

QString describe(const storage::TableSchema &schema)
{
    QStringList columns;
    for (const storage::Column &column : schema.columns)
        columns += u"\n    "_s + describe(column);
    QStringList indexes;
    for (const storage::Index &index : schema.indexes)
        indexes += u"\n    "_s + describe(index, schema);
    return json::object({{u"name"_s, json::text(schema.name)},
                         {u"columns"_s, json::array(columns)},
                         {u"indexes"_s, json::array(indexes)}});
}

QString describe(const storage::Relationship &relationship)
{
    const auto names = [](const QStringList &columns) {
        QStringList quoted;
        for (const QString &column : columns)
            quoted += json::text(column);
        return json::array(quoted);
    };
    return json::object({{u"name"_s, json::text(relationship.name)},
                         {u"table"_s, json::text(relationship.table)},
                         {u"columns"_s, names(relationship.columns)},
                         {u"foreignTable"_s, json::text(relationship.foreignTable)},
                         {u"foreignColumns"_s, names(relationship.foreignColumns)},
                         {u"enforced"_s, json::truth(relationship.enforced)},
                         {u"cascadeUpdates"_s, json::truth(relationship.cascadeUpdates)},
                         {u"cascadeDeletes"_s, json::truth(relationship.cascadeDeletes)}});
}

bool concerns(const storage::Relationship &relationship, const QString &table)
{
    return table.isEmpty() || relationship.table.compare(table, Qt::CaseInsensitive) == 0
        || relationship.foreignTable.compare(table, Qt::CaseInsensitive) == 0;
}

QString sortOrderName(const jet::FileHeader &header)
{
    const QString number = u"0x%1"_s.arg(header.sortLcid, 4, 16, QLatin1Char('0'));
    return header.sortLcid == 0x0409 ? u"General (%1)"_s.arg(number) : number;
}

} // namespace

ExitCode info(const Arguments &arguments, Output &output)
{
    const QString &path = arguments.operands[0];
    if (path.endsWith(u".dbf"_s, Qt::CaseInsensitive)) {
        const Source source(path, false);
        const auto database = source.open();
        const storage::Table &table = source.table(*database, {});
        output.line(json::object({{u"version"_s, json::text(u"dBASE/FoxPro"_s)},
                                  {u"records"_s, QString::number(table.rowEstimate())},
                                  {u"columns"_s, QString::number(table.schema().columns.size())},
                                  {u"password"_s, json::truth(false)},
                                  {u"encrypted"_s, json::truth(false)}}));
        return Done;
    }
    const jet::FileHeader header = readHeader(path);
    const qint64 pageSize = header.jet4 ? 4096 : 2048;
    output.line(json::object({{u"version"_s, json::text(header.jet4 ? u"Jet 4"_s : u"Jet 3"_s)},
                              {u"pages"_s, QString::number(QFileInfo(path).size() / pageSize)},
                              {u"pageSize"_s, QString::number(pageSize)},
                              {u"codePage"_s, QString::number(header.codePage)},
                              {u"sortOrder"_s, json::text(sortOrderName(header))},
                              {u"password"_s, json::truth(!header.password.isEmpty())},
                              {u"encrypted"_s, json::truth(header.pageKey != 0)}}));
    return Done;
}

ExitCode tables(const Arguments &arguments, Output &output)
{
    const Source source(arguments.operands[0], arguments.passwordFromInput);
    const auto database = source.open();
    const QStringList names = source.isDbf() ? QStringList(source.tableName()) : database->tableNames();
    for (const QString &name : names)
        output.line(name);
    return Done;
}

ExitCode schema(const Arguments &arguments, Output &output)
{
    const Source source(arguments.operands[0], arguments.passwordFromInput);
    const QString wanted = arguments.operands.value(1);
    const auto database = source.open();
    QStringList described;
    if (!wanted.isEmpty() || source.isDbf()) {
        described += u"\n  "_s + describe(source.table(*database, wanted).schema());
    } else {
        for (const QString &name : database->tableNames())
            described += u"\n  "_s + describe(source.table(*database, name).schema());
    }
    QStringList relationships;
    for (const storage::Relationship &relationship : database->relationships()) {
        if (concerns(relationship, wanted))
            relationships += u"\n  "_s + describe(relationship);
    }
    output.line(
        json::object({{u"tables"_s, json::array(described)}, {u"relationships"_s, json::array(relationships)}}));
    return Done;
}
