// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

QString Resource(const char* name) {
    return QStringLiteral(TAMSEL_BUILD_DATA_DIR "/") + QString::fromLatin1(name);
}

} // namespace

TEST(DataFilesTest, TheDefaultItemPageIsReadableUtf8Html) {
    QString error;
    const XsltStylesheet style = XsltStylesheet::Load(Resource("rss.xsl"), &error);
    ASSERT_FALSE(style.IsNull()) << error.toStdString();
    const XmlDocument item = XmlDocument::Parse(
        "<channel><item channel='http://example.org/rss' date='15 Nov 2005' time='13:45:00'>"
        "<title>Caf\xC3\xA9 opens &amp; closes</title><link>http://example.org/a?x=1&amp;y=2</link>"
        "<description>&lt;p&gt;First &lt;b&gt;bold&lt;/b&gt; paragraph&lt;/p&gt;</description>"
        "<read>true</read><flag>false</flag><delete>false</delete><channeltitle>Example News</channeltitle>"
        "</item></channel>");
    ASSERT_FALSE(item.IsNull());
    const QString html = QString::fromUtf8(style.TransformToBytes(item, &error));
    ASSERT_FALSE(html.isEmpty()) << error.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("charset=UTF-8"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("<a href=\"http://example.org/a?x=1&amp;y=2\">Caf\u00e9 opens &amp; closes</a>")));
    EXPECT_TRUE(html.contains(QStringLiteral("15 Nov 2005 13:45")));
    EXPECT_TRUE(html.contains(QStringLiteral("Example News")));
    EXPECT_TRUE(html.contains(QStringLiteral("<p>First <b>bold</b> paragraph</p>")));
    EXPECT_FALSE(html.contains(QStringLiteral("false")));
}

TEST(DataFilesTest, TheAlertIsAShortWaveSound) {
    QFile sound(Resource("alert.wav"));
    ASSERT_TRUE(sound.open(QIODevice::ReadOnly));
    const QByteArray header = sound.read(44);
    EXPECT_TRUE(header.startsWith("RIFF"));
    EXPECT_EQ(header.mid(8, 4), QByteArray("WAVE"));
    EXPECT_LT(sound.size(), 200 * 1024);
    EXPECT_GT(sound.size(), 1024);
}
