// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinFrame.h"
#include "skin/SkinPicture.h"
#include "skin/clsTamselFont.h"

#include <QFont>
#include <QHash>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>

class CRegSettings;
class Clock;
class QWidget;
class SkinHost;
class SkinImageListTarget;
class SkinSurface;
class SkinWindow;
class frmSkinEntity;

// The skin engine: one hidden object, created once, that holds the current skin (fonts, frames,
// entities, colours, layout numbers, icons and the item stylesheet), reads it from the skin
// folder's skin.txt, and paints skinned windows and runs their entities.
//
// Skin folders are looked up in the user's data folder first, then among the shipped skins.
// Font numbers of the interface are 0-based (0 to 20); the file numbers fonts from 1.
class frmTamselSkin final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmTamselSkin)
public:
    static constexpr int kFontSlots = 21;
    static constexpr int kEntitySlots = 36;
    // Slot 36 can be defined but is never painted or hit.
    static constexpr int kDispatchedEntitySlots = 35;
    static constexpr int kFrameKinds = 7;

    enum WindowKind {
        KindMain = 0,
        KindChannel = 1,
        KindItem = 2,
        KindTicker = 3,
        KindTickerItem = 4,
        KindDialog = 5,
    };
    enum class ListIcon {
        Item,
        ItemEx,
        NoTag,
        Elements,
        Link,
        Del,
        NoDel,
    };
    static constexpr int kListIcons = 7;

    frmTamselSkin(CRegSettings& settings, Paths paths, Clock& clock, SkinHost& host,
                  QObject* parent = nullptr);
    ~frmTamselSkin() override;

    // The main window's tree image list, kept up to date by every load; may be null.
    void SetImageListTarget(SkinImageListTarget* target) { m_imageList = target; }
    SkinHost& Host() const { return m_host; }

    // Resets to the defaults and reads the skin named by SETTINGS/SKINNAME. A skin file that
    // cannot be read is reported in a message box; what was read before the failing line stays.
    void LoadSkin();
    QString SkinName() const { return m_skinName; }
    QString SkinFolder() const { return m_skinFolder; }

    // "main", "channel", "item", "ticker", "tickeritem", "dialog" in any case; anything else is 0.
    static int KindOf(const QString& name);
    // The ten keys of the tree icons, in the order the image list receives them.
    static const QStringList& TreeIconKeys();

    void SetFont(QWidget* control, int fontNumber, bool withColour) const;
    // A fresh font for an empty slot.
    QFont GetFont(int fontNumber) const;
    quint32 GetFontColor(int fontNumber) const;
    // The slot's font, or null when the slot is empty.
    const clsTamselFont* FontSlot(int fontNumber) const;

    qint16 FrameNSize(int kind) const;
    qint16 FrameESize(int kind) const;
    qint16 FrameSSize(int kind) const;
    qint16 FrameWSize(int kind) const;
    quint32 FrameColor(int kind) const;
    const SkinFrame& Frame(int kind) const;

    // Loads the item stylesheet file into ItemStylesheet and returns its path.
    QString GetXSLFilename();
    // The compiled item stylesheet; null when the file is missing or is not XSLT.
    const XsltStylesheet& ItemStylesheet() const { return m_itemStylesheet; }
    QString ItemStylesheetError() const { return m_itemStylesheetError; }

    // The entity in file slot `number` (1 to 36), or null.
    frmSkinEntity* Entity(int number) const;

    const SkinPicture& TreeIcon(const QString& key) const;
    const SkinPicture& GetListIcon(ListIcon icon) const;

    int GridFont() const { return m_gridFont; }
    quint32 GridColorOdd() const { return m_gridColorOdd; }
    quint32 GridColorEven() const { return m_gridColorEven; }
    int TickerFont() const { return m_tickerFont; }
    quint32 TickerFadeColor() const { return m_tickerFadeColor; }
    int TreeFont() const { return m_treeFont; }
    quint32 TreeColor() const { return m_treeColor; }
    int FilterTop() const { return m_filterTop; }
    int FilterLeft() const { return m_filterLeft; }
    int FilterWidth() const { return m_filterWidth; }
    int SearchTop() const { return m_searchTop; }
    int SearchLeft() const { return m_searchLeft; }
    int SearchWidth() const { return m_searchWidth; }

    void PaintAll(SkinWindow& window, SkinSurface& surface, int kind, bool skipHidden);
    void PaintBorder(SkinSurface& surface, int kind);
    void PaintEntities(SkinWindow& window, SkinSurface& surface, int kind, bool skipHidden);
    // Paints the frame of `kind` again inside `area` only.
    void RestoreBackground(SkinSurface& surface, int kind, QRectF area);
    void SkinMouseMove(SkinWindow& window, Qt::MouseButtons buttons, QPointF point, int kind,
                       bool skipHidden);
    // True when an entity took the press; the window moves or resizes only when none did.
    bool SkinMouseDown(SkinWindow& window, Qt::MouseButton button, QPointF point, int kind, bool skipHidden);
    void SkinMouseUp(SkinWindow& window, Qt::MouseButton button, QPointF point, int kind, bool skipHidden);

Q_SIGNALS:
    // After every complete load; the item stylesheet is already loaded.
    void SkinLoaded();

private:
    class Reader;

    void ResetDefaults();
    void UpdateImageList();
    QString PlainFilePath(const QString& name) const;
    QString StylesheetPath(const QString& name) const;
    bool IsKind(int kind) const { return kind >= 0 && kind < kFrameKinds; }

    CRegSettings& m_settings;
    Paths m_paths;
    Clock& m_clock;
    SkinHost& m_host;
    SkinImageListTarget* m_imageList = nullptr;
    quint64 m_generation = 0;

    QString m_skinName;
    QString m_skinFolder;
    std::array<std::unique_ptr<clsTamselFont>, kFontSlots> m_fonts;
    std::array<SkinFrame, kFrameKinds> m_frames;
    std::array<std::unique_ptr<frmSkinEntity>, kEntitySlots> m_entities;
    QHash<QString, SkinPicture> m_treeIcons;
    std::array<SkinPicture, kListIcons> m_listIcons;
    QHash<QString, SkinPicture> m_defaultTreeIcons;
    std::array<SkinPicture, kListIcons> m_defaultListIcons;
    SkinPicture m_lastImage;

    int m_gridFont = 0;
    quint32 m_gridColorOdd = 0;
    quint32 m_gridColorEven = 0;
    int m_tickerFont = 0;
    quint32 m_tickerFadeColor = 0;
    int m_treeFont = 0;
    quint32 m_treeColor = 0;
    int m_filterTop = 0;
    int m_filterLeft = 0;
    int m_filterWidth = 0;
    int m_searchTop = 0;
    int m_searchLeft = 0;
    int m_searchWidth = 0;

    QString m_xslFile;
    XsltStylesheet m_itemStylesheet;
    QString m_itemStylesheetError;
};
