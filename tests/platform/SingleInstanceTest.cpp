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

// A second window start asks the first to show itself, a tool never; a tool holds the folder
// without being asked to show, and the folder is free once it ends.
TEST(SingleInstanceTest, ASecondWindowStartAsksTheFirstToShowItselfAToolNever) {
    const QTemporaryDir folder;
    {
        SingleInstance window(folder.path());
        ASSERT_EQ(window.Acquire(), Result::Acquired);
        EXPECT_TRUE(SingleInstance::IsHeld(folder.path()));
        int shows = 0;
        QObject::connect(&window, &SingleInstance::ShowRequested, [&shows] { ++shows; });
        EXPECT_EQ(SingleInstance(folder.path(), Role::Tool).Acquire(), Result::HeldByWindow);
        EXPECT_EQ(SingleInstance(folder.path()).Acquire(), Result::HeldByWindow);
        EXPECT_TRUE(PumpUntil([&shows] { return shows > 0; }, kShowWaitMs));
        // Long enough for a request from the tool, written earlier, to have been read as well.
        PumpUntil([] { return false; }, kSettleMs);
        EXPECT_EQ(shows, 1);
    }
    {
        SingleInstance tool(folder.path(), Role::Tool);
        ASSERT_EQ(tool.Acquire(), Result::Acquired);
        EXPECT_EQ(SingleInstance(folder.path()).Acquire(), Result::HeldByTool);
        EXPECT_EQ(SingleInstance(folder.path(), Role::Tool).Acquire(), Result::HeldByTool);
    }
    EXPECT_FALSE(SingleInstance::IsHeld(folder.path()));
    EXPECT_EQ(SingleInstance(folder.path()).Acquire(), Result::Acquired);
}

} // namespace
