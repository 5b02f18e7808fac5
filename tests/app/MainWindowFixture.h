// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Runtime.h"
#include "app/clsProfile.h"
#include "app/frmMain.h"
#include "feeds/RSSChannel.h"
#include "skin/SkinHost.h"
#include "skin/frmTamselSkin.h"
#include "support/EventPump.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>
#include <memory>

namespace main_window_test {

using namespace Qt::Literals::StringLiterals;

inline constexpr int kPumpLimitMs = 10000;
inline const QString kFeed = u"http://127.0.0.1:9/science.xml"_s;
inline const QString kOther = u"http://127.0.0.1:9/other.xml"_s;

class QuietSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString& text) override { messages.append(text); }
    QPointF CursorOn(const SkinSurface&) const override { return {-1000, -1000}; }
    QStringList messages;
};

// Each node's text, indented by two blanks per level, top to bottom.
inline QStringList Captions(const QTreeWidget& tree) {
    QStringList captions;
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget*>(&tree)); *it; ++it) {
        int depth = 0;
        for (const QTreeWidgetItem* up = (*it)->parent(); up; up = up->parent()) {
            ++depth;
        }
        captions.append(QString(depth * 2, u' ') + (*it)->text(0));
    }
    return captions;
}

// Answers the next modal box with `button` once it shows, and tells what it said; a box that
// never comes leaves `text` empty.
inline void AnswerMessageBox(QMessageBox::StandardButton button, QString* text) {
    QTimer::singleShot(0, [button, text] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            *text = box->text();
            if (QAbstractButton* answer = box->button(button)) {
                answer->click();
            } else {
                box->accept();
            }
        }
    });
}

template <typename T> T* TopLevel() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<T*>(widget); found && found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}

// The profile Ana with the group Science holding one channel, and the group Empty, or no
// profile at all for a first start.
class MainWindowFixture : public ::testing::Test {
protected:
    void Start(bool withProfile = true, bool trayAvailable = true) {
        if (withProfile) {
            home.Write(u"profiles/profiles.xml"_s, "<tamselprofiles><user><username>Ana</username>"
                                                   "<default>true</default></user></tamselprofiles>");
            const QString channels = u"<tamselchannels><channel><url>"_s + kFeed +
                                     u"</url><title>Science Daily</title><update>600</update><id>A01</id>"
                                     u"</channel><channel><url>"_s +
                                     kOther +
                                     u"</url><title>Other</title><update>600</update><id>A02</id></channel>"
                                     u"</tamselchannels>"_s;
            home.Write(u"profiles/Ana/channels.xml"_s, channels.toUtf8());
            const QString groups = u"<groups><group><title>Science</title><expand>true</expand><channel>"_s +
                                   kFeed +
                                   u"</channel></group><group><title>Empty</title></group></groups>"_s;
            home.Write(u"profiles/Ana/groups.xml"_s, groups.toUtf8());
        } else {
            runtime.InstallDataFolder();
        }
        runtime.LoadNamespaceStylesheet(nullptr);
        window = std::make_unique<frmMain>(runtime, skin, trayAvailable);
        if (withProfile) {
            ASSERT_TRUE(PumpUntil([this] { return Loaded(); }, kPumpLimitMs));
        }
    }

    bool Loaded() { return window->ActiveProfile() && window->Tree()->topLevelItemCount() > 0; }
    QTreeWidget& Tree() { return *window->Tree(); }
    RSSChannel& Channel(const QString& url) { return *window->ActiveProfile()->GetChannel(url); }
    QTreeWidgetItem* Node(const QString& key) { return window->Node(key); }
    void Select(QTreeWidgetItem* node) {
        Tree().setFocus();
        Tree().setCurrentItem(node);
    }
    // Visible entries of a menu, by caption.
    static QStringList Shown(const QMenu& menu) {
        QStringList shown;
        for (const QAction* action : menu.actions()) {
            if (action->isVisible()) {
                shown.append(action->isSeparator() ? u"-"_s : action->text());
            }
        }
        return shown;
    }

    TestHome home;
    RecordingDesktop desktop;
    Runtime runtime{home.GetPaths(), desktop};
    QuietSkinHost skinHost;
    frmTamselSkin skin{runtime.Settings(), home.GetPaths(), runtime.GetServices().clock, skinHost};
    std::unique_ptr<frmMain> window;
};

} // namespace main_window_test
