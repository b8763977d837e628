// Keeps a text on the clipboard of an X11 display after the program that put it there has ended: the display itself
// keeps nothing. Reads the text (UTF-8) from standard input, goes into the background once it owns the clipboard, and
// ends when somebody else takes it or the display goes.
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>

#include "platform/desktop/X11Reply.h"

namespace {

class Keeper
{
public:
    explicit Keeper(std::string text)
        : m_text(std::move(text))
        , m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect)
    { }

    /// False if there is no display or somebody else was quicker.
    bool takeClipboard()
    {
        if (xcb_connection_has_error(m_connection.get()) != 0)
            return false;
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
        m_window = xcb_generate_id(m_connection.get());
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        m_clipboard = x11Atom(m_connection.get(), "CLIPBOARD");
        m_targets = x11Atom(m_connection.get(), "TARGETS");
        for (std::size_t i = 0; i < m_texts.size(); ++i)
            m_texts[i] = x11Atom(m_connection.get(), textNames[i]);
        xcb_set_selection_owner(m_connection.get(), m_window, m_clipboard, XCB_CURRENT_TIME);
        const X11Reply<xcb_get_selection_owner_reply_t> owner(
            xcb_get_selection_owner_reply(m_connection.get(), xcb_get_selection_owner(m_connection.get(), m_clipboard),
                                          nullptr),
            &std::free);
        return owner && owner->owner == m_window;
    }

    void serve()
    {
        while (const X11Reply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection.get()), &std::free}) {
            const int type = event->response_type & 0x7f;
            if (type == XCB_SELECTION_CLEAR)
                return;
            if (type == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
        }
    }

private:
    static constexpr std::array<std::string_view, 3> textNames{"UTF8_STRING", "text/plain;charset=utf-8", "TEXT"};

    // One piece: a request takes megabytes, a statement has some hundred bytes.
    void answer(const xcb_selection_request_event_t &request) const
    {
        xcb_selection_notify_event_t notice{};
        notice.response_type = XCB_SELECTION_NOTIFY;
        notice.time = request.time;
        notice.requestor = request.requestor;
        notice.selection = request.selection;
        notice.target = request.target;
        notice.property = request.property != XCB_ATOM_NONE ? request.property : request.target; // of old clients
        if (request.target == m_targets) {
            const std::array offered{m_targets, m_texts[0], m_texts[1], m_texts[2]};
            xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor, notice.property,
                                XCB_ATOM_ATOM, 32, offered.size(), offered.data());
        } else if (isText(request.target)) {
            xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor, notice.property,
                                request.target == m_texts[2] ? m_texts[0] : request.target, 8,
                                static_cast<std::uint32_t>(m_text.size()), m_text.data());
        } else {
            notice.property = XCB_ATOM_NONE;
        }
        xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&notice));
        xcb_flush(m_connection.get());
    }

    bool isText(xcb_atom_t target) const
    {
        return target == m_texts[0] || target == m_texts[1] || target == m_texts[2];
    }

    std::string m_text;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    xcb_atom_t m_targets = XCB_ATOM_NONE;
    std::array<xcb_atom_t, textNames.size()> m_texts{};
};

// Nobody shall wait for this process, nor for a folder or a pipe that it holds.
bool goIntoBackground()
{
    const pid_t child = fork();
    if (child != 0)
        std::_Exit(child > 0 ? 0 : 1);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int handle : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nothing, handle);
    return setsid() > 0 && chdir("/") == 0;
}

} // namespace

int main()
{
    Keeper keeper(std::string(std::istreambuf_iterator<char>(std::cin), {}));
    if (!keeper.takeClipboard() || !goIntoBackground())
        return 1;
    keeper.serve();
    return 0;
}
