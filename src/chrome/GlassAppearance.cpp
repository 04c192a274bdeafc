#include "chrome/GlassAppearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMainWindow>
#include <QStyle>
#include <QWidget>

#if __has_include(<xcb/xcb.h>)
#include <QtGui/qguiapplication_platform.h>
#include <xcb/xcb.h>
#define ORVANE_HAS_XCB 1
#endif

namespace orvane {

namespace {
#ifdef ORVANE_HAS_XCB
xcb_connection_t* x11() {
    auto* app = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return app ? app->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* c, const char* name) {
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(strlen(name)), name), nullptr);
    const xcb_atom_t found = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return found;
}
#endif
} // namespace

GlassAppearance::GlassAppearance(QWidget* host) : QObject(host), window(host) {
    glass = compositorRuns();
    if (!glass) return;
    window->setAttribute(Qt::WA_TranslucentBackground);
    if (auto* main = qobject_cast<QMainWindow*>(window); main && main->centralWidget())
        main->centralWidget()->setProperty("glass", true);
    window->installEventFilter(this);
}

// An X11 compositor owns the selection _NET_WM_CM_S0; Wayland compositors always composite, but
// Qt offers no blur there, so a Wayland window stays opaque.
bool GlassAppearance::compositorRuns() {
#ifdef ORVANE_HAS_XCB
    xcb_connection_t* c = x11();
    if (!c) return false;
    const xcb_atom_t selection = atom(c, "_NET_WM_CM_S0");
    if (selection == XCB_ATOM_NONE) return false;
    xcb_get_selection_owner_reply_t* reply =
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr);
    const bool owned = reply && reply->owner != XCB_NONE;
    free(reply);
    return owned;
#else
    return false;
#endif
}

bool GlassAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window && event->type() == QEvent::Show) askForBlur();
    return false;
}

// An empty region asks the compositor (KWin, picom) to blur behind the whole window.
void GlassAppearance::askForBlur() {
#ifdef ORVANE_HAS_XCB
    xcb_connection_t* c = x11();
    if (!c) return;
    const xcb_atom_t blur = atom(c, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    if (blur == XCB_ATOM_NONE) return;
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, xcb_window_t(window->winId()), blur, XCB_ATOM_CARDINAL, 32,
                        0, nullptr);
    xcb_flush(c);
#endif
}

} // namespace orvane
