// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/CRegSettings.h"
#include "skin/SkinHost.h"
#include "skin/SkinImageListTarget.h"
#include "skin/SkinPicture.h"
#include "skin/SkinSurface.h"
#include "skin/SkinWindow.h"
#include "skin/frmTamselSkin.h"
#include "support/DataRows.h"
#include "support/FakeClock.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QMap>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>

// Records messages instead of showing them, and says where the mouse pointer is.
class FakeSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString& text) override { messages.append(text); }
    QPointF CursorOn(const SkinSurface&) const override { return cursor; }

    QStringList messages;
    QPointF cursor{-1000, -1000};
};

// The main window's tree image list, as keyed pictures with the order of changes.
class FakeImageList final : public SkinImageListTarget {
public:
    bool HasImage(const QString& key) const override { return images.contains(key); }
    void RemoveImage(const QString& key) override {
        removed.append(key);
        images.remove(key);
    }
    void AddImage(const QString& key, const SkinPicture& picture) override {
        added.append(key);
        images.insert(key, picture);
    }

    QMap<QString, SkinPicture> images;
    QStringList added;
    QStringList removed;
};

// A skinned window reduced to what the engine asks of it.
class TestWindow final : public SkinWindow {
public:
    explicit TestWindow(QSize size = QSize(200, 100)) : m_surface(std::make_unique<SkinSurface>()) {
        m_surface->resize(size);
    }
    SkinSurface* picSkin() override { return m_surface.get(); }
    QString DecodeText(const QString& text) override {
        decoded.append(text);
        return QString(text).replace(QStringLiteral("{user}"), QStringLiteral("Ann"));
    }
    void SkinHandler(const QString& function) override {
        handled.append(function);
        onHandler(function);
    }
    // The window goes away; its surface with it.
    void Unload() { m_surface.reset(); }
    QColor Pixel(int x, int y) { return m_surface->Image().pixelColor(x, y); }

    QStringList decoded;
    QStringList handled;
    std::function<void(const QString&)> onHandler = [](const QString&) {};

private:
    std::unique_ptr<SkinSurface> m_surface;
};

// A test home with a settings store, a fake clock and host, and an engine on them.
class SkinFixture {
public:
    SkinFixture() : settings(home.GetPaths()), skin(settings, home.GetPaths(), clock, host) {
        skin.SetImageListTarget(&imageList);
    }

    void Choose(const QString& name) {
        settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), name);
    }
    // Copies the suite's data/skins/<name> (if any) into the user's skin folder, replaces its
    // skin.txt by `text` unless that is null, then chooses and loads the skin. Returns the messages
    // shown so far, joined by bars.
    QString Load(const QString& name, const QString& text = QString()) {
        const QDir source(QStringLiteral(TAMSEL_TEST_DATA_DIR "/skins/") + name);
        const QString target = QStringLiteral("skins/") + name + u'/';
        home.Write(target + QStringLiteral("skin.txt"), text.toUtf8());
        for (const QString& file : source.entryList(QDir::Files)) {
            if (text.isNull() || file != u"skin.txt") {
                home.Write(target + file, ReadWholeFile(source.filePath(file)));
            }
        }
        Choose(name);
        skin.LoadSkin();
        return host.messages.join(u'|');
    }

    TestHome home;
    CRegSettings settings;
    FakeClock clock;
    FakeSkinHost host;
    FakeImageList imageList;
    frmTamselSkin skin;
};

// One word per value of a state summary: texts as they are, colours by name, numbers in full.
inline QString SummaryWord(const QString& text) {
    return text;
}
inline QString SummaryWord(const QColor& colour) {
    return colour.name();
}
inline QString SummaryWord(double number) {
    return QString::number(number, 'g', 15);
}
// A state as one line of text, compared in one assertion instead of one per value.
template <typename... T> QString Summary(const T&... values) {
    return QStringList{SummaryWord(values)...}.join(u' ');
}

inline QColor PictureColour(const SkinPicture& picture) {
    return picture.IsNull() ? QColor() : picture.ForRatio(1).pixelColor(0, 0);
}
