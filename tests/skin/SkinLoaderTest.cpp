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

using namespace Qt::StringLiterals;

namespace {

class SkinLoaderTest : public ::testing::Test, public SkinFixture {};

// An empty skin name still updates the icons and the stylesheet; tree icon keywords then replace the
// images of their keys, state keywords the pictures and captions of entities.
TEST_F(SkinLoaderTest, AnEmptySkinNameLoadsTheDefaultsThatIconStateAndStylesheetKeywordsReplace) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    skin.LoadSkin();
    EXPECT_EQ(
        Summary(host.messages.join(u'|'), loaded.count(), imageList.added.join(u','), skin.GetXSLFilename()),
        Summary(QString(), 1, (frmTamselSkin::TreeIconKeys() + QStringList{u"last"_s}).join(u','),
                home.GetPaths().ResourceFile(u"rss.xsl"_s)));
    for (int icon = 0; icon < frmTamselSkin::kListIcons; ++icon) {
        EXPECT_EQ(skin.GetListIcon(frmTamselSkin::ListIcon(icon)).Size(), QSize(16, 16)) << icon;
    }
    imageList.added.clear();
    ASSERT_EQ(Load(u"Icons"_s), QString());
    EXPECT_EQ(Summary(imageList.removed.join(u','), imageList.added.join(u','),
                      PictureColour(imageList.images.value(u"unread"_s)),
                      PictureColour(imageList.images.value(u"expanded"_s)),
                      PictureColour(imageList.images.value(u"collapse"_s)),
                      PictureColour(skin.GetListIcon(frmTamselSkin::ListIcon::Link))),
              u"unread,expanded,collapse unread,collapse,expanded,last #ff0000 #00ff00 #00ff00 #0000ff"_s);

    // Normal, hover and pressed picture colours, then the three captions, of entities 1 to 4. The item
    // stylesheet comes from the skin folder when it opens.
    ASSERT_EQ(Load(u"States"_s), QString());
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
    EXPECT_EQ(
        Summary(skin.GetXSLFilename(), skin.ItemStylesheet().IsNull(), skin.ItemStylesheetError().isEmpty()),
        Summary(home.File(u"skins/Broken/rss.xsl"_s), 1, 0));
}

// Keywords ignore case, arguments keep it; numbers are read as far as they go (&h is hexadecimal)
// and rounded half to even; booleans are true only for "true"; unknown keywords, comments and
// keyword-only lines are skipped (data/skins/All). A later load starts again from the defaults.
TEST_F(SkinLoaderTest, KeywordsSetTheirValuesAndTheNextLoadStartsFromTheDefaults) {
    ASSERT_EQ(Load(u"All"_s), QString());
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
    const QColor unset = label.palette().color(QPalette::WindowText);
    const auto font = [&label] {
        return Summary(label.font().pointSizeF(), label.font().bold(), label.font().italic(),
                       label.font().underline(), label.font().strikeOut(),
                       label.palette().color(QPalette::WindowText), label.font().family());
    };
    skin.SetFont(&label, 4, false);
    EXPECT_EQ(font(), Summary(7, 0, 1, 1, 1, unset, u"Arial"_s));
    skin.SetFont(&label, 3, true);
    skin.SetFont(nullptr, 3, true);
    skin.SetFont(&label, 40, true);
    EXPECT_EQ(font(), u"11.5 1 0 0 0 #0000ff Nimbus Sans"_s);
    SkinSurface surface;
    skin.SetFont(&surface, 3, true);
    EXPECT_EQ(Summary(surface.DrawFont().family(), surface.ForeColor()), u"Nimbus Sans #0000ff"_s);

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
    // data/failing-lines.txt: a skin file a row, " / " between its lines; the last line fails.
    for (const QString& row : DataText(u"failing-lines.txt"_s).split(u'\n', Qt::SkipEmptyParts)) {
        SCOPED_TRACE(row.toStdString());
        host.messages.clear();
        // One message: the skin and the line, then a reason of its own on the third line; nothing after
        // the line was read.
        const QString message =
            Load(u"Bad"_s, QString(row).replace(u" / "_s, u"\n"_s) + u"\ntreecolor 5\n"_s);
        const QString line = row.section(u" / "_s, -1).trimmed();
        EXPECT_EQ(
            Summary(host.messages.size(), message.section(u"\nError Return: "_s, 0, 0), message.count(u'\n'),
                    message.section(u"\nError Return: "_s, 1).isEmpty(), skin.TreeColor()),
            Summary(1, u"Error Loading Skin File: Bad\nskin.txt - Error On Line: "_s + line, 2, 0, 0xFFB29D));
    }
    home.Write(u"skin.txt"_s, QByteArrayLiteral("treecolor 1\n"));
    for (const QString& name : {u"Nowhere"_s, u".."_s}) {
        host.messages.clear();
        Choose(name);
        skin.LoadSkin();
        EXPECT_EQ(Summary(host.messages.join(u'|'), skin.TreeColor()),
                  Summary(u"Error Loading Skin File: "_s + name, 0xFFB29D));
    }
    EXPECT_EQ(Summary(loaded.count(), imageList.added.size()), u"0 0"_s);
}

// data/numbers.txt: a text => its leading number and that number rounded.
TEST(SkinNumberTest, NumbersAreReadAsFarAsTheyGoRoundedHalfToEvenAndColoursAreBlueGreenRed) {
    ExpectTable("numbers.txt", 27, [](const QString& text) {
        const double leading = SkinNumber::Leading(text);
        return Summary(leading, SkinNumber::Round(leading));
    });
    EXPECT_EQ(Summary(SkinNumber::Boolean(u"TRUE"), SkinNumber::Boolean(u"yes"), SkinNumber::Boolean(u"1"),
                      SkinNumber::Boolean(u"true!"), SkinNumber::Boolean(u"")),
              u"1 0 0 0 0"_s);
    // Colours are blue, green, red from the high byte down, or system colours (the painting tests see
    // red, blue and the button face); a system colour past the known ones is the dark shade.
    const QPalette system = QGuiApplication::palette();
    EXPECT_EQ(Summary(SkinColor::ToQColor(0x9DB2FF), SkinColor::ToQColor(0x80000005),
                      SkinColor::ToQColor(0x800000FF)),
              Summary(QColor(0xFF, 0xB2, 0x9D), system.color(QPalette::Base), system.color(QPalette::Dark)));
}

class ShippedSkinsTest : public SkinLoaderTest, public ::testing::WithParamInterface<const char*> {};

// Each shipped skin loads, covers every window and function, has every picture named in its skin
// file with a twice as large twin, and its item stylesheet writes a readable UTF-8 page whose
// links go to the web only.
TEST_P(ShippedSkinsTest, LoadsCompleteWithDoubledPicturesAndASafeItemPage) {
    const QString folder = QStringLiteral(TAMSEL_BUILD_DATA_DIR "/skins/") + QString::fromUtf8(GetParam());
    Choose(QString::fromUtf8(GetParam()));
    skin.LoadSkin();
    EXPECT_EQ(Summary(host.messages.join(u'|'), skin.SkinFolder()), Summary(QString(), folder));

    // Every kind has its frame; the big windows have room for their rows.
    for (int kind = frmTamselSkin::KindMain; kind <= frmTamselSkin::KindDialog; ++kind) {
        EXPECT_TRUE(skin.FrameNSize(kind) > 0 && skin.FrameSSize(kind) > 0) << kind;
    }
    EXPECT_TRUE(skin.FrameNSize(frmTamselSkin::KindChannel) >= skin.FilterTop() + 24 &&
                skin.FrameWSize(frmTamselSkin::KindMain) > 0);

    // Every entity shows something; one with a function has its hover and pressed pictures.
    QStringList functions;
    for (int number = 1; number <= frmTamselSkin::kDispatchedEntitySlots; ++number) {
        if (const frmSkinEntity* e = skin.Entity(number)) {
            functions.append(e->sFunction);
            EXPECT_TRUE(!e->img.IsNull() || !e->lbl.IsEmpty()) << number;
            EXPECT_TRUE(e->sFunction.isEmpty() || !(e->imgMM.IsNull() || e->imgMD.IsNull())) << number;
        }
    }
    EXPECT_GE(functions.size(), 25);
    for (const QString& function : u"close min max windowframe profiles addchannel firstpage prevpage "
                                   u"nextpage lastpage prev next pause play tickermenu link"_s.split(u' ')) {
        EXPECT_TRUE(functions.contains(function)) << function.toStdString();
    }

    for (const QString& key : frmTamselSkin::TreeIconKeys()) {
        const SkinPicture& icon = skin.TreeIcon(key);
        EXPECT_TRUE(icon.Size() == QSize(16, 16) && icon.ForRatio(2).size() == QSize(32, 32))
            << key.toStdString();
    }
    EXPECT_EQ(skin.GetXSLFilename(), folder + QStringLiteral("/rss.xsl"));
    ASSERT_FALSE(skin.ItemStylesheet().IsNull()) << skin.ItemStylesheetError().toStdString();

    const QString text = QString::fromUtf8(ReadWholeFile(folder + QStringLiteral("/skin.txt")));
    const QStringList pictures = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files);
    ASSERT_FALSE(pictures.isEmpty());
    for (const QString& picture : pictures.filter(QRegularExpression(QStringLiteral("(?<!@2x)\\.png$")))) {
        EXPECT_TRUE(text.contains(u' ' + picture + u'\n')) << picture.toStdString();
        const QString twin = folder + u'/' + picture.chopped(4) + QStringLiteral("@2x.png");
        EXPECT_EQ(QImageReader(twin).size(), QImageReader(folder + u'/' + picture).size() * 2)
            << picture.toStdString();
    }

    QByteArray item = ReadWholeFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/item.xml"));
    const QString html = QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(XmlDocument::Parse(item)));
    // data/item-page.txt: what the page shows of data/item.xml, one part a line.
    for (const QString& part : DataText(u"item-page.txt"_s).split(u'\n', Qt::SkipEmptyParts)) {
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

// A folder of files has no skins; otherwise the user's and the shipped skins are listed once (names
// differing in case are two skins) and the current one is selected, "Default" without a stored name.
// Without a selection the button keeps the old skin; with one it stores the name.
TEST_F(SkinLoaderTest, TheChooserListsTheSkinsOnceAndItsButtonStoresTheChosenOne) {
    home.Write(u"skins/readme.txt"_s, QByteArray());
    frmSkin empty(settings, Paths(home.File(u"none"_s), home.Path(), home.File(u"config"_s)), host);
    EXPECT_FALSE(empty.LoadList());
    const int result = empty.exec();
    EXPECT_EQ(Summary(empty.lstSkins()->count(), host.messages.join(u'|'), result, empty.SkinChanged()),
              Summary(0, u"No Skins Found|No Skins Found"_s, QDialog::Rejected, 0));
    host.messages.clear();
    for (const QString& name : {u"nightfall"_s, u"Default"_s, u"Amber"_s}) {
        QDir().mkpath(home.File(u"skins/"_s + name));
    }
    // Per stored name, the last time after a click on the first row: the names listed, the one selected;
    // after Ok, whether the skin changed, the result and the stored name.
    for (const auto& [stored, click, expected] :
         {std::tuple{QString(), false, u"Amber,Default,Nightfall,nightfall Default 1 1 Default"_s},
          {u"Gone"_s, false, u"Amber,Default,Nightfall,nightfall - 0 0 Gone"_s},
          {u"Nightfall"_s, false, u"Amber,Default,Nightfall,nightfall Nightfall 1 1 Nightfall"_s},
          {u"Nightfall"_s, true, u"Amber,Default,Nightfall,nightfall Amber 1 1 Amber"_s}}) {
        if (!stored.isNull()) {
            Choose(stored);
        }
        frmSkin chooser(settings, home.GetPaths(), host);
        ASSERT_TRUE(chooser.LoadList());
        QListWidget& list = *chooser.lstSkins();
        if (click) {
            list.setCurrentItem(list.item(0));
            Q_EMIT list.itemClicked(list.item(0));
            EXPECT_EQ(chooser.cmdOk()->text(), u"Load Skin"_s);
        }
        QStringList names;
        for (int i = 0; i < list.count(); ++i) {
            names.append(list.item(i)->text());
        }
        const QString chosen = list.selectedItems().isEmpty() ? u"-"_s : list.selectedItems().first()->text();
        chooser.cmdOk()->click();
        EXPECT_EQ(Summary(names.join(u','), chosen, chooser.SkinChanged(), chooser.result(),
                          settings.GetSetting(u"SETTINGS"_s, u"SKINNAME"_s, QString())),
                  expected);
    }
    EXPECT_TRUE(host.messages.isEmpty());
}

} // namespace
