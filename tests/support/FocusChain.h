// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QList>
#include <QStringList>
#include <QTabBar>
#include <QTest>
#include <QWidget>
#include <string>

// What pressing Tab from `first` until the focus comes round again met in `window`: the widgets in
// the order they took the focus, and the class names of those without an accessible name.
struct FocusChain {
    QList<QWidget*> visited;
    QStringList unnamed;
    // Access keys ("&x") that two controls shown in the window at the start offer at once.
    QStringList clashingKeys;

    // A bound on the walk, so a chain that never comes back to a widget already seen still ends.
    static constexpr int kMaxSteps = 40;

    static FocusChain Walk(QWidget& window, QWidget* first) {
        QApplication::setActiveWindow(&window);
        first->setFocus();
        FocusChain chain;
        chain.clashingKeys = ClashingKeys(window);
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

    static QStringList ClashingKeys(QWidget& window) {
        QStringList offered;
        QStringList clashing;
        const auto offer = [&](const QString& text) {
            const QString key = QKeySequence::mnemonic(text).toString();
            if (!key.isEmpty() && offered.contains(key) && !clashing.contains(key)) {
                clashing.append(key);
            }
            offered.append(key);
        };
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (!widget->isVisibleTo(&window)) {
                continue;
            }
            if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
                offer(button->text());
            } else if (auto* label = qobject_cast<QLabel*>(widget); label && label->buddy()) {
                offer(label->text());
            } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
                offer(group->title());
            } else if (auto* tabs = qobject_cast<QTabBar*>(widget)) {
                for (int tab = 0; tab < tabs->count(); ++tab) {
                    offer(tabs->tabText(tab));
                }
            }
        }
        return clashing;
    }

    std::string Unnamed() const { return unnamed.join(u", ").toStdString(); }
};
