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
#include "support/FakeClock.h"
#include "support/TestHome.h"

#include <QColor>
#include <QImage>
#include <QMap>
#include <QStringList>

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
    SkinPicture Picture(const QString& key) const { return images.value(key); }

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
        QString result = text;
        result.replace(QStringLiteral("{user}"), QStringLiteral("Ann"));
        return result;
    }
    void SkinHandler(const QString& function) override {
        handled.append(function);
        if (onHandler) {
            onHandler(function);
        }
    }
    // The window goes away; its surface with it.
    void Unload() { m_surface.reset(); }
    QColor Pixel(int x, int y) { return m_surface->Image().pixelColor(x, y); }

    QStringList decoded;
    QStringList handled;
    std::function<void(const QString&)> onHandler;

private:
    std::unique_ptr<SkinSurface> m_surface;
};

// A test home with a settings store, a fake clock and host, and an engine on them.
class SkinFixture {
public:
    SkinFixture() : settings(home.GetPaths()), skin(settings, home.GetPaths(), clock, host) {
        skin.SetImageListTarget(&imageList);
    }

    // Writes skins/<name>/skin.txt of the user's skin folder.
    void WriteSkin(const QString& name, const QString& text) const {
        home.Write(QStringLiteral("skins/") + name + QStringLiteral("/skin.txt"), text.toUtf8());
    }
    // Writes a picture of one colour into the user's skin folder.
    void WritePicture(const QString& skin, const QString& file, QSize size, const QColor& colour) const {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(colour);
        WriteImage(skin, file, image);
    }
    void WriteImage(const QString& skin, const QString& file, const QImage& image) const {
        home.Write(QStringLiteral("skins/") + skin + u'/' + file, QByteArray());
        image.save(home.File(QStringLiteral("skins/") + skin + u'/' + file), "PNG");
    }
    void Choose(const QString& name) {
        settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), name);
    }
    // Writes, chooses and loads a skin in one go.
    void Load(const QString& name, const QString& text) {
        WriteSkin(name, text);
        Choose(name);
        skin.LoadSkin();
    }

    TestHome home;
    CRegSettings settings;
    FakeClock clock;
    FakeSkinHost host;
    FakeImageList imageList;
    frmTamselSkin skin;
};

inline QColor PictureColour(const SkinPicture& picture) {
    return picture.IsNull() ? QColor() : picture.ForRatio(1).pixelColor(0, 0);
}
