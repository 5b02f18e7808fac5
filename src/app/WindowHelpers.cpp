// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowHelpers.h"

#include "app/WindowPlacement.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace {

QString SectionOf(const QWidget* window, const QString& section) {
    return section.isEmpty() ? window->windowTitle() : section;
}

int StateOf(const QWidget* window) {
    if (window->isMinimized()) {
        return WindowPlacement::Minimized;
    }
    return window->isMaximized() ? WindowPlacement::Maximized : WindowPlacement::Normal;
}

// Moved as little as needed (and made smaller if it must) to stand whole on the screen's work area.
QRect KeptOnScreen(QRect placed, const QScreen* screen) {
    if (!screen) {
        return placed;
    }
    const QRect area = screen->availableGeometry();
    placed.setWidth(std::min(placed.width(), area.width()));
    placed.setHeight(std::min(placed.height(), area.height()));
    placed.moveRight(std::min(placed.right(), area.right()));
    placed.moveBottom(std::min(placed.bottom(), area.bottom()));
    placed.moveLeft(std::max(placed.left(), area.left()));
    placed.moveTop(std::max(placed.top(), area.top()));
    return placed;
}

} // namespace

void DragWindow(QWidget* window) {
    if (window && !window->isMaximized() && window->windowHandle()) {
        window->windowHandle()->startSystemMove();
    }
}

void DragWindowEdge(QWidget* window, Qt::MouseButton button, Qt::Edges edges) {
    if (window && button == Qt::LeftButton && StateOf(window) == WindowPlacement::Normal &&
        window->windowHandle()) {
        window->windowHandle()->startSystemResize(edges);
    }
}

void SetTabChain(std::initializer_list<QWidget*> chain) {
    // Qt 6.4 has no list form of setTabOrder.
    QWidget* previous = nullptr;
    for (QWidget* widget : chain) {
        if (previous) {
            QWidget::setTabOrder(previous, widget);
        }
        previous = widget;
    }
}

void SetTopMost(QWidget* window, bool onTop) {
    if (!window || window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == onTop) {
        return;
    }
    const bool visible = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    // Changing a window flag hides the window; it comes back where it was.
    if (visible) {
        window->show();
    }
}

void BeginBusy(QWidget* window) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (window) {
        window->setEnabled(false);
    }
}

void EndBusy(QWidget* window) {
    if (QApplication::overrideCursor()) {
        QApplication::restoreOverrideCursor();
    }
    if (window) {
        window->setEnabled(true);
    }
}

bool IsFormLoaded(const QWidget* window) {
    return window && QApplication::topLevelWidgets().contains(const_cast<QWidget*>(window));
}

void SaveWindowPlacement(CRegSettings& settings, const QWidget* window, const QString& section) {
    WindowPlacement placement{StateOf(window), window->geometry()};
    placement.Save(settings, SectionOf(window, section));
}

void RestoreWindowPlacement(CRegSettings& settings, QWidget* window, const QString& section) {
    const auto placement = WindowPlacement::Restore(settings, SectionOf(window, section));
    if (!placement) {
        return;
    }
    switch (placement->state) {
    case WindowPlacement::Minimized:
        window->setWindowState(Qt::WindowMinimized);
        break;
    case WindowPlacement::Maximized:
        window->setWindowState(Qt::WindowMaximized);
        break;
    default: {
        // A place saved on a screen that is gone, or at another scale, would leave the window
        // out of reach.
        const QScreen* screen = QGuiApplication::screenAt(placement->geometry.center());
        window->setWindowState(Qt::WindowNoState);
        window->setGeometry(KeptOnScreen(placement->geometry, screen ? screen : window->screen()));
        break;
    }
    }
}

void PlaceCentredOver(QWidget* window, const QWidget* over) {
    QRect placed(QPoint(), window->size());
    placed.moveCenter(over->geometry().center());
    window->move(KeptOnScreen(placed, over->screen()).topLeft());
}
