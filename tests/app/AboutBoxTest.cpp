// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmAbout.h"
#include "platform/CRegSettings.h"
#include "skin/SkinHost.h"
#include "skin/SkinSurface.h"
#include "skin/frmTamselSkin.h"
#include "support/FakeClock.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class QuietSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString&) override {}
    QPointF CursorOn(const SkinSurface&) const override { return {-1000, -1000}; }
};

class AboutBoxTest : public ::testing::Test {
protected:
    AboutBoxTest() { skin.LoadSkin(); }

    TestHome home;
    CRegSettings settings{home.GetPaths()};
    FakeClock clock;
    QuietSkinHost host;
    RecordingDesktop desktop;
    frmTamselSkin skin{settings, home.GetPaths(), clock, host};
};

TEST_F(AboutBoxTest, ShowsTheBuildsVersionAndTheCaption) {
    frmAbout about(skin, desktop, u"https://tamsel.example/"_s, nullptr);
    EXPECT_EQ(about.windowTitle(), u"About Tamsel"_s);
    QStringList texts;
    for (const QLabel* label : about.findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(
        u"Version %1.%2.%3"_s.arg(TAMSEL_VERSION_MAJOR).arg(TAMSEL_VERSION_MINOR).arg(TAMSEL_VERSION_PATCH)));
    EXPECT_TRUE(texts.contains(u"https://tamsel.example/"_s));
}

TEST_F(AboutBoxTest, TheCreditsFadeInScrollUpAndStopThenStartAgainFromTheBottom) {
    for (int opening = 0; opening < 2; ++opening) {
        SCOPED_TRACE(opening);
        frmAbout about(skin, desktop, QString(), nullptr);
        about.show();
        const int height = about.Credits()->height();
        ASSERT_GT(height, 0);
        const QColor back = about.Credits()->BackColor();
        about.tmrCredits_Timer();
        EXPECT_EQ(about.CreditsTop(), height - 1);
        const QColor first = about.CreditsColour();
        EXPECT_LE(std::abs(first.red() - back.red()), 1) << "the text starts near invisible";
        for (int tick = 1; tick < height + 1000; ++tick) {
            about.tmrCredits_Timer();
        }
        EXPECT_EQ(about.CreditsTop(), 0);
        EXPECT_FALSE(about.CreditsRunning());
        EXPECT_NE(about.CreditsColour(), back) << "the text has faded in";
    }
}

TEST_F(AboutBoxTest, SystemInfoWithoutAToolSaysSo) {
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", home.Path().toUtf8());
    frmAbout about(skin, desktop, QString(), nullptr);
    QString message;
    QTimer::singleShot(0, [&message] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            message = box->text();
            box->accept();
        }
    });
    about.StartSysInfo();
    qputenv("PATH", path);
    EXPECT_EQ(message, u"System Information Is Unavailable At This Time"_s);
}

TEST_F(AboutBoxTest, EveryFocusableControlHasAnAccessibleName) {
    frmAbout about(skin, desktop, u"https://tamsel.example/"_s, nullptr);
    about.show();
    QApplication::setActiveWindow(&about);
    QWidget* first = QApplication::focusWidget() ? QApplication::focusWidget() : &about;
    QWidget* current = first;
    QStringList unnamed;
    int seen = 0;
    for (int step = 0; step < 10; ++step) {
        if (current != &about) {
            ++seen;
            if (current->accessibleName().isEmpty()) {
                unnamed.append(QString::fromUtf8(current->metaObject()->className()));
            }
        }
        QTest::keyClick(current, Qt::Key_Tab);
        current = QApplication::focusWidget();
        if (!current || current == first) {
            break;
        }
    }
    EXPECT_GE(seen, 3);
    EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(u", "_s).toStdString();
}

} // namespace
