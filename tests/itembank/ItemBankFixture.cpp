// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"

#include "itembank/modItemHandler.h"

#include <QDir>
#include <QFile>

const QString ItemBankFixture::kProfile = QStringLiteral("Tester");
const QString ItemBankFixture::kChannelA = QStringLiteral("http://a.example/feed");
const QString ItemBankFixture::kChannelB = QStringLiteral("http://b.example/rss");

QString TestItem::Xml() const {
    QString xml = QStringLiteral("<item channel=\"%1\" date=\"%2\" time=\"%3\">")
                      .arg(channel.toHtmlEscaped(), FormatItemDate(date), time);
    for (const auto& [name, value] : fields) {
        xml += u'<' + name + u'>' + value.toHtmlEscaped() + QStringLiteral("</") + name + u'>';
    }
    xml += QStringLiteral(
               "<read>%1</read><flag>%2</flag><delete>%3</delete><channeltitle>%4</channeltitle></item>")
               .arg(read, flag, deleted, channelTitle.toHtmlEscaped());
    return xml;
}

ItemBankFixture::ItemBankFixture() : m_clock(QDateTime(QDate(2026, 11, 16), QTime(9, 0))) {
    OpenBank();
}

void ItemBankFixture::OpenBank() {
    m_bank.reset();
    m_bank = std::make_unique<clsItemBank>(m_clock, m_home.GetPaths());
    m_bank->init(kProfile);
}

QString ItemBankFixture::BankFilePath() const {
    return m_home.GetPaths().ProfileFolder(kProfile) + QStringLiteral("/items.xml");
}

void ItemBankFixture::WriteBankFile(const QByteArray& bytes) {
    // The open bank would write its own items.xml over the file when it goes.
    m_bank.reset();
    QDir().mkpath(m_home.GetPaths().ProfileFolder(kProfile));
    QFile file(BankFilePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ItemBankFixture::ReadBankFile() const {
    QFile file(BankFilePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

XmlNode ItemBankFixture::Candidate(const QString& itemXml) {
    QString error;
    m_feeds.push_back(XmlDocument::Parse(itemXml.toUtf8(), &error));
    EXPECT_FALSE(m_feeds.back().IsNull()) << error.toStdString();
    return m_feeds.back().DocumentElement();
}

QStringList ItemBankFixture::Titles(const ItemList& items) {
    QStringList titles;
    for (const XmlNode& item : items) {
        titles.append(GetItemTitle(item));
    }
    return titles;
}

QStringList ItemBankFixture::StoredTitles() const {
    return Titles(m_bank->XMLDoc().DocumentElement().ChildNodes());
}
