#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet {

using PageNo = std::uint32_t; // 0 is the page that holds the file header

/// One page's bytes, decrypted, exactly pageSize() long.
using Page = std::vector<std::byte>;
using PagePtr = std::shared_ptr<const Page>;

/// A file seen as an array of equally large pages, read through a bounded cache.
///
/// Writes go to copies that belong to the open write scope: reads inside it see them, the file sees them all at the
/// scope's commit or none of them. Throws StorageError: Damaged for a page that is torn or beyond the end,
/// ReadOnly for a write into a file opened for reading.
class PageStore
{
public:
    virtual ~PageStore() = default;

    virtual bool isJet4() const = 0; ///< pages of 4096 bytes, else Jet 3 with 2048
    virtual std::size_t pageSize() const = 0;
    virtual PageNo pageCount() const = 0; ///< appended pages of the open write scope included

    virtual PagePtr read(PageNo number) = 0;
    /// The scope's copy of a page. The reference holds until the scope ends.
    virtual Page &modify(PageNo number) = 0;
    /// Takes a free page, or a new one at the end; it is all zero.
    virtual PageNo allocate() = 0;
    /// Gives a page back to the file's free pages.
    virtual void release(PageNo number) = 0;

    /// Whether the page's content is the one for which noteSound() was called; whoever has checked it all needs not do
    /// so again. Any change ends that, whoever makes it.
    virtual bool isSound(PageNo number) const = 0;
    virtual void noteSound(PageNo number) = 0;
};

} // namespace jet
