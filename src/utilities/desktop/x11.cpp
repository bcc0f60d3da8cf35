#include "utilities/desktop/x11.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace ostrivex::x11 {

namespace {

struct FreeReply {
    void operator()(void* p) const { std::free(p); }
};
template <class T> using Reply = std::unique_ptr<T, FreeReply>;

xcb_connection_t* connection() {
    auto* x = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x ? x->connection() : nullptr;
}

xcb_window_t rootOf(xcb_connection_t* c) {
    // The program runs on the display's first screen, as Qt's xcb platform does.
    return xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
}

xcb_atom_t atom(xcb_connection_t* c, const char* name) {
    Reply<xcb_intern_atom_reply_t> r(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 1, uint16_t(std::strlen(name)), name), nullptr));
    return r ? r->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace

bool Available() { return connection() != nullptr; }

uint32_t ActiveWindow() {
    xcb_connection_t* c = connection();
    if (!c) return 0;
    const xcb_window_t root = rootOf(c);
    const xcb_atom_t active = atom(c, "_NET_ACTIVE_WINDOW");
    if (active != XCB_ATOM_NONE) {
        Reply<xcb_get_property_reply_t> p(xcb_get_property_reply(
            c, xcb_get_property(c, 0, root, active, XCB_ATOM_WINDOW, 0, 1), nullptr));
        if (p && p->format == 32 && xcb_get_property_value_length(p.get()) >= 4) {
            const uint32_t w = *static_cast<const uint32_t*>(xcb_get_property_value(p.get()));
            return w; // 0 when the window manager says no window is active
        }
    }
    Reply<xcb_get_input_focus_reply_t> f(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    if (!f || f->focus == XCB_NONE || f->focus == XCB_INPUT_FOCUS_POINTER_ROOT || f->focus == root)
        return 0;
    return f->focus;
}

uint32_t TopLevelOf(uint32_t window) {
    xcb_connection_t* c = connection();
    if (!c || window == 0) return 0;
    const xcb_window_t root = rootOf(c);
    xcb_window_t w = window;
    // A bound on the walk, against a tree that changes under it.
    for (int depth = 0; depth < 64; ++depth) {
        Reply<xcb_query_tree_reply_t> t(xcb_query_tree_reply(c, xcb_query_tree(c, w), nullptr));
        if (!t) return 0;
        if (t->parent == root || t->parent == XCB_NONE) return w;
        w = t->parent;
    }
    return 0;
}

QRect FrameRect(uint32_t window) {
    xcb_connection_t* c = connection();
    const uint32_t top = TopLevelOf(window);
    if (!c || top == 0) return QRect();
    Reply<xcb_get_geometry_reply_t> g(xcb_get_geometry_reply(c, xcb_get_geometry(c, top), nullptr));
    if (!g) return QRect();
    // A child of the root: its position is already in screen coordinates; the border
    // lies outside the width and height.
    const int b = g->border_width;
    return QRect(g->x, g->y, g->width + 2 * b, g->height + 2 * b);
}

bool IsViewable(uint32_t window) {
    xcb_connection_t* c = connection();
    const uint32_t top = TopLevelOf(window);
    if (!c || top == 0) return false;
    Reply<xcb_get_window_attributes_reply_t> a(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, top), nullptr));
    // The frame counts: while it is mapped, its part of the screen is not the desktop's.
    return a && a->map_state == XCB_MAP_STATE_VIEWABLE;
}

} // namespace ostrivex::x11
