// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QList>
#include <QStringList>
#include <QTest>
#include <QWidget>
#include <string>

// What pressing Tab from `first` until the focus comes round again met in `window`: the widgets in
// the order they took the focus, and the class names of those without an accessible name.
struct FocusChain {
    QList<QWidget*> visited;
    QStringList unnamed;

    // A bound on the walk, so a chain that never comes back to a widget already seen still ends.
    static constexpr int kMaxSteps = 40;

    static FocusChain Walk(QWidget& window, QWidget* first) {
        QApplication::setActiveWindow(&window);
        first->setFocus();
        FocusChain chain;
        QWidget* current = QApplication::focusWidget();
        while (current && !chain.visited.contains(current) && chain.visited.size() < kMaxSteps) {
            chain.visited.append(current);
            if (current->accessibleName().isEmpty()) {
                chain.unnamed.append(QString::fromUtf8(current->metaObject()->className()));
            }
            QTest::keyClick(current, Qt::Key_Tab);
            current = QApplication::focusWidget();
        }
        return chain;
    }

    std::string Unnamed() const { return unnamed.join(u", ").toStdString(); }
};
