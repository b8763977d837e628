// Walks over ranges of an index.
#include "platform/jet/IndexCursor.h"

#include <utility>

namespace jet {

IndexCursor::IndexCursor(PageStore &store, const IndexDef &index, PageNo owner, std::optional<KeyBound> lower,
                         std::optional<KeyBound> upper, bool backwards)
    : m_walk(store, index.rootPage, owner)
    , m_lower(std::move(lower))
    , m_upper(std::move(upper))
    , m_backwards(backwards)
{ }

bool IndexCursor::next()
{
    if (m_ended)
        return false;
    if (m_path.empty())
        start();
    else if (!m_backwards)
        ++m_path.back().position;
    m_ended = !(m_backwards ? stepBackwards() : stepForwards()) || !isInside();
    return !m_ended;
}

/// Goes to the first entry of the range, or behind the last one when the way is backwards.
void IndexCursor::start()
{
    if (m_behind) {
        m_path = m_walk.toEntry(*m_behind);
        const IndexStep &last = m_path.back();
        if (!m_backwards && last.position < last.node.count() && compareKeys(entry(), *m_behind) == 0)
            ++m_path.back().position;
        return;
    }
    const std::optional<KeyBound> &bound = m_backwards ? m_upper : m_lower;
    if (bound)
        m_path = m_walk.toTarget({bound->key, m_backwards == bound->inclusive});
    else
        m_path = m_backwards ? m_walk.toEnd() : m_walk.toStart();
}

bool IndexCursor::stepForwards()
{
    while (m_path.back().position >= m_path.back().node.count()) {
        if (!m_walk.nextLeaf(m_path))
            return false;
    }
    return true;
}

bool IndexCursor::stepBackwards()
{
    while (m_path.back().position == 0) {
        if (!m_walk.previousLeaf(m_path))
            return false;
    }
    --m_path.back().position;
    return true;
}

bool IndexCursor::isInside() const
{
    const std::optional<KeyBound> &bound = m_backwards ? m_lower : m_upper;
    if (!bound)
        return true;
    const int order = compareWithStart(key(), bound->key);
    return order == 0 ? bound->inclusive : (order > 0) == m_backwards;
}

RowPointer IndexCursor::row() const
{
    return m_path.back().node.row(m_path.back().position);
}

storage::Bytes IndexCursor::key() const
{
    return m_path.back().node.key(m_path.back().position);
}

storage::Bytes IndexCursor::entry() const
{
    return m_path.back().node.entry(m_path.back().position);
}

} // namespace jet
