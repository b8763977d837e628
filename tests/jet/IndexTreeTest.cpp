// Index trees against a model in memory.
#include <functional>
#include <random>

#include <gmock/gmock.h>

#include "tests/jet/TestIndex.h"

using jet::IndexNode;
using jet::IndexTree;
using jet::KeyBytes;
using jet::PageNo;
using jet::RowPointer;
using Kind = storage::StorageError::Kind;

namespace {

class IndexTrees : public testing::TestWithParam<FileKind>
{
protected:
    Index index{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Versions, IndexTrees, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());

} // namespace

TEST_P(IndexTrees, AgreeWithTheModelWhateverHappens)
{
    struct Row {
        const char *name;
        std::function<std::size_t(std::mt19937 &)> length;
        unsigned distinct;
    };
    const Row rows[] = {
        {"short keys, many equal", [](std::mt19937 &) { return std::size_t{3}; }, 50},
        {"long keys of one length", [](std::mt19937 &) { return std::size_t{200}; }, 1U << 20},
        {"keys of all lengths", [](std::mt19937 &random) { return 1 + random() % 800; }, 1U << 20},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        std::mt19937 random(4711); // NOLINT: the same in every run
        const auto insert = [&] {
            const KeyBytes key = numbered(random() % row.distinct, row.length(random));
            const RowPointer where{1 + static_cast<PageNo>(random() % 5000), static_cast<std::uint8_t>(random() % 50)};
            if (!index.model.contains(jet::indexEntry(key, where)))
                index.insert(key, where);
        };
        // First it grows, then it shrinks until nothing is left.
        for (const unsigned share : {80U, 50U, 20U}) {
            for (int step = 0; step < 3000; ++step) {
                if (index.model.empty() || random() % 100 < share)
                    insert();
                else
                    index.removeAny(random() % index.model.size());
                if (step % 500 == 0)
                    index.check();
            }
        }
        while (!index.model.empty())
            index.removeAny(random() % index.model.size());
        EXPECT_EQ(index.check(), 0U);
    }
}

TEST_P(IndexTrees, OfThreeLevelsGrowAndGo)
{
    constexpr std::size_t count = 4000;
    const std::size_t length = GetParam().jet4() ? 400 : 200;
    for (const bool ascending : {true, false}) {
        for (std::size_t i = 0; i < count; ++i)
            index.insert(numberedInFront(ascending ? i : count - i, length), {9, 1});
        EXPECT_GE(index.check(), 2U);
        // Ascending keys leave full pages
        EXPECT_TRUE(!ascending || index.store.pageCount() < 700U);
        for (std::size_t left = count; left > 0; --left) {
            index.removeAny(ascending ? 0 : left - 1);
            if (left % 1000 == 0)
                index.check();
        }
        EXPECT_EQ(index.check(), 0U);
    }
}

TEST_P(IndexTrees, AreBuiltAsAWholeToo)
{
    for (const std::size_t count : {0U, 1U, 5U, 100U, 3000U}) {
        index.model.clear();
        for (std::size_t i = 0; i < count; ++i)
            index.model[jet::indexEntry(numbered(i, 300), {5, 5})] = {numbered(i, 300), {5, 5}};
        index.tree().rebuild(index.entries());
        index.check();
        index.insert(numbered(count / 2, 299), {5, 5});
        index.check();
    }
}

TEST_P(IndexTrees, RefuseDuplicatesWhereTheyAreNotWanted)
{
    using enum IndexTree::Inserted;
    const auto insert = [&](const char *key, RowPointer row) {
        return index.insert(bytes(key), row, IndexTree::Duplicates::Refused);
    };
    EXPECT_EQ(insert("b", {3, 1}), NewKey);
    EXPECT_EQ(insert("b", {2, 1}), Refused);
    EXPECT_EQ(insert("b", {4, 1}), Refused);
    EXPECT_EQ(insert("bb", {4, 1}), NewKey);
    EXPECT_EQ(index.insert(bytes("b"), {4, 1}), KnownKey);
    EXPECT_TRUE(index.tree().contains(bytes("bb")));
    EXPECT_FALSE(index.tree().contains(bytes("a")));
    EXPECT_EQ(kindOf([&] { index.insert(KeyBytes(index.store.pageSize() / 2), {1, 1}); }), Kind::TooLong);
    EXPECT_EQ(kindOf([&] { index.insert(bytes("b"), {4, 1}); }), Kind::Damaged);
    EXPECT_EQ(kindOf([&] { index.tree().remove(bytes("a"), {1, 1}); }), Kind::Damaged);
    index.check();
}

TEST_P(IndexTrees, GiveRangesInBothDirections)
{
    for (const char *key : {"a1", "a2", "b1", "b2", "c1"})
        index.insert(bytes(key), {1, 1});
    for (std::size_t i = 0; i < 600; ++i) // smaller ones, so that there are several pages
        index.insert(numbered(i, 100), {1, 1});
    // clang-format off
    struct Row { const char *name; jet::KeyBound lower; std::optional<jet::KeyBound> upper; QByteArray keys; };
    const Row rows[] = {
        {"from a key on",      {bytes("b1"), true},  {},                          "b1 b2 c1 "},
        {"behind a key",       {bytes("b1"), false}, {},                          "b2 c1 "},
        {"all of a beginning", {bytes("a"), true},   {{bytes("a"), true}},   "a1 a2 "},
        {"behind a beginning", {bytes("a"), false},  {{bytes("c"), false}},  "b1 b2 "},
        {"up to a beginning",  {bytes("a2"), true},  {{bytes("b"), true}},   "a2 b1 b2 "},
        {"nothing between",    {bytes("a2"), false}, {{bytes("b1"), false}}, ""},
        {"the wrong way round", {bytes("c"), true},  {{bytes("a"), true}},   ""},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        for (const bool backwards : {false, true}) {
            jet::IndexCursor cursor(index.store, index.def, owner, row.lower, row.upper, backwards);
            QByteArray keys;
            while (cursor.next()) {
                const QByteArray key(reinterpret_cast<const char *>(cursor.key().data()),
                                     qsizetype(cursor.key().size()));
                keys = backwards ? key + ' ' + keys : keys + key + ' ';
            }
            EXPECT_EQ(keys, row.keys);
        }
    }
}

TEST_P(IndexTrees, ReportDamageInsteadOfFewerEntries)
{
    for (std::size_t i = 0; i < 2000; ++i)
        index.insert(numbered(i, 60), {1, 1});
    const IndexNode root = IndexNode::read(index.store, index.def.rootPage, owner);
    const PageNo leaf = root.child(1);
    const std::size_t links = GetParam().jet4() ? 12 : 8;
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
        {"no next page", leaf, links + 4, 0},
        {"next page is the page itself", leaf, links + 4, leaf},
        {"wrong previous page", leaf, links, 1},
        {"entries out of order", leaf, entriesAt, 0xFF},
        {"child is the root", root.number(), entriesAt + 67, root.number()},
        {"no tail", root.number(), links + 8, 0},
        {"child does not exist", root.number(), entriesAt + 65, 0xFF},
        {"separator below its child", root.number(), entriesAt + 59, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const jet::PageScope damage(index.store); // taken back
        index.store.modify(row.page)[row.offset] = static_cast<std::byte>(row.value);
        EXPECT_THROW(index.walk(false), std::exception);
        EXPECT_THROW(index.walk(true), std::exception);
    }
}
