// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "support/FakeClock.h"
#include "support/TestHome.h"

#include <QFile>
#include <QStringList>
#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

// The bank of the profile "Tester" in a temporary home, with the clock on Monday 16 Nov 2026, 09:00.
class ItemBankFixture : public ::testing::Test {
protected:
    static inline const QString kChannelA = u"http://a.example/feed"_s;
    static inline const QString kBankFile = u"profiles/Tester/items.xml"_s;

    ItemBankFixture() { OpenBank(); }

    // (Re)creates the bank and loads the profile's items.xml.
    void OpenBank() {
        m_bank.reset();
        m_bank = std::make_unique<clsItemBank>(m_clock, m_home.GetPaths());
        m_bank->init(u"Tester"_s);
    }
    // Opens the bank on an items.xml of these bytes, written once the open bank (which would save
    // over it) is gone.
    void OpenBankFrom(const QByteArray& bytes) {
        m_bank.reset();
        m_home.Write(kBankFile, bytes);
        OpenBank();
    }
    static QByteArray ReadData(const QString& name) {
        QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }
    // The root of a separate (feed) document, kept alive for the test.
    XmlNode Candidate(const QByteArray& xml) {
        QString error;
        m_feeds.push_back(XmlDocument::Parse(xml, &error));
        EXPECT_FALSE(m_feeds.back().IsNull()) << error.toStdString();
        return m_feeds.back().DocumentElement();
    }
    static QStringList Titles(const ItemList& items) {
        QStringList titles;
        std::ranges::transform(items, std::back_inserter(titles), GetItemTitle);
        return titles;
    }

    TestHome m_home;
    FakeClock m_clock;
    std::deque<XmlDocument> m_feeds;
    std::unique_ptr<clsItemBank> m_bank;
};
