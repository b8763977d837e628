#pragma once

#include <cstdint>

#include "platform/jet/Format.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// What a slot of a data page says about its row.
enum class SlotKind : std::uint8_t {
    Row,
    Moved, ///< four bytes that point to the row's body
    Body, ///< of a moved row; found through its pointer only
    Deleted
};

/// The tag in the owner field of long-value pages: "LVAL".
inline constexpr PageNo longValueOwner = 0x4C41564C;

/// A data page's rows, read only. Checked as a whole when made: StorageError::Damaged unless it is a data page whose
/// slots and free space agree. Holds the page.
class DataPage
{
public:
    DataPage(PageStore &store, PageNo number);

    PageNo number() const { return m_number; }
    PageNo owner() const { return m_owner; }
    /// Throws StorageError::Damaged unless the page belongs to `owner`.
    void requireOwner(PageNo owner) const;

    std::size_t slotCount() const { return m_slotCount; }
    std::size_t freeBytes() const { return m_free; }
    SlotKind kind(std::size_t slot) const;
    /// True when every slot is deleted.
    bool isVacant() const;
    /// The bytes of a row; of a deleted slot what is left. Valid as long as this object.
    storage::Bytes row(std::size_t slot) const;
    /// Where a moved row's body is.
    RowPointer target(std::size_t slot) const;

private:
    std::size_t offset(std::size_t slot) const;
    std::size_t end(std::size_t slot) const;
    void check() const;

    PagePtr m_page;
    const Format *m_format;
    PageNo m_number;
    PageNo m_owner;
    std::size_t m_slotCount;
    std::size_t m_free;
};

/// Changes the rows of one data page of the open write scope. Other rows keep their slots; they move on the page.
class DataPageWriter
{
public:
    /// A page that is a data page already.
    DataPageWriter(PageStore &store, PageNo number);
    /// Makes an empty data page of a zeroed one.
    static DataPageWriter init(PageStore &store, PageNo number, PageNo owner);

    std::size_t slotCount() const;
    std::size_t freeBytes() const;
    /// Whether a row of that length and its slot fit in addition.
    bool hasRoom(std::size_t length) const;
    /// Whether the row may become that long.
    bool canResize(std::size_t slot, std::size_t length) const;

    /// Adds a row that fits, and returns its slot.
    std::uint8_t append(storage::Bytes row, SlotKind kind = SlotKind::Row);
    /// Gives a slot another content, which must fit.
    void replace(std::size_t slot, storage::Bytes row, SlotKind kind);
    void replaceByPointer(std::size_t slot, RowPointer target);
    void erase(std::size_t slot);
    /// A row's bytes, for changes that keep its length.
    storage::MutableBytes bytes(std::size_t slot);

private:
    std::size_t slotWord(std::size_t slot) const;
    std::size_t offset(std::size_t slot) const;
    std::size_t end(std::size_t slot) const;
    std::size_t lowest() const;
    void setSlot(std::size_t slot, std::size_t offset, SlotKind kind);
    void setFree();

    Page &m_page;
    const Format &m_format;
};

} // namespace jet
