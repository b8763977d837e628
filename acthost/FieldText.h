#pragma once

#include <QString>
#include <QVariant>

#include "acthost/FieldList.h"
#include "platform/storage/Storage.h"

namespace acthost {

/// A stored value as automation gets it: text or double; Null is an empty text.
QVariant automationValue(const Field &field, const storage::Value &value);

/// A stored value as people read it on the card.
QString cardText(const Field &field, const storage::Value &value);

/// What to store for a text. Throws RunTimeError, naming the field, for a text that is no value of the column's type or
/// too long for it.
storage::Value storedValue(const Field &field, const storage::Column &column, const QString &text);

} // namespace acthost
