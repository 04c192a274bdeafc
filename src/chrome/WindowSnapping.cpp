#include "chrome/WindowSnapping.h"

#include "chrome/TitleRow.h"
#include "core/BrowserWindow.h"
#include "core/WindowCommands.h"
#include "kit/WindowWidgets.h"

#include <QGuiApplication>
#include <QScreen>
#include <QToolButton>
#include <QWidget>

namespace orvane {

// Qt's y grows downward, so the top pieces start at v's top and take the odd pixel there.
QRect paneSnapFrame(int position, const QRect& v) {
    const int hw = v.width() / 2, hh = v.height() / 2;
    const int left = v.left(), mid = v.left() + hw, top = v.top(), low = v.top() + v.height() - hh;
    switch (position) {
    case WindowSnapping::LeftHalf:
        return QRect(left, top, hw, v.height());
    case WindowSnapping::RightHalf:
        return QRect(mid, top, v.width() - hw, v.height());
    case WindowSnapping::TopLeft:
        return QRect(left, top, hw, v.height() - hh);
    case WindowSnapping::TopRight:
        return QRect(mid, top, v.width() - hw, v.height() - hh);
    case WindowSnapping::BottomLeft:
        return QRect(left, low, hw, hh);
    case WindowSnapping::BottomRight:
        return QRect(mid, low, v.width() - hw, hh);
    default:
        return v;
    }
}

WindowSnapping::WindowSnapping(BrowserWindow& window) : QObject(window.widget()), w(window) {
    w.commands().add(Command{QStringLiteral("arrangeWindow"),
                             QStringLiteral("Arrange window"),
                             [this](const QVariant& tag) { snapWindow(tag.toInt()); },
                             {},
                             {}});
    w.commands().add(QStringLiteral("zoomWindow"), QStringLiteral("Zoom"),
                     [this] { toggleTitleBarMaximize(); });
    const WindowWidgets& ui = w.widgets();
    connect(ui.zoomButton, &QToolButton::clicked, this, &WindowSnapping::toggleTitleBarMaximize);
    connect(ui.titleRow, &TitleRow::zoomRequested, this, &WindowSnapping::toggleTitleBarMaximize);
}

bool WindowSnapping::canPlaceWindows() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

QRect WindowSnapping::available() const {
    const QScreen* screen = w.widget()->screen();
    if (!screen) screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

void WindowSnapping::snapWindow(int position) {
    QWidget* window = w.widget();
    if (window->isFullScreen() || available().isEmpty()) return;
    if (!canPlaceWindows()) {
        if (position == Maximize) window->showMaximized();
        if (position == Restore) window->showNormal();
        return;
    }
    if (position == Restore) return restore();
    if (window->isMaximized()) window->showNormal();
    const QRect now = window->frameGeometry();
    if (!snapRestoreFrame || now != lastSnapFrame) snapRestoreFrame = now;
    const QRect frame = paneSnapFrame(position, available());
    window->setGeometry(frame);
    // What the window really got, after its minimum size, so a second snap does not take it for moved.
    lastSnapFrame = QRect(frame.topLeft(), frame.size().expandedTo(window->minimumSize()));
}

// The stored frame, pulled back onto the screen when the screen it was on has gone.
void WindowSnapping::restore() {
    if (!snapRestoreFrame) return;
    QRect frame = *snapRestoreFrame;
    snapRestoreFrame.reset();
    lastSnapFrame.reset();
    bool shown = false;
    for (const QScreen* screen : QGuiApplication::screens())
        shown = shown || screen->availableGeometry().intersects(frame);
    if (!shown) {
        const QRect v = available();
        frame.setSize(frame.size().boundedTo(v.size()));
        frame.moveTopLeft(v.topLeft());
    }
    w.widget()->setGeometry(frame);
}

void WindowSnapping::toggleTitleBarMaximize() {
    QWidget* window = w.widget();
    if (window->isFullScreen() || available().isEmpty()) return;
    if (!canPlaceWindows()) return snapWindow(window->isMaximized() ? Restore : Maximize);
    const QRect f = window->frameGeometry(), v = available();
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    const bool maximised = near(f.left(), v.left()) && near(f.bottom(), v.bottom()) &&
                           near(f.width(), v.width()) && near(f.height(), v.height());
    snapWindow(maximised ? Restore : Maximize);
}

} // namespace orvane
