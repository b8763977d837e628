// The wording of damage reports.
#include "platform/jet/Damage.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

void damaged(PageNo page, const QString &reason)
{
    throw StorageError(StorageError::Damaged, u"Seite %1: %2"_s.arg(page).arg(reason));
}

void damaged(const QString &reason)
{
    throw StorageError(StorageError::Damaged, reason);
}

StorageError located(const StorageError &error, const QString &place)
{
    if (error.text().startsWith(place))
        return error;
    return {error.kind(), u"%1: %2"_s.arg(place, error.text()), error.item()};
}

} // namespace jet
