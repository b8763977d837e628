#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

/// What the display answers, or tells by itself; released with the object. Null if it failed.
template <typename T> using X11Reply = std::unique_ptr<T, decltype(&std::free)>;

/// The display's number for a name; XCB_ATOM_NONE if it does not answer.
inline xcb_atom_t x11Atom(xcb_connection_t *connection, std::string_view name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}
