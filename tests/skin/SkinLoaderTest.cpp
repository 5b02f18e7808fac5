// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinColor.h"
#include "skin/SkinNumber.h"
#include "skin/frmSkin.h"
#include "skin/frmSkinEntity.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QPalette>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SkinLoaderTest : public ::testing::Test, public SkinFixture {};

// An empty skin name loads no entities and still updates the icons and the stylesheet; tree icon
// keywords then replace the images of their keys.
TEST_F(SkinLoaderTest, AnEmptySkinNameLoadsTheDefaultIconsThatTreeIconKeywordsReplace) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    skin.LoadSkin();
    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(imageList.added, frmTamselSkin::TreeIconKeys() + QStringList{u"last"_s});
    EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(u"rss.xsl"_s));
    for (int number = 1; number <= frmTamselSkin::kEntitySlots; ++number) {
        EXPECT_EQ(skin.Entity(number), nullptr);
    }
    for (int icon = 0; icon < frmTamselSkin::kListIcons; ++icon) {
        EXPECT_EQ(skin.GetListIcon(frmTamselSkin::ListIcon(icon)).Size(), QSize(16, 16)) << icon;
    }
    imageList.added.clear();
    Load(u"Icons"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(imageList.removed, (QStringList{u"unread"_s, u"expanded"_s, u"collapse"_s}));
    EXPECT_EQ(imageList.added, (QStringList{u"unread"_s, u"collapse"_s, u"expanded"_s, u"last"_s}));
    EXPECT_EQ(Summary(PictureColour(imageList.images.value(u"unread"_s)),
                      PictureColour(imageList.images.value(u"expanded"_s)),
                      PictureColour(imageList.images.value(u"collapse"_s)),
                      PictureColour(skin.GetListIcon(frmTamselSkin::ListIcon::Link))),
              u"#ff0000 #00ff00 #00ff00 #0000ff"_s);
}

// Keywords ignore case, arguments keep it; numbers are read as far as they go (&h is hexadecimal)
// and rounded half to even; booleans are true only for "true"; unknown keywords, comments and
// keyword-only lines are skipped (data/skins/All). A later load starts again from the defaults.
TEST_F(SkinLoaderTest, KeywordsSetTheirValuesAndTheNextLoadStartsFromTheDefaults) {
    Load(u"All"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    const frmSkinEntity* e = skin.Entity(36);
    ASSERT_NE(e, nullptr);
    const auto* f3 = skin.FontSlot(3);
    const auto* f4 = skin.FontSlot(4);
    // Fonts 3, 4 and the last slot; entity 36 with its caption and hover fonts (hover takes no colour).
    EXPECT_EQ(Summary(f3->Name, f3->Size, f3->Bold, f3->Italic, skin.GetFontColor(3), f4->StrikeThrough,
                      skin.GetFontColor(4), f4->ShadowColor, skin.FontSlot(20)->Name),
              Summary(u"Nimbus Sans"_s, 11.5, 1, 0, 0xFF0000, 1, 0xFF0000, 0x80000005, u"Last"_s));
    EXPECT_EQ(Summary(e->sFunction, e->iWindow, e->bHide, e->bCenter, e->iTop, e->iLeft,
                      e->lbl.Font.pointSizeF(), e->lbl.ForeColor, e->lblMM.Font.pointSizeF(),
                      e->lblMM.ForeColor),
              Summary(u"Close"_s, frmTamselSkin::KindTicker, 1, 1, 2.5, -7.25, 11.5, 0xFF0000, 7, 0));
    // Frame sizes from a picture, without one and rounded to even; an unknown frame is the main
    // one; there is no frame of kind 7.
    EXPECT_EQ(Summary(skin.FrameNSize(1), skin.FrameESize(1), skin.FrameSSize(1), skin.FrameColor(1),
                      skin.FrameWSize(0), skin.FrameNSize(7), skin.FrameNSize(frmTamselSkin::KindTicker),
                      skin.FrameColor(frmTamselSkin::KindTicker)),
              Summary(12, 7, 10, 0x123456, 8, 0, 4, 7));
    EXPECT_EQ(Summary(skin.FilterTop(), skin.FilterLeft(), skin.FilterWidth(), skin.SearchLeft(),
                      skin.SearchWidth(), skin.GridFont(), skin.TickerFont(), skin.TreeColor(),
                      skin.GridColorEven(), skin.GridColorOdd(), frmTamselSkin::KindOf(u"TickerItem"_s),
                      frmTamselSkin::KindOf(u"viewer"_s), skin.Entity(3) != nullptr),
              Summary(31, -12, 140, 32, 202, 20, 0, 0x00FF00, 4, 1, 4, 0, 1));
    // Fonts reach widgets and skin surfaces; the colour only when asked, unknown slots not at all.
    QLabel label;
    skin.SetFont(&label, 4, false);
    EXPECT_EQ(Summary(label.font().pointSizeF(), label.font().italic(), label.font().underline(),
                      label.font().strikeOut(),
                      label.palette().color(QPalette::WindowText) == QColor(0, 0, 255)),
              u"7 1 1 1 0"_s);
    skin.SetFont(&label, 3, true);
    EXPECT_EQ(label.font().family(), u"Nimbus Sans"_s);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(nullptr, 3, true);
    skin.SetFont(&label, 40, true);
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 11.5);
    TestWindow window;
    skin.SetFont(window.picSkin(), 3, true);
    EXPECT_EQ(Summary(window.picSkin()->DrawFont().family(), window.picSkin()->ForeColor()),
              u"Nimbus Sans #0000ff"_s);

    Load(u"Default"_s, u"; nothing but a comment\n"_s);
    // User skins come before shipped ones of the same name.
    EXPECT_EQ(skin.SkinFolder(), home.File(u"skins/Default"_s));
    EXPECT_EQ(Summary(skin.TreeColor(), skin.GridColorOdd(), skin.FontSlot(8) == nullptr,
                      skin.Entity(3) == nullptr, skin.FrameColor(frmTamselSkin::KindTicker),
                      skin.FrameNSize(frmTamselSkin::KindTicker), skin.FilterTop(), skin.TickerFont(),
                      skin.TreeIcon(u"read"_s).Size() == QSize(16, 16), skin.GetFont(10).pointSizeF(),
                      skin.GetFont(10).family()),
              Summary(0xFFB29D, 0xFFCCCC, 1, 1, 0xFF0000, 0, 5, 1, 1, 8, u"Arial"_s));
}

// The load stops at the failing line, which the message names: later lines, the icon list and
// the stylesheet step do not run. A missing skin, or one outside the skin folder, gives the
// short message.
TEST_F(SkinLoaderTest, AFailingLineStopsTheLoadAndIsNamed) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    for (const char* text :
         {"defineentity 0", "defineentity 37", "definefont 0", "definefont 22", "  image p.png  ",
          "text Hello", "function close", "defineentity 1\nimage missing.png",
          "defineentity 1\nimage ../Bad/p.png", "defineframe main\nframen nothing.png", "framensize 40000",
          "defineentity 2\nfont 9", "gridfont 22", "iconunread none.png"}) {
        SCOPED_TRACE(text);
        host.messages.clear();
        Load(u"Bad"_s, QString::fromUtf8(text) + u"\ntreecolor 5\n"_s);
        ASSERT_EQ(host.messages.size(), 1);
        const QString line = QString::fromUtf8(text).section(u'\n', -1).trimmed();
        // The skin and the line, then a reason of its own on the third line.
        const QString message = host.messages.at(0);
        EXPECT_EQ(Summary(message.section(u"\nError Return: "_s, 0, 0), message.count(u'\n'),
                          message.section(u"\nError Return: "_s, 1).isEmpty()),
                  Summary(u"Error Loading Skin File: Bad\nskin.txt - Error On Line: "_s + line, 2, 0));
        EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    }
    home.Write(u"skin.txt"_s, QByteArrayLiteral("treecolor 1\n"));
    for (const QString& name : {u"Nowhere"_s, u".."_s}) {
        host.messages.clear();
        Choose(name);
        skin.LoadSkin();
        EXPECT_EQ(host.messages, QStringList{u"Error Loading Skin File: "_s + name});
        EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    }
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_TRUE(imageList.added.isEmpty());
}

// Normal, hover and pressed picture colours, then the three captions, of entities 1 to 4. The item
// stylesheet comes from the skin folder when it opens.
TEST_F(SkinLoaderTest, StateKeywordsAreAsymmetricAndTheStylesheetComesFromTheSkin) {
    Load(u"States"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    QStringList states;
    for (int number = 1; number <= 4; ++number) {
        const frmSkinEntity* e = skin.Entity(number);
        ASSERT_NE(e, nullptr);
        states << Summary(PictureColour(e->img), PictureColour(e->imgMM), PictureColour(e->imgMD),
                          e->lbl.Caption, e->lblMM.Caption, e->lblMD.Caption);
    }
    EXPECT_EQ(states.join(u'|'), u"#ff0000 #ff0000 #ff0000 A A A|#ff0000 #00ff00 #00ff00 A B B|"
                                 u"#ff0000 #00ff00 #0000ff A C B|#ff0000 #ff0000 #ff0000 A A A"_s);

    Load(u"Xsl"_s);
    EXPECT_EQ(Summary(skin.GetXSLFilename(), skin.ItemStylesheet().IsNull(), skin.ItemStylesheetError()),
              Summary(home.File(u"skins/Xsl/mine.xsl"_s), 0, QString()));
    for (const char* line : {"xslfile absent.xsl\n", "xslfile ../Xsl/mine.xsl\n"}) {
        Load(u"Xsl"_s, QString::fromUtf8(line));
        EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(u"rss.xsl"_s)) << line;
    }
    // The skin's own rss.xsl is taken without an xslfile line; a broken one leaves a reason.
    Load(u"Broken"_s);
    EXPECT_EQ(skin.GetXSLFilename(), home.File(u"skins/Broken/rss.xsl"_s));
    EXPECT_TRUE(skin.ItemStylesheet().IsNull());
    EXPECT_FALSE(skin.ItemStylesheetError().isEmpty());
}

TEST(SkinNumberTest, ReadsTheLeadingNumberAndRoundsHalvesToEven) {
    // Each line of the table is "text|value".
    QFile table(QStringLiteral(TAMSEL_TEST_DATA_DIR "/numbers.txt"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    for (const QString& row : QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        EXPECT_DOUBLE_EQ(SkinNumber::Leading(row.section(u'|', 0, 0)), row.section(u'|', 1).toDouble())
            << row.toStdString();
    }
    const std::pair<double, qint64> rounds[] = {
        {2.5, 2}, {3.5, 4}, {-2.5, -2}, {-3.5, -4}, {2.4999, 2}, {2.5001, 3}, {1e300, qint64(9.0e18)}};
    for (const auto& [value, rounded] : rounds) {
        EXPECT_EQ(SkinNumber::Round(value), rounded) << value;
    }
    EXPECT_TRUE(SkinNumber::Boolean(u"TRUE"));
    for (const char16_t* text : {u"yes", u"1", u"true!", u""}) {
        EXPECT_FALSE(SkinNumber::Boolean(text));
    }
}

TEST(SkinColorTest, ColoursAreBlueGreenRedOrSystemColours) {
    EXPECT_EQ(SkinColor::ToQColor(0xFF0000), QColor(0, 0, 255));
    EXPECT_EQ(SkinColor::ToQColor(0x9DB2FF), QColor(0xFF, 0xB2, 0x9D));
    EXPECT_EQ(SkinColor::ToQColor(SkinColor::kButtonFace),
              QGuiApplication::palette().color(QPalette::Button));
    EXPECT_EQ(SkinColor::ToQColor(0x80000005), QGuiApplication::palette().color(QPalette::Base));
    EXPECT_EQ(SkinColor::ToQColor(0x800000FF), QGuiApplication::palette().color(QPalette::Dark));
}

class ShippedSkinsTest : public SkinLoaderTest, public ::testing::WithParamInterface<const char*> {};

// Each shipped skin loads, covers every window and function, has every picture named in its skin
// file with a twice as large twin, and its item stylesheet writes a readable UTF-8 page whose
// links go to the web only.
TEST_P(ShippedSkinsTest, LoadsCompleteWithDoubledPicturesAndASafeItemPage) {
    const QString folder = QStringLiteral(TAMSEL_BUILD_DATA_DIR "/skins/") + QString::fromUtf8(GetParam());
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    Choose(QString::fromUtf8(GetParam()));
    skin.LoadSkin();
    EXPECT_EQ(Summary(host.messages.join(u'|'), loaded.count(), skin.SkinFolder()),
              Summary(QString(), 1, folder));

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
    EXPECT_EQ(skin.GetXSLFilename(), folder + QStringLiteral("/rss.xsl"));
    ASSERT_FALSE(skin.ItemStylesheet().IsNull()) << skin.ItemStylesheetError().toStdString();

    QFile file(folder + QStringLiteral("/skin.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QStringList pictures = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files);
    ASSERT_FALSE(pictures.isEmpty());
    for (const QString& picture : pictures.filter(QRegularExpression(QStringLiteral("(?<!@2x)\\.png$")))) {
        EXPECT_TRUE(text.contains(u' ' + picture + u'\n')) << picture.toStdString();
        const QString twin = folder + u'/' + picture.chopped(4) + QStringLiteral("@2x.png");
        EXPECT_EQ(QImageReader(twin).size(), QImageReader(folder + u'/' + picture).size() * 2)
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
    EXPECT_EQ(Summary(hostile.contains(u"Snow &amp; ice in the hills"_s), hostile.contains(u"javascript"_s),
                      hostile.contains(u"<a "_s)),
              u"1 0 0"_s)
        << hostile.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Skins, ShippedSkinsTest, ::testing::Values("Default", "Nightfall"));

// A folder of files has no skins; otherwise the user's and the shipped skins (each in a temporary
// folder of their own) are listed once (names differing in case are two skins) and the current
// one is selected, "Default" without a stored name. Without a selection the button keeps the old
// skin; with one it stores the name.
TEST(frmSkinTest, ListsTheSkinsOnceAndTheButtonStoresTheChosenOne) {
    QTemporaryDir resources;
    QTemporaryDir data;
    const Paths paths(resources.path(), data.path(), data.path() + u"/config"_s);
    CRegSettings settings(paths);
    FakeSkinHost host;
    QDir(data.path()).mkpath(u"skins"_s);
    QFile file(data.filePath(u"skins/readme.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    {
        frmSkin chooser(settings, paths, host);
        EXPECT_FALSE(chooser.LoadList());
        EXPECT_EQ(Summary(chooser.lstSkins()->count(), host.messages.join(u'|'), chooser.exec(),
                          chooser.SkinChanged()),
                  Summary(0, u"No Skins Found|No Skins Found"_s, QDialog::Rejected, 0));
        host.messages.clear();
    }
    for (const QString& folder : {u"Default"_s, u"Nightfall"_s}) {
        QDir(resources.path()).mkpath(u"skins/"_s + folder);
    }
    for (const QString& folder : {u"nightfall"_s, u"Default"_s, u"Amber"_s}) {
        QDir(data.path()).mkpath(u"skins/"_s + folder);
    }
    const QString section = u"SETTINGS"_s, key = u"SKINNAME"_s;
    // The names listed, the one selected; after Ok, whether the skin changed, the result and the
    // stored name.
    const auto state = [&](frmSkin& chooser) {
        QStringList names;
        for (int i = 0; i < chooser.lstSkins()->count(); ++i) {
            names.append(chooser.lstSkins()->item(i)->text());
        }
        const QList<QListWidgetItem*> chosen = chooser.lstSkins()->selectedItems();
        chooser.cmdOk()->click();
        return Summary(names.join(u','), chosen.isEmpty() ? u"-"_s : chosen.first()->text(),
                       chooser.SkinChanged(), chooser.result(), settings.GetSetting(section, key, QString()));
    };
    for (const auto& [stored, expected] :
         {std::pair{QString(), u"Amber,Default,Nightfall,nightfall Default 1 1 Default"_s},
          {u"Gone"_s, u"Amber,Default,Nightfall,nightfall - 0 0 Gone"_s},
          {u"Nightfall"_s, u"Amber,Default,Nightfall,nightfall Nightfall 1 1 Nightfall"_s}}) {
        if (!stored.isNull()) {
            settings.SaveSetting(section, key, stored);
        }
        frmSkin chooser(settings, paths, host);
        ASSERT_TRUE(chooser.LoadList());
        EXPECT_EQ(state(chooser), expected);
    }
    EXPECT_TRUE(host.messages.isEmpty());
    frmSkin chooser(settings, paths, host);
    ASSERT_TRUE(chooser.LoadList());
    QListWidgetItem* other = chooser.lstSkins()->item(0);
    chooser.lstSkins()->setCurrentItem(other);
    Q_EMIT chooser.lstSkins()->itemClicked(other);
    EXPECT_EQ(chooser.cmdOk()->text(), u"Load Skin"_s);
    EXPECT_EQ(state(chooser), u"Amber,Default,Nightfall,nightfall Amber 1 1 Amber"_s);
}

} // namespace
