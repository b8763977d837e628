// The rules of a contact window's lookup.
#include "acthost/Lookup.h"

#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kNoCurrentRecord = 3021;

} // namespace

Lookup::Lookup(ContactBook &book, std::optional<storage::RowId> current)
    : m_book(book)
    , m_current(current)
{ }

void Lookup::all()
{
    m_book.reload();
    m_all = true;
    if (m_current && m_book.positionOf(*m_current))
        return;
    m_current = m_book.contacts().empty() ? std::nullopt : std::optional(m_book.contacts().front().row);
}

void Lookup::only(const QString &uniqueId)
{
    m_all = false;
    m_current = m_book.find(uniqueId);
}

int Lookup::count() const
{
    if (m_all)
        return static_cast<int>(m_book.contacts().size());
    return m_current ? 1 : 0;
}

storage::RowId Lookup::requireCurrent() const
{
    if (!m_current)
        throw RunTimeError(kNoCurrentRecord, u"Es ist kein Kontakt ausgewählt."_s);
    return *m_current;
}

} // namespace acthost
