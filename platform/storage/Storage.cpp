// What the drivers share.
#include "platform/storage/Storage.h"

namespace storage {

std::optional<int> TableSchema::find(const QString &column) const
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name.compare(column, Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    }
    return std::nullopt;
}

bool Cursor::readText(int, QString &) const
{
    return false;
}

} // namespace storage
