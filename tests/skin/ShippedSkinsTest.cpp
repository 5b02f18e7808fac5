// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

const QByteArray kItem = QByteArrayLiteral(
    "<channel><item channel=\"http://example.org/feed\" date=\"16 Nov 2026\" time=\"09:05:00\">"
    "<title>Snow &amp; ice in the hills</title><link>https://example.org/a?x=1&amp;y=2</link>"
    "<description>&lt;p&gt;Hello &lt;b&gt;world&lt;/b&gt; \xC3\xBC&lt;/p&gt;</description>"
    "<read>false</read><flag>false</flag><delete>false</delete>"
    "<channeltitle>Weather Desk</channeltitle></item></channel>");

class ShippedSkinsTest : public ::testing::Test,
                         public SkinFixture,
                         public ::testing::WithParamInterface<const char*> {
protected:
    QString Name() const { return QString::fromUtf8(GetParam()); }
    QString Folder() const {
        return QStringLiteral(TAMSEL_BUILD_DATA_DIR) + QStringLiteral("/skins/") + Name();
    }
};

TEST_P(ShippedSkinsTest, LoadsWithoutAnError) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    Choose(Name());
    skin.LoadSkin();
    EXPECT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(skin.SkinFolder(), Folder());

    // Every kind has its frame; the big windows have room for their rows.
    for (int kind = frmTamselSkin::KindMain; kind <= frmTamselSkin::KindDialog; ++kind) {
        EXPECT_GT(skin.FrameNSize(kind), 0) << kind;
        EXPECT_GT(skin.FrameSSize(kind), 0) << kind;
    }
    EXPECT_GE(skin.FrameNSize(frmTamselSkin::KindChannel), skin.FilterTop() + 24);
    EXPECT_GT(skin.FrameWSize(frmTamselSkin::KindMain), 0);

    int entities = 0;
    QStringList functions;
    for (int number = 1; number <= frmTamselSkin::kDispatchedEntitySlots; ++number) {
        if (const frmSkinEntity* entity = skin.Entity(number)) {
            ++entities;
            EXPECT_TRUE(!entity->img.IsNull() || !entity->lbl.IsEmpty()) << number;
            if (!entity->sFunction.isEmpty()) {
                functions.append(entity->sFunction);
                EXPECT_FALSE(entity->imgMM.IsNull()) << number;
                EXPECT_FALSE(entity->imgMD.IsNull()) << number;
            }
        }
    }
    EXPECT_GE(entities, 25);
    for (const char* function :
         {"close", "min", "max", "windowframe", "profiles", "addchannel", "firstpage", "prevpage", "nextpage",
          "lastpage", "prev", "next", "pause", "play", "tickermenu", "link"}) {
        EXPECT_TRUE(functions.contains(QString::fromUtf8(function))) << function;
    }

    for (const QString& key : frmTamselSkin::TreeIconKeys()) {
        EXPECT_EQ(skin.TreeIcon(key).Size(), QSize(16, 16)) << key.toStdString();
        EXPECT_EQ(skin.TreeIcon(key).ForRatio(2).size(), QSize(32, 32)) << key.toStdString();
    }
    EXPECT_FALSE(skin.ItemStylesheet().IsNull()) << skin.ItemStylesheetError().toStdString();
    EXPECT_EQ(skin.GetXSLFilename(), Folder() + QStringLiteral("/rss.xsl"));
}

TEST_P(ShippedSkinsTest, EveryPictureHasATwiceAsLargeTwin) {
    const QStringList pictures = QDir(Folder()).entryList({QStringLiteral("*.png")}, QDir::Files);
    ASSERT_FALSE(pictures.isEmpty());
    for (const QString& file : pictures) {
        if (file.endsWith(QStringLiteral("@2x.png"))) {
            continue;
        }
        const QString twin = Folder() + u'/' + file.chopped(4) + QStringLiteral("@2x.png");
        ASSERT_TRUE(QFileInfo::exists(twin)) << file.toStdString();
        EXPECT_EQ(QImageReader(twin).size(), QImageReader(Folder() + u'/' + file).size() * 2)
            << file.toStdString();
    }
}

TEST_P(ShippedSkinsTest, EveryPictureIsNamedInTheSkinFile) {
    QFile file(Folder() + QStringLiteral("/skin.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QStringList pictures = QDir(Folder()).entryList({QStringLiteral("*.png")}, QDir::Files);
    for (const QString& picture : pictures) {
        if (!picture.endsWith(QStringLiteral("@2x.png"))) {
            EXPECT_TRUE(text.contains(u' ' + picture + u'\n')) << picture.toStdString();
        }
    }
}

TEST_P(ShippedSkinsTest, ItemStylesheetWritesAReadableUtf8Page) {
    Choose(Name());
    skin.LoadSkin();
    ASSERT_FALSE(skin.ItemStylesheet().IsNull());
    QString error;
    const XmlDocument input = XmlDocument::Parse(kItem, &error);
    ASSERT_FALSE(input.IsNull()) << error.toStdString();
    const QString html = QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(input, &error));
    ASSERT_FALSE(html.isEmpty()) << error.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("charset=UTF-8"), Qt::CaseInsensitive)) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("<p>Hello <b>world</b> \u00FC</p>"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("href=\"https://example.org/a?x=1&amp;y=2\"")))
        << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("Snow &amp; ice in the hills"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("16 Nov 2026"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("09:05"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("Weather Desk"))) << html.toStdString();
}

TEST_P(ShippedSkinsTest, OnlyWebAddressesBecomeLinks) {
    Choose(Name());
    skin.LoadSkin();
    QByteArray item = kItem;
    item.replace("https://example.org/a?x=1&amp;y=2", "javascript:alert(1)");
    const XmlDocument input = XmlDocument::Parse(item);
    const QString html = QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(input));
    EXPECT_TRUE(html.contains(QStringLiteral("Snow &amp; ice in the hills"))) << html.toStdString();
    EXPECT_FALSE(html.contains(QStringLiteral("javascript"))) << html.toStdString();
    EXPECT_FALSE(html.contains(QStringLiteral("<a "))) << html.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Skins, ShippedSkinsTest, ::testing::Values("Default", "Nightfall"));

} // namespace
