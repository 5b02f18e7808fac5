// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinnedWindow.h"

#include <QColor>
#include <QStringList>

class Desktop;
class QLabel;
class QPushButton;
class QTimer;
class SkinSurface;

// The about box: the program's title and version, credits that fade in and scroll up, the
// maker's web address and a button that starts the desktop's system information tool.
class frmAbout final : public SkinnedWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmAbout)
public:
    static constexpr int kCreditsIntervalMs = 100;
    // The credits scroll until their top is this far above the surface, then stop.
    static constexpr int kCreditsEnd = -1000;

    frmAbout(frmTamselSkin& skin, Desktop& desktop, QString homePage, QWidget* parent);
    ~frmAbout() override;

    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override;

    // One step of the credits: drawn one unit higher, one shade nearer the text colour.
    void tmrCredits_Timer();
    int CreditsTop() const { return m_CreditsTop; }
    bool CreditsRunning() const;
    SkinSurface* Credits() const { return picCredits; }
    QColor CreditsColour() const { return m_creditsColour; }

    // Starts the desktop's system information tool; says so when none is installed.
    void StartSysInfo();
    // The first system information tool found on the PATH, with its arguments; empty when none.
    static QStringList FindSysInfo();

protected:
    void RepaintSkin() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Desktop& m_desktop;
    QString m_homePage;
    QLabel* lblTitle;
    QLabel* lblVersion;
    QLabel* Label1;
    SkinSurface* picCredits;
    QLabel* Label2;
    QPushButton* cmdOk;
    QPushButton* cmdSysInfo;
    QTimer* tmrCredits;
    int m_CreditsTop = 0;
    // The text passes the top at 0 on its way up, so 0 alone cannot mean "not started".
    bool m_creditsStarted = false;
    QColor m_creditsColour;
};
