#pragma once

#include <optional>

#include "acthost/ContactBook.h"

namespace acthost {

/// The contacts that one contact window looks at: all of them, the one that was looked up, or none.
/// The book must outlive it.
class Lookup
{
public:
    /// All contacts, standing on `current`.
    Lookup(ContactBook &book, std::optional<storage::RowId> current);

    /// Looks at all contacts, read anew. The current one stays current; if there is none, the first becomes it.
    void all();
    /// Looks at the contact with this identifier alone, or at none.
    void only(const QString &uniqueId);

    int count() const;
    std::optional<storage::RowId> current() const { return m_current; }
    /// Throws RunTimeError (3021) when no contact is current.
    storage::RowId requireCurrent() const;

private:
    ContactBook &m_book;
    std::optional<storage::RowId> m_current;
    bool m_all = true;
};

} // namespace acthost
