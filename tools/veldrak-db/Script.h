#pragma once

#include <QString>
#include <QStringList>

/// The statements of an SQL script: each ends with a semicolon, the last one may do without. Semicolons within quotes
/// and brackets are part of a statement; lines that begin with "--" are not.
QStringList statementsOf(const QString &script);
