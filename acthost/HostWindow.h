#pragma once

#include <optional>

#include <QSize>

#include "platform/storage/Storage.h"

namespace acthost {

/// What automation sees and moves of the program's window. Sizes are in pixels of the screen, frame included.
class HostWindow
{
public:
    virtual ~HostWindow() = default;

    virtual QSize sizeInPixels() const = 0;
    virtual void resizeTo(const QSize &pixels) = 0;
    virtual void minimize() = 0;
    virtual void maximize() = 0;

    /// Whether a notice waits for its answer; the program's contacts cannot be worked with meanwhile.
    virtual bool noticeOpen() const = 0;
    virtual std::optional<storage::RowId> contactOnScreen() const = 0;
    /// Shows what was just looked up or written; nothing means no contact.
    virtual void showContact(std::optional<storage::RowId> row) = 0;
};

} // namespace acthost
