#pragma once

#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/storage/StorageError.h"

namespace jet {

/// Reports a page that contradicts itself or another: StorageError::Damaged with its number and the reason (German).
[[noreturn]] void damaged(PageNo page, const QString &reason);

/// The same for something that is not bound to one page.
[[noreturn]] void damaged(const QString &reason);

/// The same error, with the place in front of its text unless it is there already.
storage::StorageError located(const storage::StorageError &error, const QString &place);

/// Runs `work`; a StorageError::Damaged out of it also names the place, which `place()` yields.
template <typename Place, typename Work> decltype(auto) withPlace(const Place &place, const Work &work)
{
    try {
        return work();
    } catch (const storage::StorageError &error) {
        if (error.kind() != storage::StorageError::Damaged)
            throw;
        throw located(error, place());
    }
}

} // namespace jet
