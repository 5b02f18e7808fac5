// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <Qt>
#include <initializer_list>

class CRegSettings;
class QWidget;

// Window operations that every window of the program shares.

// Lets the window system move the window with the mouse, unless it is maximised.
void DragWindow(QWidget* window);
// Lets the window system resize the window from `edges` while the left button is down and the
// window is in its normal state.
void DragWindowEdge(QWidget* window, Qt::MouseButton button, Qt::Edges edges);
void SetTopMost(QWidget* window, bool onTop);
// Sets the Tab order of the widgets, in the order given.
void SetTabChain(std::initializer_list<QWidget*> chain);
// Hourglass pointer and no input while the program works on the window's behalf.
void BeginBusy(QWidget* window);
void EndBusy(QWidget* window);
// Centres the window over `over`, moved as little as needed to stand whole on that screen's work area.
void PlaceCentredOver(QWidget* window, const QWidget* over);
// Whether `window` is one of the program's open top-level windows.
bool IsFormLoaded(const QWidget* window);
// The window's placement under `section` (its title when empty), in twips.
void SaveWindowPlacement(CRegSettings& settings, const QWidget* window, const QString& section);
// Without a saved record the window keeps its placement.
void RestoreWindowPlacement(CRegSettings& settings, QWidget* window, const QString& section);
