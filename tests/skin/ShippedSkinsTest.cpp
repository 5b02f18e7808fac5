// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

class ShippedSkinsTest : public ::testing::Test,
                         public SkinFixture,
                         public ::testing::WithParamInterface<const char*> {
protected:
    QString Name() const { return QString::fromUtf8(GetParam()); }
    QString Folder() const {
        return QStringLiteral(TAMSEL_BUILD_DATA_DIR) + QStringLiteral("/skins/") + Name();
    }
};

// Each shipped skin loads, covers every window and function, has every picture named in its skin
// file with a twice as large twin, and its item stylesheet writes a readable UTF-8 page whose
// links go to the web only.
TEST_P(ShippedSkinsTest, LoadsCompleteWithDoubledPicturesAndASafeItemPage) {
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
    EXPECT_EQ(skin.GetXSLFilename(), Folder() + QStringLiteral("/rss.xsl"));
    ASSERT_FALSE(skin.ItemStylesheet().IsNull()) << skin.ItemStylesheetError().toStdString();

    QFile file(Folder() + QStringLiteral("/skin.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QStringList pictures = QDir(Folder()).entryList({QStringLiteral("*.png")}, QDir::Files);
    ASSERT_FALSE(pictures.isEmpty());
    for (const QString& picture : pictures.filter(QRegularExpression(QStringLiteral("(?<!@2x)\\.png$")))) {
        EXPECT_TRUE(text.contains(u' ' + picture + u'\n')) << picture.toStdString();
        const QString twin = Folder() + u'/' + picture.chopped(4) + QStringLiteral("@2x.png");
        EXPECT_EQ(QImageReader(twin).size(), QImageReader(Folder() + u'/' + picture).size() * 2)
            << picture.toStdString();
    }

    QFile itemFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/item.xml"));
    ASSERT_TRUE(itemFile.open(QIODevice::ReadOnly));
    QByteArray item = itemFile.readAll();
    const QString html = QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(XmlDocument::Parse(item)));
    for (const QString& part :
         {QStringLiteral("charset=UTF-8"), QStringLiteral("<p>Hello <b>world</b> \u00FC</p>"),
          QStringLiteral("href=\"https://example.org/a?x=1&amp;y=2\""),
          QStringLiteral("Snow &amp; ice in the hills"), QStringLiteral("16 Nov 2026"),
          QStringLiteral("09:05"), QStringLiteral("Weather Desk")}) {
        EXPECT_TRUE(html.contains(part, Qt::CaseInsensitive))
            << part.toStdString() << " in " << html.toStdString();
    }
    item.replace("https://example.org/a?x=1&amp;y=2", "javascript:alert(1)");
    const QString hostile =
        QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(XmlDocument::Parse(item)));
    EXPECT_TRUE(hostile.contains(QStringLiteral("Snow &amp; ice in the hills"))) << hostile.toStdString();
    EXPECT_FALSE(hostile.contains(QStringLiteral("javascript"))) << hostile.toStdString();
    EXPECT_FALSE(hostile.contains(QStringLiteral("<a "))) << hostile.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Skins, ShippedSkinsTest, ::testing::Values("Default", "Nightfall"));

} // namespace
