// The one exception of the file formats.
#include "platform/storage/StorageError.h"

namespace storage {

StorageError::StorageError(Kind kind, const QString &text, const QString &item)
    : m_kind(kind)
    , m_text(text)
    , m_item(item)
    , m_what(text.toUtf8())
{ }

} // namespace storage
