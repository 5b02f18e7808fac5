// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Docks a bar on the X display given by "-display" at the top, the bottom and the left edge in turn and
// prints what the X server then holds, one line each: the bar's partial strut and strut, 1 when its
// window type is a dock, 1 when a second bar docked at the same edge left it the edge's claim, and
// 1 when the second bar took over a claim naming a window that does not exist.
#include "platform/Clock.h"
#include "ticker/TAppBar.h"
#include "ticker/X11AppBarShell.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;

xcb_atom_t Atom(xcb_connection_t* connection, const char* name) {
    const auto cookie = xcb_intern_atom(connection, 0, quint16(qstrlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr),
                                               &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray Property(xcb_connection_t* connection, xcb_window_t window, const char* name) {
    const auto cookie =
        xcb_get_property(connection, 0, window, Atom(connection, name), XCB_GET_PROPERTY_TYPE_ANY, 0, 64);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr),
                                                &std::free);
    QByteArrayList words;
    const int count = reply ? xcb_get_property_value_length(reply.get()) / 4 : 0;
    for (int i = 0; i < count; ++i) {
        words << QByteArray::number(static_cast<const quint32*>(xcb_get_property_value(reply.get()))[i]);
    }
    return words.join(' ');
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("xcb"));
    // Struts in the screen's pixels, whatever scale the test runner uses.
    qunsetenv("QT_SCALE_FACTOR");
    QApplication app(argc, argv);
    xcb_connection_t* connection = app.nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
    SystemClock clock;
    for (const int edge : {TAppBar::EdgeTop, TAppBar::EdgeBottom, TAppBar::EdgeLeft}) {
        QWidget window;
        X11AppBarShell shell(window);
        TAppBar bar(clock, screen);
        bar.SetDockHeight(20);
        bar.SetDockWidth(20);
        bar.Extends(shell);
        bar.SetEdge(edge);
        window.show();
        QCoreApplication::processEvents();
        const auto id = xcb_window_t(window.winId());
        const bool dock = Property(connection, id, "_NET_WM_WINDOW_TYPE") ==
                          QByteArray::number(Atom(connection, "_NET_WM_WINDOW_TYPE_DOCK"));
        std::printf("%s\n%s\n%d\n", Property(connection, id, "_NET_WM_STRUT_PARTIAL").constData(),
                    Property(connection, id, "_NET_WM_STRUT").constData(), dock ? 1 : 0);
        QWidget other;
        X11AppBarShell otherShell(other);
        TAppBar second(clock, screen);
        second.Extends(otherShell);
        second.SetEdge(edge);
        const QByteArray claim = "_TAMSEL_APPBAR_AUTOHIDE_" + QByteArray::number(edge);
        const bool kept = Property(connection, root, claim.constData()) == QByteArray::number(id);
        bar.Detach();
        // A claim by a window that no longer exists is void: the second bar then takes the edge.
        const xcb_window_t gone = xcb_generate_id(connection);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, Atom(connection, claim.constData()),
                            XCB_ATOM_WINDOW, 32, 1, &gone);
        second.SetEdge(edge);
        const bool taken = Property(connection, root, claim.constData()) == QByteArray::number(other.winId());
        std::printf("%d\n%d\n", kept ? 1 : 0, taken ? 1 : 0);
    }
    return 0;
}
