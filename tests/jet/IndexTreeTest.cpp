// Index trees against a model in memory.
#include <algorithm>
#include <functional>
#include <random>
#include <set>

#include <gmock/gmock.h>

#include "platform/jet/DataPage.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/StorageError.h"
#include "tests/jet/MemoryStore.h"

using jet::IndexNode;
using jet::IndexTree;
using jet::KeyBytes;
using jet::PageNo;
using jet::RowPointer;
using storage::StorageError;

namespace {

constexpr PageNo owner = 77;

/// An empty index in a file of its own, and what should be in it.
class Index
{
public:
    explicit Index(bool jet4)
        : store(jet4)
    {
        const PageNo mapPage = store.allocate();
        auto writer = jet::DataPageWriter::init(store, mapPage, 0);
        def.map = {mapPage, writer.append(jet::UsageMap::emptyRow(store))};
        def.rootPage = store.allocate();
        jet::UsageMap(store, def.map).add(def.rootPage);
        IndexTree::format(store, def.rootPage, owner);
    }

    IndexTree tree() { return {store, def, owner}; }

    void insert(const KeyBytes &key, RowPointer row)
    {
        tree().insert(key, row, IndexTree::Duplicates::Allowed);
        model.insert(jet::indexEntry(key, row));
    }

    void removeAny(std::size_t position)
    {
        const auto entry = std::next(model.begin(), static_cast<std::ptrdiff_t>(position));
        const storage::Bytes bytes = *entry;
        const storage::Bytes row = bytes.last(4);
        std::uint32_t number = 0;
        for (const std::byte byte : row)
            number = number << 8 | std::to_integer<std::uint32_t>(byte);
        tree().remove(bytes.first(bytes.size() - 4), RowPointer::fromNumber(number));
        model.erase(entry);
    }

    std::vector<KeyBytes> walk(bool backwards)
    {
        std::vector<KeyBytes> entries;
        jet::IndexCursor cursor(store, def, owner, {}, {}, backwards);
        while (cursor.next())
            entries.emplace_back(cursor.entry().begin(), cursor.entry().end());
        return entries;
    }

    /// The height of the tree; its pages are added to `pages`.
    std::size_t visit(PageNo number, std::set<PageNo> &pages)
    {
        EXPECT_TRUE(pages.insert(number).second) << "page " << number;
        const IndexNode node = IndexNode::read(store, number, owner);
        if (node.isLeaf())
            return 0;
        EXPECT_GT(node.count(), 0U) << "page " << number;
        const std::size_t height = visit(node.tail(), pages) + 1;
        for (std::size_t i = 0; i < node.count(); ++i)
            EXPECT_EQ(visit(node.child(i), pages) + 1, height);
        EXPECT_EQ(node.level(), height);
        return height;
    }

    /// Compares everything with the model; returns the tree's height.
    std::size_t check()
    {
        std::vector<KeyBytes> expected(model.begin(), model.end());
        EXPECT_TRUE(walk(false) == expected);
        std::ranges::reverse(expected);
        EXPECT_TRUE(walk(true) == expected);
        std::set<PageNo> pages;
        const std::size_t height = visit(def.rootPage, pages);
        EXPECT_THAT(jet::UsageMap(store, def.map).pages(), testing::ElementsAreArray(pages));
        const std::size_t mapPages = 1 + jet::UsageMap(store, def.map).ownPages().size();
        EXPECT_EQ(pages.size() + store.freeCount() + mapPages + 1, store.pageCount()); // 1: the header
        return height;
    }

    MemoryStore store;
    jet::IndexDef def{};
    std::set<KeyBytes> model{};
};

KeyBytes bytes(const QByteArray &text)
{
    const auto span = std::as_bytes(std::span(text));
    return {span.begin(), span.end()};
}

/// A key of `length` bytes with its number at the end, behind a beginning that all keys share.
KeyBytes numbered(std::size_t number, std::size_t length)
{
    KeyBytes key(length, std::byte{0x41});
    for (std::size_t i = 0; i < 4 && i < length; ++i)
        key[length - 1 - i] = static_cast<std::byte>(number >> (8 * i) & 0xFF);
    return key;
}

/// The same with its number in front, so that keys have no beginning in common.
KeyBytes numberedInFront(std::size_t number, std::size_t length)
{
    KeyBytes key = numbered(number, length);
    std::ranges::rotate(key, key.end() - 4);
    return key;
}

class IndexTrees : public testing::TestWithParam<bool>
{ };

std::string versionName(const testing::TestParamInfo<bool> &version)
{
    return version.param ? "Jet4" : "Jet3";
}
INSTANTIATE_TEST_SUITE_P(Versions, IndexTrees, testing::Bool(), versionName);

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
        Index index(GetParam());
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
    const std::size_t length = GetParam() ? 400 : 200;
    for (const bool ascending : {true, false}) {
        Index index(GetParam());
        for (std::size_t i = 0; i < count; ++i)
            index.insert(numberedInFront(ascending ? i : count - i, length), {9, 1});
        EXPECT_GE(index.check(), 2U);
        // Ascending keys leave full pages
        if (ascending) {
            EXPECT_LT(index.store.pageCount(), 700U);
        }
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
        Index index(GetParam());
        for (std::size_t i = 0; i < count; ++i)
            index.model.insert(jet::indexEntry(numbered(i, 300), {5, 5}));
        const std::vector<KeyBytes> entries(index.model.begin(), index.model.end());
        index.tree().rebuild(entries);
        index.check();
        index.insert(numbered(count / 2, 299), {5, 5});
        index.check();
    }
}

TEST_P(IndexTrees, RefuseDuplicatesWhereTheyAreNotWanted)
{
    Index index(GetParam());
    using enum IndexTree::Inserted;
    const auto insert = [&](const char *key, RowPointer row) {
        return index.tree().insert(bytes(key), row, IndexTree::Duplicates::Refused);
    };
    EXPECT_EQ(insert("b", {3, 1}), NewKey);
    EXPECT_EQ(insert("b", {2, 1}), Refused);
    EXPECT_EQ(insert("b", {4, 1}), Refused);
    EXPECT_EQ(insert("bb", {4, 1}), NewKey);
    EXPECT_EQ(index.tree().insert(bytes("b"), {4, 1}, IndexTree::Duplicates::Allowed), KnownKey);
    EXPECT_TRUE(index.tree().contains(bytes("bb")));
    EXPECT_FALSE(index.tree().contains(bytes("a")));
    EXPECT_THROW(index.tree().insert(KeyBytes(index.store.pageSize() / 2), {1, 1}, IndexTree::Duplicates::Allowed),
                 StorageError);
    EXPECT_THROW(index.tree().insert(bytes("b"), {4, 1}, IndexTree::Duplicates::Allowed), StorageError);
    EXPECT_THROW(index.tree().remove(bytes("a"), {1, 1}), StorageError);
}

TEST_P(IndexTrees, GiveRangesInBothDirections)
{
    Index index(GetParam());
    for (const char *key : {"a1", "a2", "b1", "b2", "c1"})
        index.insert(bytes(key), {1, 1});
    for (std::size_t i = 0; i < 600; ++i) // smaller ones, so that there are several pages
        index.insert(numbered(i, 100), {1, 1});
    // clang-format off
    struct Row {
        const char *name; const char *lower; bool lowerIn; const char *upper; bool upperIn;
        std::vector<std::string> keys;
    };
    const Row rows[] = {
        {"from a key on",        "b1", true, nullptr, true, {"b1", "b2", "c1"}},
        {"behind a key",         "b1", false, nullptr, true, {"b2", "c1"}},
        {"all of a beginning",   "a", true, "a", true, {"a1", "a2"}},
        {"behind a beginning",   "a", false, "c", false, {"b1", "b2"}},
        {"up to a beginning",    "a2", true, "b", true, {"a2", "b1", "b2"}},
        {"nothing between",      "a2", false, "b1", false, {}},
        {"ends the wrong way round", "c", true, "a", true, {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        for (const bool backwards : {false, true}) {
            std::optional<jet::KeyBound> upper;
            if (row.upper)
                upper = jet::KeyBound{bytes(row.upper), row.upperIn};
            jet::IndexCursor cursor(index.store, index.def, owner, jet::KeyBound{bytes(row.lower), row.lowerIn}, upper,
                                    backwards);
            std::vector<std::string> keys;
            while (cursor.next())
                keys.emplace_back(reinterpret_cast<const char *>(cursor.key().data()), cursor.key().size());
            if (backwards)
                std::ranges::reverse(keys);
            EXPECT_EQ(keys, row.keys);
        }
    }
}

TEST_P(IndexTrees, ReportDamageInsteadOfFewerEntries)
{
    const auto fill = [](Index &index) {
        for (std::size_t i = 0; i < 2000; ++i)
            index.insert(numbered(i, 60), {1, 1});
    };
    Index sound(GetParam());
    fill(sound);
    const IndexNode root = IndexNode::read(sound.store, sound.def.rootPage, owner);
    const std::size_t links = GetParam() ? 12 : 8;
    const std::size_t entriesAt = GetParam() ? 0x1E0 : 0xF8;
    struct Row {
        const char *name;
        PageNo page;
        std::size_t offset;
        unsigned char value;
    };
    const Row rows[] = {
        {"wrong type", root.child(1), 0, 7},
        {"wrong owner", root.child(1), 4, 1},
        {"free space that does not fit", root.child(1), 2, 0xEE},
        {"no next page", root.child(1), links + 4, 0},
        {"next page is the page itself", root.child(1), links + 4, static_cast<unsigned char>(root.child(1))},
        {"wrong previous page", root.child(1), links, 1},
        {"entries out of order", root.child(1), entriesAt, 0xFF},
        {"child is the root", root.number(), entriesAt + 67, static_cast<unsigned char>(root.number())},
        {"no tail", root.number(), links + 8, 0},
        {"child does not exist", root.number(), entriesAt + 65, 0xFF},
        {"separator below its child", root.number(), entriesAt + 59, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Index index(GetParam());
        fill(index);
        index.store.modify(row.page)[row.offset] = std::byte{row.value};
        EXPECT_THROW(index.walk(false), std::exception);
        EXPECT_THROW(index.walk(true), std::exception);
    }
}
