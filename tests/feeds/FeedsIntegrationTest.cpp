// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The whole road of a fetch through the real network client: the maker's channels, read from the
// shipped site, through the shipped namespace stylesheet into the item bank. The channels' timers
// run on a fake clock that the test advances; the replies are served by pumping the event loop
// until the awaited state is reached (bounded, so that a broken build fails instead of hanging).
// A feed on an HTTP server takes the same road in the command-line sessions (tests/cli,
// unchanged-feeds.txt: a known Last-Modified header spares the download); every other branch of
// a check is proven on a fake network (ChannelFetchTest), the client's failures and redirects
// with the client (HttpClientTest) and hostile documents with the parser (XmlSecurityTest).
#include "FeedsFixture.h"

#include "support/EventPump.h"

namespace {

constexpr int kPumpLimitMs = 20000;

class FeedsIntegrationTest : public FeedsFixture {
protected:
    FeedsIntegrationTest() : FeedsFixture(false, Network::Real) {}
};

// The maker's channels load from the shipped site, whose file addresses answer HEAD with a date;
// the first start opens the help channel.
TEST_F(FeedsIntegrationTest, MakerChannelsLoadFromTheShippedSite) {
    Activate(true);
    host.SetFirstRun(true);
    clock.Advance(RSSChannel::kFirstCheckMs);
    RSSChannel* news = profile.GetChannel(site.NewsURL());
    RSSChannel* help = profile.GetChannel(site.HelpURL());
    ASSERT_TRUE(PumpUntil([&] { return !news->Busy() && !help->Busy(); }, kPumpLimitMs));
    EXPECT_GT(news->ItemCount(), 0);
    EXPECT_GT(help->ItemCount(), 0);
    EXPECT_NE(news->LastModified(), RSSChannel::kNeverChecked);
    EXPECT_TRUE(help->IsViewerLoaded());
    EXPECT_FALSE(host.FirstRun());
}

} // namespace
