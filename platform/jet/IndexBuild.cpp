// Builds a whole index tree from ordered entries: full leaves from left to right, then level upon level.
#include "platform/jet/IndexBuild.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/jet/IndexNode.h"
#include "platform/jet/UsageMap.h"

namespace jet {

namespace {

class Builder
{
public:
    Builder(PageStore &store, const IndexDef &index, PageNo owner)
        : m_store(store)
        , m_index(index)
        , m_owner(owner)
    { }

    void build(std::span<const KeyBytes> entries)
    {
        if (fillRoot(entries))
            return;
        std::vector<Child> children = buildLeaves(entries);
        std::uint8_t level = 1;
        while (!fillRoot(children, level))
            children = buildLevel(children, level++);
    }

private:
    struct Child {
        KeyBytes last;
        PageNo page;
    };

    IndexNode newNode(std::uint8_t level)
    {
        const PageNo number = m_store.allocate();
        UsageMap(m_store, m_index.map).add(number);
        return {m_store, number, m_owner, level};
    }

    bool fillRoot(std::span<const KeyBytes> entries)
    {
        IndexNode root(m_store, m_index.rootPage, m_owner, 0);
        for (const KeyBytes &entry : entries) {
            root.insert(root.count(), entry);
            if (!root.fits())
                return false;
        }
        root.write(m_store);
        return true;
    }

    std::vector<Child> buildLeaves(std::span<const KeyBytes> entries)
    {
        std::vector<Child> leaves;
        IndexNode leaf = newNode(0);
        for (const KeyBytes &entry : entries) {
            leaf.insert(leaf.count(), entry);
            if (leaf.fits())
                continue;
            leaf.erase(leaf.count() - 1, leaf.count());
            IndexNode next = newNode(0);
            leaf.setLinks(leaf.previous(), next.number());
            next.setLinks(leaf.number(), 0);
            finish(leaf, leaves);
            leaf = std::move(next);
            leaf.insert(0, entry);
        }
        finish(leaf, leaves);
        return leaves;
    }

    void finish(const IndexNode &leaf, std::vector<Child> &leaves)
    {
        leaf.write(m_store);
        const storage::Bytes last = leaf.entry(leaf.count() - 1);
        leaves.push_back({{last.begin(), last.end()}, leaf.number()});
    }

    bool fillRoot(const std::vector<Child> &children, std::uint8_t level)
    {
        IndexNode root(m_store, m_index.rootPage, m_owner, level);
        if (fill(root, children) != children.size())
            return false;
        root.write(m_store);
        linkChildren(children, level);
        return true;
    }

    /// Gives a page as many children as it holds, the last of them as its tail; returns their number. A single one is
    /// never left over.
    static std::size_t fill(IndexNode &node, std::span<const Child> children)
    {
        std::size_t taken = 0;
        for (; taken + 1 < children.size(); ++taken) {
            node.insert(taken, children[taken].last, children[taken].page);
            if (!node.fits()) {
                node.erase(taken, taken + 1);
                break;
            }
        }
        if (taken + 2 == children.size()) {
            --taken;
            node.erase(taken, taken + 1);
        }
        node.setChild(node.count(), children[taken].page);
        return taken + 1;
    }

    std::vector<Child> buildLevel(std::span<const Child> children, std::uint8_t level)
    {
        std::vector<Child> nodes;
        while (!children.empty()) {
            IndexNode node = newNode(level);
            const std::size_t taken = fill(node, children);
            node.write(m_store);
            linkChildren(children.first(taken), level);
            nodes.push_back({children[taken - 1].last, node.number()});
            children = children.subspan(taken);
        }
        return nodes;
    }

    /// Leaves are linked already; above them, the children of one page are.
    void linkChildren(std::span<const Child> children, std::uint8_t level)
    {
        for (std::size_t i = 0; level > 1 && i < children.size(); ++i) {
            IndexNode node = IndexNode::read(m_store, children[i].page, m_owner);
            node.setLinks(i == 0 ? 0 : children[i - 1].page, i + 1 == children.size() ? 0 : children[i + 1].page);
            node.write(m_store);
        }
    }

    PageStore &m_store;
    const IndexDef &m_index;
    PageNo m_owner;
};

} // namespace

void buildIndexTree(PageStore &store, const IndexDef &index, PageNo owner, std::span<const KeyBytes> entries)
{
    Builder(store, index, owner).build(entries);
}

} // namespace jet
