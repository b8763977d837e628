#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include "platform/dao/Dao.h"

namespace demo {

/// A column of a new row and its value. An invalid value leaves the column at its default.
struct Given {
    QString column;
    QVariant value;
};

/// A value as a literal of the database's SQL. Texts, whole numbers, doubles, bools and dates only.
QString literal(const QVariant &value);

void insertRow(dao::Database &database, const QString &table, const QList<Given> &row);

/// The text as a value; an empty one is no value.
QVariant textOrNothing(QStringView text);

} // namespace demo
