#pragma once

#include <QVariant>

#include "platform/storage/Storage.h"

/// Values between the program, SQL and the columns of a table, by Jet's rules.
namespace dao {

/// What a program handed in, as a storage value. Throws StorageError::WrongType (item: `field`) for a type that no
/// column could take.
storage::Value valueOf(const QVariant &value, const QString &field);

/// A stored value as the object model shows it for a column of that type; Null is an invalid QVariant.
QVariant variantOf(const storage::Value &value, storage::Type type);

/// The value in the column's own type. Texts become numbers and dates by the user's locale, fractions are rounded half
/// to even. Throws StorageError WrongType, OutOfRange or TooLong, each naming the column.
storage::Value coerced(const storage::Value &value, const storage::Column &column);

/// DAO's number of a type.
int dataTypeOf(storage::Type type);

bool isText(storage::Type type); ///< Text, Memo: compared in the database's text order

} // namespace dao
