// Pages of index trees searched and added to as they are stored, beside the same pages decoded.
#include <functional>
#include <random>
#include <utility>

#include "tests/jet/TestIndex.h"

using jet::IndexNode;
using jet::IndexPage;
using jet::IndexTree;
using jet::KeyBytes;
using jet::PageNo;

namespace {

/// Whether the stored page says the same as the decoded one about the entry and those beside it.
void expectAgreement(const IndexNode &node, const jet::IndexPage &page, storage::Bytes wanted)
{
    const std::size_t position = node.find(wanted);
    const std::size_t place = page.find(wanted);
    const auto isSame = [](const KeyBytes &entry, storage::Bytes other) { return std::ranges::equal(entry, other); };
    ASSERT_EQ(place == page.end(), position == node.count());
    EXPECT_TRUE(place == page.end() || isSame(page.entry(place), node.entry(position)));
    EXPECT_EQ(place == 0, position == 0);
    EXPECT_TRUE(place == 0 || isSame(page.entry(page.before(place)), node.entry(position - 1)));
    EXPECT_TRUE(node.isLeaf() || page.child(place) == node.child(position));
}

class IndexPages : public testing::TestWithParam<FileKind>
{
protected:
    Index index{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Versions, IndexPages, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());

} // namespace

TEST_P(IndexPages, AreSearchedAndAddedToInPlaceAsDecodedPagesAre)
{
    // clang-format off
    struct Row { const char *name; std::function<KeyBytes(unsigned)> key; };
    const Row rows[] = {
        {"nothing in common",    [](unsigned number) { return numberedInFront(number * 7919U, 9); }},
        {"a common beginning",   [](unsigned number) { return numbered(number % 65'521U, 60); }},
        {"more and more of it",  [](unsigned number) { return numbered(number % 200U, 90); }},
        {"keys of all lengths",  [](unsigned number) { return numbered(number, 4 + number % 90U); }},
        {"equal keys",           [](unsigned number) { return numbered(number % 3U, 5); }},
        {"parts of one another", [](unsigned number) { return KeyBytes(1 + number % 120U, std::byte{0x41}); }},
    };
    // clang-format on
    const PageNo root = index.def.rootPage;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        IndexTree::format(index.store, root, owner);
        std::mt19937 random(815); // NOLINT: the same in every run
        const auto draw = [&random] { return static_cast<unsigned>(random()); };
        int inPlace = 0;
        for (int step = 0; step < 600; ++step) {
            const KeyBytes entry = jet::indexEntry(row.key(draw()), {1 + draw() % 9999, 7});
            IndexNode node = IndexNode::read(index.store, root, owner);
            const IndexPage page(index.store, root, owner);
            expectAgreement(node, page, entry);
            const std::size_t position = node.find(entry);
            if (position < node.count() && std::ranges::equal(node.entry(position), entry))
                continue;
            const jet::Page before = *index.store.read(root);
            node.insert(position, entry);
            if (!node.fits())
                break;
            node.write(index.store);
            const jet::Page expected = std::exchange(index.store.modify(root), before);
            const IndexPage stored(index.store, root, owner);
            if (stored.hasRoomFor(entry, stored.find(entry))) {
                stored.insert(index.store, entry, stored.find(entry));
                EXPECT_EQ(*index.store.read(root), expected) << "step " << step;
                ++inPlace;
            }
            index.store.modify(root) = expected;
        }
        EXPECT_GT(inPlace, 20);
    }
}

TEST_P(IndexPages, AreSearchedInPlaceAboveTheLeavesToo)
{
    for (std::size_t i = 0; i < 3000; ++i)
        index.insert(numbered(i * 2, 60), {1, 1});
    const IndexNode node = IndexNode::read(index.store, index.def.rootPage, owner);
    const IndexPage page(index.store, index.def.rootPage, owner);
    ASSERT_FALSE(page.isLeaf());
    for (std::size_t i = 0; i < 6002; ++i)
        expectAgreement(node, page, jet::indexEntry(numbered(i, 60), {1, 1}));
}

TEST_P(IndexPages, AreCheckedAgainBeforeAnEntryIsAddedWhenTheyHaveChanged)
{
    for (std::size_t i = 0; i < 2000; ++i)
        index.insert(numbered(i, 60), {1, 1});
    const PageNo root = index.def.rootPage;
    const PageNo leaf = IndexNode::read(index.store, root, owner).tail();
    const std::size_t entriesAt = GetParam().jet4() ? 0x1E0 : 0xF8;
    struct Row {
        const char *name;
        PageNo page;
        std::size_t offset;
        unsigned value;
    };
    const Row rows[] = {
        {"wrong type", leaf, 0, 7},
        {"wrong owner", leaf, 4, 1},
        {"free space that does not fit", leaf, 2, 0xEE},
        {"entries out of order", leaf, entriesAt + 58, 0xFF},
        {"an entry without an end", leaf, entriesAt - 1, 0xFF},
        {"a separator out of order", root, entriesAt, 0xFF},
        {"no tail", root, GetParam().jet4() ? 20U : 16U, 0},
    };
    index.insert(numbered(3000, 60), {1, 1}); // all on the way are known to be sound
    ASSERT_TRUE(index.store.isSound(leaf) && index.store.isSound(root));
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const jet::PageScope damage(index.store); // taken back
        index.store.modify(row.page)[row.offset] = static_cast<std::byte>(row.value);
        EXPECT_THROW(index.tree().insert(numbered(4000, 60), {1, 1}, IndexTree::Duplicates::Allowed), std::exception);
    }
    index.insert(numbered(4000, 60), {1, 1});
    index.check();
}
