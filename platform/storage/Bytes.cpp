// The bounds check behind every read from a file's bytes.
#include "platform/storage/Bytes.h"

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

void refuseBytes(std::size_t available, std::size_t offset, std::size_t size)
{
    throw StorageError(StorageError::Damaged,
                       u"%1 Bytes ab Stelle %2 liegen außerhalb von %3 Bytes"_s.arg(size).arg(offset).arg(available));
}

} // namespace storage
