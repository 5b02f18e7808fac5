// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/X11AppBarShell.h"

#include "ticker/TAppBar.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

// Qt's X11 window reads the window type it writes at mapping from this property; 4 is a dock.
constexpr char kQtWindowTypeProperty[] = "_q_xcb_wm_window_type";
constexpr int kQtDockType = 0x4;
constexpr int kStrutWords = 12;
constexpr int kShortStrutWords = 4;

xcb_connection_t* X11Connection() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t RootWindow(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
    return screens.rem > 0 ? screens.data->root : xcb_window_t(XCB_WINDOW_NONE);
}

xcb_atom_t Atom(xcb_connection_t* connection, const QByteArray& name) {
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(connection, 0, quint16(name.size()), name.constData());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t ClaimHolder(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t claim) {
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(connection, 0, root, claim, XCB_ATOM_WINDOW, 0, 1);
    std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (!reply || xcb_get_property_value_length(reply.get()) < int(sizeof(xcb_window_t))) {
        return XCB_WINDOW_NONE;
    }
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

bool WindowExists(xcb_connection_t* connection, xcb_window_t window) {
    const xcb_get_window_attributes_cookie_t cookie = xcb_get_window_attributes(connection, window);
    std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> reply(
        xcb_get_window_attributes_reply(connection, cookie, nullptr), &std::free);
    return reply != nullptr;
}

} // namespace

X11AppBarShell::X11AppBarShell(QWidget& window) : WidgetAppBarShell(window) {}

quint32 X11AppBarShell::NativeWindow() const {
    return Window() ? quint32(Window()->winId()) : 0;
}

bool X11AppBarShell::Register() {
    if (!WidgetAppBarShell::Register()) {
        return false;
    }
    Window()->setAttribute(Qt::WA_X11NetWmWindowTypeDock);
    Window()->winId();
    if (QWindow* handle = Window()->windowHandle()) {
        handle->setProperty(kQtWindowTypeProperty, kQtDockType);
    }
    xcb_connection_t* connection = X11Connection();
    if (connection) {
        const xcb_atom_t type = Atom(connection, "_NET_WM_WINDOW_TYPE");
        const xcb_atom_t dock = Atom(connection, "_NET_WM_WINDOW_TYPE_DOCK");
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, NativeWindow(), type, XCB_ATOM_ATOM, 32, 1,
                            &dock);
        xcb_flush(connection);
    }
    m_registered = connection != nullptr;
    return m_registered;
}

void X11AppBarShell::Unregister() {
    if (!m_registered) {
        return;
    }
    m_registered = false;
    xcb_connection_t* connection = X11Connection();
    if (!connection || !Window()) {
        return;
    }
    xcb_delete_property(connection, NativeWindow(), Atom(connection, "_NET_WM_STRUT_PARTIAL"));
    xcb_delete_property(connection, NativeWindow(), Atom(connection, "_NET_WM_STRUT"));
    xcb_flush(connection);
}

void X11AppBarShell::SetPos(int edge, const QRect& rect) {
    quint32 strut[kStrutWords] = {};
    if (Window() && !rect.isEmpty()) {
        // Struts count device pixels from the edges of the whole X screen.
        const qreal ratio = Window()->devicePixelRatioF();
        const QRect screen = ScreenRect();
        const QPoint origin = ScreenOrigin();
        const auto device = [ratio](int logical) { return quint32(qMax(0, qRound(logical * ratio))); };
        const quint32 left = device(origin.x() + rect.left());
        const quint32 top = device(origin.y() + rect.top());
        const quint32 right = device(origin.x() + rect.left() + rect.width());
        const quint32 bottom = device(origin.y() + rect.top() + rect.height());
        const quint32 screenRight = device(origin.x() + screen.width());
        const quint32 screenBottom = device(origin.y() + screen.height());
        switch (edge) {
        case TAppBar::EdgeLeft:
            strut[0] = right;
            strut[4] = top;
            strut[5] = bottom - 1;
            break;
        case TAppBar::EdgeRight:
            strut[1] = screenRight - left;
            strut[6] = top;
            strut[7] = bottom - 1;
            break;
        case TAppBar::EdgeTop:
            strut[2] = bottom;
            strut[8] = left;
            strut[9] = right - 1;
            break;
        case TAppBar::EdgeBottom:
            strut[3] = screenBottom - top;
            strut[10] = left;
            strut[11] = right - 1;
            break;
        default:
            break;
        }
    }
    WriteStrut(strut);
}

void X11AppBarShell::WriteStrut(const quint32 (&strut)[12]) {
    xcb_connection_t* connection = X11Connection();
    if (!connection || !Window()) {
        return;
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, NativeWindow(),
                        Atom(connection, "_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, kStrutWords, strut);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, NativeWindow(), Atom(connection, "_NET_WM_STRUT"),
                        XCB_ATOM_CARDINAL, 32, kShortStrutWords, strut);
    xcb_flush(connection);
}

bool X11AppBarShell::SetAutoHideBar(int edge, bool claim) {
    xcb_connection_t* connection = X11Connection();
    if (!connection || !Window()) {
        return false;
    }
    const xcb_window_t root = RootWindow(connection);
    const xcb_atom_t atom =
        Atom(connection, QByteArray("_TAMSEL_APPBAR_AUTOHIDE_") + QByteArray::number(edge));
    const xcb_window_t self = NativeWindow();
    const xcb_window_t holder = ClaimHolder(connection, root, atom);
    const bool heldByOther = holder != XCB_WINDOW_NONE && holder != self && WindowExists(connection, holder);
    if (!claim) {
        if (holder == self) {
            xcb_delete_property(connection, root, atom);
            xcb_flush(connection);
        }
        return true;
    }
    if (heldByOther) {
        return false;
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, atom, XCB_ATOM_WINDOW, 32, 1, &self);
    xcb_flush(connection);
    return true;
}
