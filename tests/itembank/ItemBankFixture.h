// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/clsItemBank.h"
#include "platform/XmlDocument.h"
#include "support/FakeClock.h"
#include "support/TestHome.h"

#include <QDate>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <deque>
#include <gtest/gtest.h>
#include <memory>

// An item as the feed parser hands it to the bank: the channel, date and time attributes, the
// feed's children, then read, flag, delete and channeltitle.
struct TestItem {
    QString channel = QStringLiteral("http://a.example/feed");
    QDate date = QDate(2026, 11, 16);
    QString time = QStringLiteral("09:00:00");
    QList<QPair<QString, QString>> fields;
    QString read = QStringLiteral("false");
    QString flag = QStringLiteral("false");
    QString deleted = QStringLiteral("false");
    QString channelTitle = QStringLiteral("Channel A");

    TestItem& Field(const QString& name, const QString& value) {
        fields.append({name, value});
        return *this;
    }
    QString Xml() const;
};

// A bank of the profile "Tester" in a temporary home, with the clock on Monday 16 Nov 2026, 09:00.
class ItemBankFixture : public ::testing::Test {
protected:
    static const QString kProfile;
    static const QString kChannelA;
    static const QString kChannelB;

    ItemBankFixture();

    // (Re)creates the bank and loads the profile's items.xml.
    void OpenBank();
    // Closes the open bank (which saves it), then writes the profile's items.xml.
    void WriteBankFile(const QByteArray& bytes);
    QByteArray ReadBankFile() const;
    QString BankFilePath() const;

    // A node of a separate (feed) document, kept alive for the test.
    XmlNode Candidate(const QString& itemXml);
    bool Add(const TestItem& item) { return m_bank->AddItem(Candidate(item.Xml())); }

    static QStringList Titles(const ItemList& items);
    // Titles of the root's children in document order, read from the document itself.
    QStringList StoredTitles() const;

    TestHome m_home;
    FakeClock m_clock;
    std::deque<XmlDocument> m_feeds;
    std::unique_ptr<clsItemBank> m_bank;
};
