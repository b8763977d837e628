#pragma once

#include <optional>

#include <QByteArray>

#include "platform/storage/Codepage.h"
#include "platform/storage/Storage.h"

/// The fields of a record: what their bytes mean and how values become bytes.
namespace dbf {

struct Field {
    QString name{};
    char type = 'C'; ///< C, N, F, D, L or M
    int offset = 0; ///< in the record, whose first byte is the deletion mark
    int width = 0; ///< bytes
    int decimals = 0; ///< N and F
};

/// How the engine sees the field.
storage::Column columnOf(const Field &field);

/// The value of a field other than M. `bytes` are the field's own. Nothing if they are none of the type's forms.
std::optional<storage::Value> decode(const Field &field, storage::Bytes bytes, const storage::Codepage &codepage);

/// The text of a C field, into room that is there already; false for a blank one and for other fields.
bool decodeText(const Field &field, storage::Bytes bytes, const storage::Codepage &codepage, QString &into);

/// Exactly `field.width` bytes for a field other than M. Throws StorageError: WrongType, TooLong, OutOfRange,
/// NotEncodable; the text names the field.
QByteArray encode(const Field &field, const storage::Value &value, const storage::Codepage &codepage);

/// The bytes of a memo's text; empty for Null. Throws as encode() does.
QByteArray encodeMemo(const Field &field, const storage::Value &value, const storage::Codepage &codepage);

/// Right-aligned decimal text of this width, rounded to the decimals; nothing if the number does not fit.
std::optional<QByteArray> encodeNumber(double number, int width, int decimals);

/// The number of a memo's first block, 0 for an empty memo; nothing if the bytes are no number.
std::optional<qint64> decodeMemoBlock(storage::Bytes bytes);
QByteArray encodeMemoBlock(qint64 block, int width);

} // namespace dbf
