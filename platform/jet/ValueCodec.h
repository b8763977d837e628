#pragma once

#include <QByteArray>

#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Bytes.h"
#include "platform/storage/Value.h"

namespace jet {

/// The value that a field's bytes stand for; for Memo and LongBinary the whole content. Not for Boolean.
/// Throws StorageError::Damaged when the bytes do not fit the type.
storage::Value decodeValue(const ColumnDef &column, storage::Bytes bytes, const TextCodec &codec);

/// A value, which must have the column's own form (fitValue), as a field's bytes; for Memo and LongBinary the whole
/// content. Not for Boolean and Null. Throws StorageError::TooLong, NotEncodable and OutOfRange, naming the column.
QByteArray encodeValue(const ColumnDef &column, const storage::Value &value, const TextCodec &codec);

/// A value in the column's own form: numbers and Booleans become each other, rounded half to even; everything else
/// must have the right form. Null stays Null, but False in a Boolean column.
/// Throws StorageError::WrongType, OutOfRange and TooLong, naming the column.
storage::Value fitValue(const ColumnDef &column, const storage::Value &value, const TextCodec &codec);

} // namespace jet
