// Ways through index trees. The pages above the leaves lead; the leaves' links to each other must say the same.
#include "platform/jet/IndexWalk.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/IndexKey.h"

using namespace Qt::StringLiterals;
using storage::Bytes;

namespace jet {

namespace {

constexpr std::size_t maxDepth = 16; // a tree of that depth would not fit any file

/// The entries between which those of the child at the path's end must lie; empty where there is no limit.
struct Limits {
    Bytes above{}; ///< all are larger
    Bytes upTo{}; ///< none is larger
};

Limits limitsOfChild(const IndexPath &path)
{
    Limits limits;
    for (auto step = path.rbegin(); step != path.rend(); ++step) {
        if (limits.above.empty() && step->position > 0)
            limits.above = step->node.entry(step->position - 1);
        if (limits.upTo.empty() && step->position < step->node.count())
            limits.upTo = step->node.entry(step->position);
    }
    return limits;
}

/// `first` and `last` are the entries at the ends of a page.
void requireBetween(Bytes first, Bytes last, const Limits &limits, PageNo number, PageNo parent)
{
    if (!limits.above.empty() && compareKeys(first, limits.above) <= 0)
        damaged(number, u"ihre Einträge beginnen vor dem Ende der vorigen Seite des Index"_s);
    if (!limits.upTo.empty() && compareKeys(last, limits.upTo) > 0)
        damaged(number, u"ihre Einträge enden hinter dem, was Seite %1 über sie sagt"_s.arg(parent));
}

std::size_t findTarget(const IndexNode &node, const IndexWalk::Target &target)
{
    std::size_t low = 0;
    std::size_t high = node.count();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const int order = compareWithStart(node.key(middle), target.key);
        if (order < 0 || (order == 0 && target.behind))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void requireFirst(const IndexNode &leaf)
{
    if (leaf.previous() != 0)
        damaged(leaf.number(), u"vor ihr steht Seite %1, der Index beginnt aber hier"_s.arg(leaf.previous()));
}

void requireLast(const IndexNode &leaf)
{
    if (leaf.next() != 0)
        damaged(leaf.number(), u"hinter ihr folgt Seite %1, der Index endet aber hier"_s.arg(leaf.next()));
}

void checkNeighbours(const IndexNode &left, const IndexNode &right)
{
    if (left.next() != right.number()) {
        damaged(left.number(), u"ihre nächste Seite im Index ist %1 statt %2"_s.arg(left.next()).arg(right.number()));
    }
    if (right.previous() != left.number()) {
        damaged(right.number(),
                u"ihre vorige Seite im Index ist %1 statt %2"_s.arg(right.previous()).arg(left.number()));
    }
}

} // namespace

IndexWalk::IndexWalk(PageStore &store, PageNo root, PageNo owner)
    : m_store(store)
    , m_root(root)
    , m_owner(owner)
{ }

IndexNode IndexWalk::readChild(const IndexPath &path) const
{
    const IndexStep &parent = path.back();
    const PageNo number = parent.node.child(parent.position);
    if (path.size() >= maxDepth)
        damaged(number, u"der Index führt im Kreis"_s);
    IndexNode node = IndexNode::read(m_store, number, m_owner);
    if (node.count() == 0)
        return node;
    requireBetween(node.entry(0), node.entry(node.count() - 1), limitsOfChild(path), number, parent.node.number());
    return node;
}

template <typename Choose> void IndexWalk::descendFrom(IndexPath &path, const Choose &choose) const
{
    while (!path.back().node.isLeaf()) {
        IndexNode node = readChild(path);
        const std::size_t position = choose(node);
        path.push_back({std::move(node), position});
    }
}

template <typename Choose> IndexPath IndexWalk::descend(const Choose &choose) const
{
    IndexNode root = IndexNode::read(m_store, m_root, m_owner);
    const std::size_t position = choose(root);
    IndexPath path;
    path.push_back({std::move(root), position});
    descendFrom(path, choose);
    return path;
}

IndexPath IndexWalk::toTarget(const Target &target) const
{
    return descend([&target](const IndexNode &node) { return findTarget(node, target); });
}

IndexPath IndexWalk::toEntry(Bytes entry) const
{
    return descend([entry](const IndexNode &node) { return node.find(entry); });
}

std::optional<IndexPlace> IndexWalk::placeOf(Bytes entry) const
{
    IndexPage page(m_store, m_root, m_owner);
    KeyBytes above;
    KeyBytes upTo;
    for (std::size_t depth = 1; page.isSearchable(); ++depth) {
        const std::size_t place = page.find(entry);
        if (page.isLeaf())
            return IndexPlace{std::move(page), place};
        if (place > 0)
            above = page.entry(page.before(place));
        if (place < page.end())
            upTo = page.entry(place);
        const PageNo number = page.child(place);
        if (depth >= maxDepth)
            damaged(number, u"der Index führt im Kreis"_s);
        IndexPage child(m_store, number, m_owner);
        if (child.end() > 0)
            requireBetween(child.entry(0), child.entry(child.before(child.end())), {above, upTo}, number,
                           page.number());
        page = std::move(child);
    }
    return std::nullopt;
}

IndexPath IndexWalk::toStart() const
{
    IndexPath path = descend([](const IndexNode &) { return std::size_t{0}; });
    requireFirst(path.back().node);
    return path;
}

IndexPath IndexWalk::toEnd() const
{
    IndexPath path = descend([](const IndexNode &node) { return node.count(); });
    requireLast(path.back().node);
    return path;
}

bool IndexWalk::nextLeaf(IndexPath &path) const
{
    const auto turn = std::find_if(path.rbegin() + 1, path.rend(),
                                   [](const IndexStep &step) { return step.position < step.node.count(); });
    const IndexNode left = path.back().node;
    if (turn == path.rend()) {
        requireLast(left);
        return false;
    }
    path.erase(turn.base(), path.end());
    ++path.back().position;
    descendFrom(path, [](const IndexNode &) { return std::size_t{0}; });
    checkNeighbours(left, path.back().node);
    return true;
}

bool IndexWalk::previousLeaf(IndexPath &path) const
{
    const auto turn
        = std::find_if(path.rbegin() + 1, path.rend(), [](const IndexStep &step) { return step.position > 0; });
    const IndexNode right = path.back().node;
    if (turn == path.rend()) {
        requireFirst(right);
        return false;
    }
    path.erase(turn.base(), path.end());
    --path.back().position;
    descendFrom(path, [](const IndexNode &node) { return node.count(); });
    checkNeighbours(path.back().node, right);
    return true;
}

} // namespace jet
