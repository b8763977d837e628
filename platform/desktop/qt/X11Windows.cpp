// Reads the window tree of the X11 display over a connection of its own.
#include "platform/desktop/qt/X11Windows.h"

#include <QGuiApplication>

#include "platform/desktop/X11Reply.h"
#include "platform/desktop/qt/Processes.h"

using namespace Qt::StringLiterals;

namespace {

class WindowTree
{
public:
    WindowTree()
        : m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect)
        , m_utf8Name(x11Atom(m_connection.get(), "_NET_WM_NAME"))
    { }

    bool isOpen() const { return xcb_connection_has_error(m_connection.get()) == 0; }

    std::vector<desktop::Window> windows() const
    {
        std::vector<desktop::Window> found;
        xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
        for (; screen.rem > 0; xcb_screen_next(&screen))
            collectBelow(screen.data->root, found);
        return found;
    }

private:
    // Empty as well for a window that has gone meanwhile.
    QByteArray property(xcb_window_t window, xcb_atom_t name) const
    {
        constexpr std::uint32_t fourByteUnits = 1024;
        const auto cookie = xcb_get_property(m_connection.get(), 0, window, name, XCB_ATOM_ANY, 0, fourByteUnits);
        const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection.get(), cookie, nullptr),
                                                       &std::free);
        if (!reply || reply->format != 8)
            return {};
        return {static_cast<const char *>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    // A window with a class is a program's own; its children are parts of it. Frames have none.
    void collectBelow(xcb_window_t window, std::vector<desktop::Window> &found) const
    {
        const auto cookie = xcb_query_tree(m_connection.get(), window);
        const X11Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(m_connection.get(), cookie, nullptr),
                                                    &std::free);
        if (!tree)
            return;
        const xcb_window_t *children = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            const QByteArray className = property(children[i], XCB_ATOM_WM_CLASS);
            if (className.isEmpty())
                collectBelow(children[i], found);
            else
                found.push_back({QString::fromLatin1(className).replace(u'\0', u' ').trimmed(), title(children[i])});
        }
    }

    QString title(xcb_window_t window) const
    {
        const QByteArray utf8 = property(window, m_utf8Name);
        return utf8.isEmpty() ? QString::fromLatin1(property(window, XCB_ATOM_WM_NAME)) : QString::fromUtf8(utf8);
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_atom_t m_utf8Name;
};

} // namespace

namespace desktop {

std::optional<std::vector<Window>> X11Windows::list() const
{
    // Under Wayland an X11 display may be there all the same, but it does not know the windows of other programs.
    if (QGuiApplication::platformName().startsWith("wayland"_L1))
        return std::nullopt;
    const WindowTree tree;
    return tree.isOpen() ? std::optional(tree.windows()) : std::nullopt;
}

std::optional<bool> X11Windows::programSeen(const QString &progId, const QString &className) const
{
    const std::optional<bool> name = m_nameKnown(progId);
    const std::optional<bool> process = isProgramRunning(className);
    if (name.value_or(false) || process.value_or(false))
        return true;
    return name && process ? std::optional(false) : std::nullopt;
}

} // namespace desktop
