#pragma once

#include <algorithm>
#include <map>
#include <ranges>
#include <set>

#include <gmock/gmock.h>

#include "platform/jet/DataPage.h"
#include "platform/jet/Format.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/UsageMap.h"
#include "tests/jet/JetFileTest.h"

inline constexpr jet::PageNo owner = 77;

/// An empty index in a file of its own, and what should be in it.
struct Index {
    explicit Index(const FileKind &kind)
        : file(kind)
        , store(storage::systemFiles(), {file.path()})
    {
        const jet::PageNo mapPage = store.allocate();
        auto writer = jet::DataPageWriter::init(store, mapPage, 0);
        def.map = {mapPage, writer.append(jet::UsageMap::emptyRow(store))};
        othersPages = usedPages();
        def.rootPage = store.allocate();
        jet::UsageMap(store, def.map).add(def.rootPage);
        jet::IndexTree::format(store, def.rootPage, owner);
    }

    /// All but what the map of free pages needs itself.
    std::size_t usedPages()
    {
        const jet::UsageMap free(store, jet::globalFreeMap);
        std::size_t used = store.pageCount() - free.ownPages().size();
        for (jet::PageNo page = 0; page < store.pageCount(); ++page)
            used -= free.contains(page) ? 1 : 0;
        return used;
    }

    jet::IndexTree tree() { return {store, def, owner}; }
    jet::IndexTree::Inserted insert(const jet::KeyBytes &key, jet::RowPointer row,
                                    jet::IndexTree::Duplicates duplicates = jet::IndexTree::Duplicates::Allowed)
    {
        const auto inserted = tree().insert(key, row, duplicates);
        if (inserted != jet::IndexTree::Inserted::Refused)
            model[jet::indexEntry(key, row)] = {key, row};
        return inserted;
    }
    void removeAny(std::size_t position)
    {
        const auto entry = std::next(model.begin(), static_cast<std::ptrdiff_t>(position));
        tree().remove(entry->second.first, entry->second.second);
        model.erase(entry);
    }

    std::vector<jet::KeyBytes> walk(bool backwards)
    {
        std::vector<jet::KeyBytes> entries;
        jet::IndexCursor cursor(store, def, owner, {}, {}, backwards);
        while (cursor.next())
            entries.emplace_back(cursor.entry().begin(), cursor.entry().end());
        return entries;
    }

    /// The height of the tree; its pages are added to `pages`.
    std::size_t visit(jet::PageNo number, std::set<jet::PageNo> &pages)
    {
        EXPECT_TRUE(pages.insert(number).second) << "page " << number;
        const jet::IndexNode node = jet::IndexNode::read(store, number, owner);
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
        std::vector<jet::KeyBytes> expected = entries();
        EXPECT_TRUE(walk(false) == expected);
        std::ranges::reverse(expected);
        EXPECT_TRUE(walk(true) == expected);
        std::set<jet::PageNo> pages;
        const std::size_t height = visit(def.rootPage, pages);
        const jet::UsageMap map(store, def.map);
        EXPECT_THAT(map.pages(), testing::ElementsAreArray(pages));
        EXPECT_EQ(usedPages(), othersPages + pages.size() + map.ownPages().size());
        return height;
    }

    std::vector<jet::KeyBytes> entries() const
    {
        const auto keys = std::views::keys(model);
        return {keys.begin(), keys.end()};
    }

    TestFile file;
    jet::PageFile store;
    jet::PageScope scope{store}; // nothing of all this is ever written
    std::size_t othersPages = 0;
    jet::IndexDef def{};
    std::map<jet::KeyBytes, std::pair<jet::KeyBytes, jet::RowPointer>> model{}; // by whole entry
};

inline jet::KeyBytes bytes(const QByteArray &text)
{
    const auto span = std::as_bytes(std::span(text));
    return {span.begin(), span.end()};
}

/// A key of `length` bytes with its number at the end, behind a beginning that all keys share.
inline jet::KeyBytes numbered(std::size_t number, std::size_t length)
{
    jet::KeyBytes key(length, std::byte{0x41});
    for (std::size_t i = 0; i < 4 && i < length; ++i)
        key[length - 1 - i] = static_cast<std::byte>(number >> (8 * i) & 0xFF);
    return key;
}

/// The same with its number in front, so that keys have no beginning in common.
inline jet::KeyBytes numberedInFront(std::size_t number, std::size_t length)
{
    jet::KeyBytes key = numbered(number, length);
    std::ranges::rotate(key, key.end() - 4);
    return key;
}
