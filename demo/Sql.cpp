// Rows of the sample data as SQL statements.
#include "demo/Sql.h"

#include <QDate>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace demo {

QString literal(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return u'\'' + value.toString().replace(u"'"_s, u"''"_s) + u'\'';
    case QMetaType::Bool:
        return value.toBool() ? u"True"_s : u"False"_s;
    case QMetaType::QDate:
        return value.toDate().toString(u"'#'MM/dd/yyyy'#'"_s);
    default:
        Q_ASSERT(value.typeId() == QMetaType::Int || value.typeId() == QMetaType::Double);
        return value.toString();
    }
}

void insertRow(dao::Database &database, const QString &table, const QList<Given> &row)
{
    QStringList columns;
    QStringList values;
    for (const Given &given : row) {
        if (!given.value.isValid())
            continue;
        columns += given.column;
        values += literal(given.value);
    }
    database.Execute(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(table, columns.join(u','), values.join(u',')));
}

QVariant textOrNothing(QStringView text)
{
    return text.isEmpty() ? QVariant() : QVariant(text.toString());
}

} // namespace demo
