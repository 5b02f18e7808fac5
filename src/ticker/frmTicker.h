// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/clsItemBank.h"
#include "skin/SkinnedWindow.h"
#include "ticker/TAppBar.h"
#include "ticker/WidgetAppBarShell.h"

#include <QFont>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class CRegSettings;
class Clock;
class Desktop;
class LongTimer;
class TickerItemView;
class frmTamselSkin;

// The ticker: a thin skinned bar docked to a screen edge that shows today's unread items of the
// active profile one after another, each entering, resting at the centre and leaving with one of
// four effects (horizontal scroll, vertical scroll, fade, typewriter). One timer drives it; each
// tick sets the interval of the next, which is how the text slows, rests and speeds up.
class frmTicker final : public SkinnedWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmTicker)
public:
    enum Effect { EffectHorizontal = 1, EffectVertical = 2, EffectFade = 3, EffectType = 4 };

    static inline const QString kSection = QStringLiteral("Ticker");
    static inline const QString kNoItems = QStringLiteral("No Unread Items For Today");
    static inline const QString kNoItemsSource = QStringLiteral("Tamsel");
    static constexpr int kMaxTextLength = 80;
    static constexpr int kBarThickness = 20;
    static constexpr int kFirstInterval = 20;
    static constexpr double kFarAway = -100000;

    // The item bank of the active profile, or null while none is active.
    using ActiveBank = std::function<clsItemBank*()>;

    // Creates the ticker docked at the saved edge with the saved effect; the timer runs.
    frmTicker(frmTamselSkin& skin, CRegSettings& settings, Clock& clock, Desktop& desktop,
              ActiveBank activeBank, AppBarShellFactory shellFactory = WidgetAppBarShell::ForDesktop,
              QWidget* parent = nullptr);
    ~frmTicker() override;

    TAppBar& AppBar() { return m_appBar; }
    // The item view opened by a left click; may be null, and must outlive the ticker or be reset.
    void SetItemView(TickerItemView* view) { m_view = view; }

    // Docks to edge 0 left, 1 top, 2 right or 3 bottom, saves it and starts the next entry fresh.
    void DockBar(int edge);
    // Selects one of the four effects and saves it (the ticker menu's Effects entries).
    void SetEffect(int effect);
    int CurrentEffect() const;
    // Opens the current entry in the item view.
    void ShowItem();
    // Opens the current entry's link in the default browser.
    void OpenExtern();
    // The active profile changed: the list is fetched anew for the next entry.
    void ProfileChanged();

    QString DecodeText(const QString& text) override;
    void SkinHandler(const QString& function) override;
    void RepaintSkin() override;

    static quint32 BlendColor(quint32 base, quint32 target, int percent);

    // The entry now shown and where it is printed; what a user sees of the animation.
    QString EntryText() const { return m_lblTxtSize; }
    QString EntrySource() const { return m_lblSource; }
    QString EntryTime() const { return m_lblTime; }
    // The text as printed by the last tick (the typewriter shows a part of it).
    QString ShownText() const { return m_shownText; }
    QPointF PrintPos() const { return {m_sngX, m_sngY}; }
    int RestX() const { return m_iRestX; }
    QSizeF TextSize() const { return m_textSize; }
    quint32 PrintColor() const { return m_printColor; }
    // Whether the last tick printed the entry text.
    bool Printed() const { return m_printed; }
    int Index() const { return m_iIndex; }
    quint32 Interval() const;
    bool Running() const;
    bool HeldByView() const { return m_anim.HeldByView != 0; }

Q_SIGNALS:
    // A right click asks the main window for its "&Ticker" menu at this screen point.
    void MenuRequested(QPoint globalPosition);
    // The ticker closed itself (its skin's "close"); the main window clears its check marks.
    void Closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void SurfacePressed(Qt::MouseButton button, QPointF point) override;
    void SurfaceMoved(Qt::MouseButtons buttons, QPointF point) override;
    void SurfaceReleased(Qt::MouseButton button, QPointF point) override;

private:
    struct TickerAnimState {
        qint16 Paused = 0;
        qint16 TypeCount = 0;
        qint16 FadeIn = 0;
        qint16 FadeOut = 0;
        qint16 HeldByView = 0;
    };

    void tmrScroll_OnTimer();
    void NextEntry();
    void PrevEntry();
    void FetchItems();
    void TakeEntry();
    void LayoutLabels();
    bool HorizontalBar() const;
    bool ViewVisible() const;
    void ViewCheck();
    void SetInterval(int interval);
    // Each returns false when the tick ends without printing.
    bool ScrollHorizontal(double drawWidth, double centredY);
    bool ScrollVertical(double drawHeight, double centredY);
    void Fade(double centredY);
    void TypeWrite(double centredY);
    XmlNode CurrentItem() const;

    CRegSettings& m_settings;
    Clock& m_clock;
    Desktop& m_desktop;
    ActiveBank m_activeBank;
    TAppBar m_appBar;
    std::unique_ptr<AppBarShell> m_shell;
    LongTimer* m_tmrScroll;
    TickerItemView* m_view = nullptr;

    bool m_bScrollHorz = true;
    bool m_bScrollVert = false;
    bool m_bFade = false;
    bool m_bType = false;
    std::optional<ItemList> m_Items;
    int m_iIndex = -1;
    bool m_bNext = true;
    bool m_bPrev = false;
    int m_iRestX = 0;
    double m_sngX = kFarAway;
    double m_sngY = kFarAway;
    quint32 m_lTextColor = 0;
    QPointF m_lMouse{-1, -1};
    bool m_mouseSeen = false;
    TickerAnimState m_anim;

    QString m_lblTxtSize;
    QString m_lblSource;
    QString m_lblTime;
    QSizeF m_textSize;
    QFont m_tickerFont;
    QString m_shownText;
    quint32 m_printColor = 0;
    bool m_printed = false;
    // The entry was taken in this tick, so a wrap of its position asks for no other.
    bool m_freshEntry = false;
    bool m_entityPressed = false;
};
