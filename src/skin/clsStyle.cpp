// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/clsStyle.h"

#include <QMenu>
#include <QMouseEvent>
#include <QVariant>
#include <QWindow>

namespace {

// The style words travel with the window, so that every clsStyle attached to it agrees.
constexpr const char* kStyleProperty = "tamselStyle";
constexpr const char* kExStyleProperty = "tamselExStyle";
// The size limits a window had before clsStyle took its sizing border away.
constexpr const char* kMinimumProperty = "tamselSizableMinimum";
constexpr const char* kMaximumProperty = "tamselSizableMaximum";

constexpr Qt::WindowFlags kManagedFlags =
    Qt::WindowType_Mask | Qt::FramelessWindowHint | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
    Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
    Qt::WindowCloseButtonHint | Qt::WindowContextHelpButtonHint | Qt::WindowStaysOnTopHint;

// The words that describe a window nobody has styled yet, read from its flags.
quint32 StyleFromFlags(const QWidget& window) {
    const Qt::WindowFlags flags = window.windowFlags();
    quint32 style = 0;
    if (!flags.testFlag(Qt::FramelessWindowHint)) {
        style |= clsStyle::kCaption;
        const bool custom = flags.testFlag(Qt::CustomizeWindowHint);
        if (!custom || flags.testFlag(Qt::WindowSystemMenuHint)) {
            style |= clsStyle::kSysMenu;
        }
        if (!custom || flags.testFlag(Qt::WindowMinimizeButtonHint)) {
            style |= clsStyle::kMinimizeBox;
        }
        if (!custom || flags.testFlag(Qt::WindowMaximizeButtonHint)) {
            style |= clsStyle::kMaximizeBox;
        }
    }
    if (window.minimumSize() != window.maximumSize()) {
        style |= clsStyle::kThickFrame;
    }
    return style;
}

quint32 ExStyleFromFlags(const QWidget& window) {
    const Qt::WindowFlags flags = window.windowFlags();
    quint32 exStyle = 0;
    if ((flags & Qt::WindowType_Mask) == Qt::Tool) {
        exStyle |= clsStyle::kExToolWindow;
    }
    if (flags.testFlag(Qt::WindowContextHelpButtonHint)) {
        exStyle |= clsStyle::kExContextHelp;
    }
    if (flags.testFlag(Qt::WindowStaysOnTopHint)) {
        exStyle |= clsStyle::kExTopMost;
    }
    return exStyle;
}

} // namespace

clsStyle::clsStyle(QObject* parent) : QObject(parent) {}

clsStyle::~clsStyle() {
    if (m_client) {
        m_client->removeEventFilter(this);
    }
}

void clsStyle::SetClient(QWidget* client) {
    if (m_client) {
        m_client->removeEventFilter(this);
    }
    m_client = client;
    if (m_client) {
        m_client->installEventFilter(this);
    }
}

WId clsStyle::hWnd() const {
    return m_client ? m_client->effectiveWinId() : WId(0);
}

quint32 clsStyle::Word(const char* name, quint32 (*fromFlags)(const QWidget&)) const {
    if (!m_client) {
        return 0;
    }
    const QVariant stored = m_client->property(name);
    return stored.isValid() ? stored.toUInt() : fromFlags(*m_client);
}

quint32 clsStyle::Style() const {
    return Word(kStyleProperty, StyleFromFlags);
}

quint32 clsStyle::ExStyle() const {
    return Word(kExStyleProperty, ExStyleFromFlags);
}

void clsStyle::SetStyle(quint32 style) {
    if (!m_client) {
        return;
    }
    m_client->setProperty(kExStyleProperty, ExStyle());
    m_client->setProperty(kStyleProperty, style);
    pRedraw();
}

void clsStyle::SetExStyle(quint32 exStyle) {
    if (!m_client) {
        return;
    }
    m_client->setProperty(kStyleProperty, Style());
    m_client->setProperty(kExStyleProperty, exStyle);
    pRedraw();
}

void clsStyle::SetBit(quint32 bit, bool on, bool extended) {
    const quint32 word = extended ? ExStyle() : Style();
    const quint32 changed = on ? (word | bit) : (word & ~bit);
    if (extended) {
        SetExStyle(changed);
    } else {
        SetStyle(changed);
    }
}

void clsStyle::ApplySizable(QWidget& window, bool sizable) {
    const bool fixedByUs = window.property(kMinimumProperty).isValid();
    if (!sizable && !fixedByUs) {
        window.setProperty(kMinimumProperty, window.minimumSize());
        window.setProperty(kMaximumProperty, window.maximumSize());
        window.setFixedSize(window.size());
    } else if (sizable && fixedByUs) {
        window.setMinimumSize(window.property(kMinimumProperty).toSize());
        window.setMaximumSize(window.property(kMaximumProperty).toSize());
        window.setProperty(kMinimumProperty, QVariant());
        window.setProperty(kMaximumProperty, QVariant());
    }
}

void clsStyle::pRedraw() {
    QWidget* window = m_client;
    if (!window) {
        return;
    }
    const quint32 style = Style();
    const quint32 exStyle = ExStyle();
    const Qt::WindowFlags old = window->windowFlags();

    Qt::WindowFlags type = old & Qt::WindowType_Mask;
    if ((exStyle & kExToolWindow) != 0) {
        type = Qt::Tool;
    } else if (type == Qt::Tool || type == Qt::Widget) {
        type = Qt::Window;
    }
    Qt::WindowFlags flags = (old & ~kManagedFlags) | type;
    if ((style & kCaption) != 0) {
        flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint;
        if ((style & kSysMenu) != 0) {
            flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
        }
        if ((style & kMinimizeBox) != 0) {
            flags |= Qt::WindowMinimizeButtonHint;
        }
        if ((style & kMaximizeBox) != 0) {
            flags |= Qt::WindowMaximizeButtonHint;
        }
        if ((exStyle & kExContextHelp) != 0) {
            flags |= Qt::WindowContextHelpButtonHint;
        }
    } else {
        flags |= Qt::FramelessWindowHint;
    }
    if ((exStyle & kExTopMost) != 0) {
        flags |= Qt::WindowStaysOnTopHint;
    }

    if (flags != old) {
        // Changing the flags takes the window down; it comes back where its client area was.
        const bool visible = window->isVisible();
        const QRect geometry = window->geometry();
        window->setWindowFlags(flags);
        window->setGeometry(geometry);
        if (visible) {
            window->show();
        }
    }
    ApplySizable(*window, (style & kThickFrame) != 0);
    Q_EMIT FrameRedrawn();
}

void clsStyle::ShowSysMenu(QPoint globalPosition) {
    QWidget* window = m_client;
    if (!window) {
        return;
    }
    if (m_sysMenu) {
        m_sysMenu->close();
    }
    auto* menu = new QMenu(window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const Qt::WindowStates state = window->windowState();
    const bool normal = !(state & (Qt::WindowMinimized | Qt::WindowMaximized));
    const QPointer<QWidget> target(window);
    menu->addAction(QStringLiteral("&Restore"), window,
                    [target] {
                        if (target) {
                            target->showNormal();
                        }
                    })
        ->setEnabled(!normal);
    menu->addAction(QStringLiteral("Mi&nimize"), window,
                    [target] {
                        if (target) {
                            target->showMinimized();
                        }
                    })
        ->setEnabled(MinButton() && !state.testFlag(Qt::WindowMinimized));
    menu->addAction(QStringLiteral("Ma&ximize"), window,
                    [target] {
                        if (target) {
                            target->showMaximized();
                        }
                    })
        ->setEnabled(MaxButton() && !state.testFlag(Qt::WindowMaximized));
    menu->addSeparator();
    menu->addAction(QStringLiteral("&Close"), window, [target] {
        if (target) {
            target->close();
        }
    });
    m_sysMenu = menu;
    menu->popup(globalPosition);
}

bool clsStyle::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_client) {
        return false;
    }
    if (event->type() == QEvent::MouseButtonPress && m_autoDrag) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton && !m_client->isMaximized() && m_client->windowHandle()) {
            m_client->windowHandle()->startSystemMove();
        }
    } else if (event->type() == QEvent::MouseButtonRelease && m_autoSysMenu) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton) {
            ShowSysMenu(mouse->globalPosition().toPoint());
        }
    }
    return false;
}
