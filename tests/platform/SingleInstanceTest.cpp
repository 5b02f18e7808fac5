// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SingleInstance.h"
#include "support/EventPump.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using Result = SingleInstance::Result;
using Role = SingleInstance::Role;

constexpr int kShowWaitMs = 5000;
constexpr int kSettleMs = 200;

class SingleInstanceTest : public ::testing::Test {
protected:
    QTemporaryDir m_folder;
};

TEST_F(SingleInstanceTest, ASecondWindowStartAsksTheFirstToShowItself) {
    SingleInstance first(m_folder.path());
    ASSERT_EQ(first.Acquire(), Result::Acquired);
    int shows = 0;
    QObject::connect(&first, &SingleInstance::ShowRequested, [&shows] { ++shows; });
    EXPECT_TRUE(SingleInstance::IsHeld(m_folder.path()));

    SingleInstance second(m_folder.path());
    EXPECT_EQ(second.Acquire(), Result::HeldByWindow);
    EXPECT_TRUE(PumpUntil([&shows] { return shows == 1; }, kShowWaitMs));
}

TEST_F(SingleInstanceTest, AToolHoldsTheFolderWithoutBeingAskedToShow) {
    {
        SingleInstance tool(m_folder.path(), Role::Tool);
        ASSERT_EQ(tool.Acquire(), Result::Acquired);
        EXPECT_TRUE(SingleInstance::IsHeld(m_folder.path()));
        SingleInstance window(m_folder.path());
        EXPECT_EQ(window.Acquire(), Result::HeldByTool);
        SingleInstance otherTool(m_folder.path(), Role::Tool);
        EXPECT_EQ(otherTool.Acquire(), Result::HeldByTool);
    }
    EXPECT_FALSE(SingleInstance::IsHeld(m_folder.path()));
    SingleInstance window(m_folder.path());
    EXPECT_EQ(window.Acquire(), Result::Acquired);
}

TEST_F(SingleInstanceTest, AToolNeverBringsTheWindowForward) {
    SingleInstance window(m_folder.path());
    ASSERT_EQ(window.Acquire(), Result::Acquired);
    int shows = 0;
    QObject::connect(&window, &SingleInstance::ShowRequested, [&shows] { ++shows; });
    SingleInstance tool(m_folder.path(), Role::Tool);
    EXPECT_EQ(tool.Acquire(), Result::HeldByWindow);
    // A show request from a window start arrives; none came from the tool before it.
    SingleInstance laterWindow(m_folder.path());
    EXPECT_EQ(laterWindow.Acquire(), Result::HeldByWindow);
    EXPECT_TRUE(PumpUntil([&shows] { return shows > 0; }, kShowWaitMs));
    // Long enough for a request from the tool, written earlier, to have been read as well.
    PumpUntil([] { return false; }, kSettleMs);
    EXPECT_EQ(shows, 1);
}

} // namespace
