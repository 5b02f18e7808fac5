// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

// Switches parts of a window's frame on and off at run time: caption, system menu, minimise and
// maximise buttons, sizing border, tool-window look, always-on-top and the context-help button.
// Each property is a bit of the window's style words, kept with the window as the Windows
// style and extended style would be; the window's Qt flags are made to follow the words on every
// write. A window without a caption has no native frame at all, so its client area covers what
// the frame took. Optionally a press on the client area drags the window and a right click there
// opens the window menu.
class clsStyle final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(clsStyle)
public:
    static constexpr quint32 kSysMenu = 0x00080000;
    static constexpr quint32 kMaximizeBox = 0x00010000;
    static constexpr quint32 kMinimizeBox = 0x00020000;
    static constexpr quint32 kThickFrame = 0x00040000;
    static constexpr quint32 kCaption = 0x00C00000; // border and dialog frame together
    static constexpr quint32 kExToolWindow = 0x00000080;
    static constexpr quint32 kExContextHelp = 0x00000400;
    static constexpr quint32 kExTopMost = 0x00000008;

    explicit clsStyle(QObject* parent = nullptr);
    ~clsStyle() override;

    QWidget* Client() const { return m_client; }
    // Attaches to a window and observes its mouse presses and releases; null detaches.
    void SetClient(QWidget* client);
    // The native handle of the window, 0 when none is attached or it has none yet.
    WId hWnd() const;

    bool AutoDrag() const { return m_autoDrag; }
    void SetAutoDrag(bool on) { m_autoDrag = on; }
    bool AutoSysMenu() const { return m_autoSysMenu; }
    void SetAutoSysMenu(bool on) { m_autoSysMenu = on; }

    bool ControlBox() const { return (Style() & kSysMenu) != 0; }
    void SetControlBox(bool on) { SetBit(kSysMenu, on, false); }
    bool MaxButton() const { return (Style() & kMaximizeBox) != 0; }
    void SetMaxButton(bool on) { SetBit(kMaximizeBox, on, false); }
    bool MinButton() const { return (Style() & kMinimizeBox) != 0; }
    void SetMinButton(bool on) { SetBit(kMinimizeBox, on, false); }
    bool Sizable() const { return (Style() & kThickFrame) != 0; }
    void SetSizable(bool on) { SetBit(kThickFrame, on, false); }
    // True when either half of the caption bits is set.
    bool Titlebar() const { return (Style() & kCaption) != 0; }
    void SetTitlebar(bool on) { SetBit(kCaption, on, false); }
    bool ToolWindow() const { return (ExStyle() & kExToolWindow) != 0; }
    void SetToolWindow(bool on) { SetBit(kExToolWindow, on, true); }
    bool WhatsThisButton() const { return (ExStyle() & kExContextHelp) != 0; }
    void SetWhatsThisButton(bool on) { SetBit(kExContextHelp, on, true); }
    bool TopMost() const { return (ExStyle() & kExTopMost) != 0; }
    void SetTopMost(bool on) { SetBit(kExTopMost, on, true); }

    // The style words of the attached window (0 without one); writing them applies them.
    quint32 Style() const;
    void SetStyle(quint32 style);
    quint32 ExStyle() const;
    void SetExStyle(quint32 exStyle);

    // Opens the window menu (restore, minimise, maximise, close) at a screen point.
    void ShowSysMenu(QPoint globalPosition);
    // The window menu last opened, while it is open.
    QMenu* SysMenu() const { return m_sysMenu; }

Q_SIGNALS:
    // The window's frame was brought up to date with its style words.
    void FrameRedrawn();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    quint32 Word(const char* name, quint32 (*fromFlags)(const QWidget&)) const;
    void SetBit(quint32 bit, bool on, bool extended);
    void pRedraw();
    void ApplySizable(QWidget& window, bool sizable);

    QPointer<QWidget> m_client;
    bool m_autoDrag = false;
    bool m_autoSysMenu = false;
    QPointer<QMenu> m_sysMenu;
};
