#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QVariant>

#include "platform/storage/Storage.h"

/// Texts in JSON. Objects keep the order of their members, which Qt's own do not.
namespace json {

/// Adds a text, or a field's content, in UTF-8: currency and decimals as text, dates as "2001-02-03T00:00:00", binary
/// as
/// {"$hex": "..."}.
void append(QByteArray &json, QStringView text);
void append(QByteArray &json, const storage::Value &value, storage::Type type);

QString text(const QString &value);
QString truth(bool value);
QString value(const storage::Value &value, storage::Type type);
/// The same of a recordset's field.
QString value(const QVariant &value);

/// Members as name and finished JSON.
using Members = std::vector<std::pair<QString, QString>>;
QString object(const Members &members);
QString array(const QStringList &elements);

} // namespace json
