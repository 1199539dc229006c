#include "StartupActivation.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstring>

namespace StartupActivation {

quint32 timeOf(const QString& startupId)
{
    const qsizetype at = startupId.lastIndexOf(QLatin1String("_TIME"));
    if (at < 0)
        return 0;
    bool ok = false;
    const quint32 time = startupId.mid(at + 5).toUInt(&ok);
    return ok ? time : 0;
}

namespace {

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_atom_t found = reply ? reply->atom : XCB_ATOM_NONE;
    std::free(reply);
    return found;
}

xcb_screen_t* screenOf(xcb_connection_t* connection, xcb_window_t window)
{
    xcb_get_geometry_reply_t* geometry = xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    if (!geometry)
        return nullptr;
    const xcb_window_t root = geometry->root;
    std::free(geometry);
    for (xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection)); it.rem; xcb_screen_next(&it))
        if (it.data->root == root)
            return it.data;
    return nullptr;
}

// The freedesktop startup-notification message that ends the launcher's feedback: the text sent
// to the root window in pieces of 20 bytes, the first as _NET_STARTUP_INFO_BEGIN.
void endStartupFeedback(xcb_connection_t* connection, xcb_screen_t* screen, const QString& startupId)
{
    QByteArray id = startupId.toUtf8();
    id.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + id + "\"" + QByteArray(1, '\0');
    const xcb_atom_t begin = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t more = atom(connection, "_NET_STARTUP_INFO");
    // The messages need a window of the sender's own; a small one made and destroyed for it.
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, screen->root, -100, -100, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    for (qsizetype offset = 0; offset < text.size(); offset += 20) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 8;
        event.window = sender;
        event.type = offset == 0 ? begin : more;
        std::memcpy(event.data.data8, text.constData() + offset, size_t(std::min<qsizetype>(20, text.size() - offset)));
        xcb_send_event(connection, 0, screen->root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
    }
    xcb_destroy_window(connection, sender);
}

} // namespace

bool activate(QWindow* window, const QString& startupId)
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    const quint32 time = timeOf(startupId);
    if (!x11 || !window || time == 0)
        return false;
    xcb_connection_t* connection = x11->connection();
    const auto id = xcb_window_t(window->winId());
    xcb_screen_t* screen = screenOf(connection, id);
    if (!screen)
        return false;
    // The person's request, as the window manager weighs it against the focused window's.
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, atom(connection, "_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL, 32, 1, &time);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = id;
    event.type = atom(connection, "_NET_ACTIVE_WINDOW");
    event.data.data32[0] = 1; // from an application
    event.data.data32[1] = time;
    xcb_send_event(connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    endStartupFeedback(connection, screen, startupId);
    xcb_flush(connection);
    return true;
}

} // namespace StartupActivation
