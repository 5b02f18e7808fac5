// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Renders every window kind of a skin with sample content, for skin authors to look at:
//   tamsel-skin-preview <skin name> <output folder>
// writes main.png, viewer.png, ticker.png, tickeritem.png and dialog.png. Run it with
// QT_SCALE_FACTOR=2 to see the skin at 200 %.
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "platform/XmlSecurity.h"
#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"
#include "skin/SkinnedWindow.h"
#include "skin/WidgetSkinHost.h"
#include "skin/frmSkinEntity.h"
#include "skin/frmTamselSkin.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTreeWidget>

#include <cstdio>

namespace {

const QByteArray kSampleItem = QByteArrayLiteral(
    "<channel><item channel=\"https://news.example.org/feed\" date=\"16 Nov 2026\" time=\"09:05:00\">"
    "<title>Snow and ice reach the hill villages a week early</title>"
    "<link>https://news.example.org/snow</link>"
    "<description>&lt;p&gt;Forecasters expect &lt;b&gt;up to 30 cm&lt;/b&gt; of fresh snow above 800 m by "
    "Thursday. Roads over the passes may close at short notice.&lt;/p&gt;&lt;p&gt;The regional office "
    "advises drivers to carry chains and to check the &lt;a href=\"https://news.example.org/roads\"&gt;road "
    "report&lt;/a&gt; before setting out.&lt;/p&gt;</description>"
    "<read>false</read><flag>false</flag><delete>false</delete>"
    "<channeltitle>Weather Desk</channeltitle></item></channel>");

// A window with the sample values of every placeholder.
class PreviewWindow final : public SkinnedWindow {
public:
    using SkinnedWindow::SkinnedWindow;
    QString DecodeText(const QString& text) override {
        QString result = text;
        const QList<QPair<QString, QString>> values = {
            {QStringLiteral("{user}"), QStringLiteral("Default")},
            {QStringLiteral("{channels}"), QStringLiteral("12")},
            {QStringLiteral("{items}"), QStringLiteral("128")},
            {QStringLiteral("{page}"), QStringLiteral("1")},
            {QStringLiteral("{pages}"), QStringLiteral("3")},
            {QStringLiteral("{title}"), QStringLiteral("Weather Desk")},
            {QStringLiteral("{chl}"), QStringLiteral("Weather Desk")},
            {QStringLiteral("{time}"), QStringLiteral("09:05:00")},
        };
        for (const auto& [placeholder, value] : values) {
            const qsizetype at = result.indexOf(placeholder);
            if (at >= 0) {
                result.replace(at, placeholder.size(), value);
            }
        }
        return result;
    }
    void SkinHandler(const QString&) override {}
};

QRect Inner(const frmTamselSkin& skin, int kind, QSize size) {
    const int west = skin.FrameWSize(kind);
    const int north = skin.FrameNSize(kind);
    return QRect(west, north, size.width() - west - skin.FrameESize(kind),
                 size.height() - north - skin.FrameSSize(kind));
}

QString ItemHtml(const frmTamselSkin& skin) {
    const XmlDocument input = XmlDocument::Parse(kSampleItem);
    return QString::fromUtf8(skin.ItemStylesheet().TransformToBytes(input));
}

void Colour(QWidget& widget, QPalette::ColorRole role, quint32 colour) {
    QPalette palette = widget.palette();
    palette.setColor(role, SkinColor::ToQColor(colour));
    widget.setPalette(palette);
}

bool Save(QWidget& window, const QString& path) {
    window.show();
    QApplication::processEvents();
    return window.grab().save(path);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: tamsel-skin-preview <skin name> <output folder>\n");
        return 2;
    }
    const QString out = arguments.at(2);
    QDir().mkpath(out);
    QTemporaryDir home;
    const Paths shipped = Paths::FromEnvironment();
    const Paths paths(shipped.ResourceFolder(), home.path(), home.path() + QStringLiteral("/config"));
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    CRegSettings settings(paths);
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), arguments.at(1));
    SystemClock clock;
    WidgetSkinHost host;
    frmTamselSkin skin(settings, paths, clock, host);
    skin.LoadSkin();
    bool ok = true;

    PreviewWindow main(skin, frmTamselSkin::KindMain);
    main.resize(300, 480);
    QTreeWidget tree(&main);
    tree.setHeaderHidden(true);
    tree.setFrameShape(QFrame::NoFrame);
    tree.setGeometry(Inner(skin, frmTamselSkin::KindMain, main.size()));
    tree.setFont(skin.GetFont(skin.TreeFont()));
    Colour(tree, QPalette::Base, skin.TreeColor());
    Colour(tree, QPalette::Text, skin.GetFontColor(skin.TreeFont()));
    const auto node = [&](QTreeWidgetItem* parent, const QString& text, const QString& icon) {
        auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(&tree);
        item->setText(0, text);
        item->setIcon(0, skin.TreeIcon(icon).ToIcon());
        return item;
    };
    node(nullptr, QStringLiteral("Tagged"), QStringLiteral("flagged"));
    node(nullptr, QStringLiteral("Tamsel News (2)"), QStringLiteral("unread"));
    node(nullptr, QStringLiteral("Deleted"), QStringLiteral("read"));
    node(nullptr, QStringLiteral("Help"), QStringLiteral("help"));
    QTreeWidgetItem* all = node(nullptr, QStringLiteral("All Items (128)"), QStringLiteral("collapse"));
    for (const QString& text : {QStringLiteral("Today (14)"), QStringLiteral("Yesterday (9)"),
                                QStringLiteral("Past 7 Days (61)"), QStringLiteral("Unread (42)")}) {
        node(all, text, QStringLiteral("unread"));
    }
    QTreeWidgetItem* mine = node(nullptr, QStringLiteral("My Channels (42)"), QStringLiteral("collapse"));
    node(mine, QStringLiteral("Weather Desk (7)"), QStringLiteral("newitems"));
    node(mine, QStringLiteral("City Council"), QStringLiteral("read"));
    node(mine, QStringLiteral("Rail Updates"), QStringLiteral("reload"));
    node(mine, QStringLiteral("Broken Feed"), QStringLiteral("err"));
    tree.expandAll();
    ok = Save(main, out + QStringLiteral("/main.png")) && ok;
    // The same window with the pointer over "close" and the "max" button held down.
    for (int number = 1; number <= frmTamselSkin::kDispatchedEntitySlots; ++number) {
        const frmSkinEntity* entity = skin.Entity(number);
        if (!entity || entity->iWindow != frmTamselSkin::KindMain) {
            continue;
        }
        const QPointF centre = entity->Rect().center();
        if (entity->sFunction == QStringLiteral("close")) {
            skin.SkinMouseMove(main, Qt::NoButton, centre, frmTamselSkin::KindMain, false);
        } else if (entity->sFunction == QStringLiteral("max")) {
            skin.SkinMouseDown(main, Qt::LeftButton, centre, frmTamselSkin::KindMain, false);
        }
    }
    ok = main.grab().save(out + QStringLiteral("/main-states.png")) && ok;

    PreviewWindow viewer(skin, frmTamselSkin::KindChannel);
    viewer.resize(720, 460);
    QComboBox filter(&viewer);
    filter.addItem(QStringLiteral("All Items"));
    filter.setGeometry(skin.FilterLeft(), skin.FilterTop(), skin.FilterWidth(), filter.sizeHint().height());
    QLineEdit search(&viewer);
    search.setPlaceholderText(QStringLiteral("Search"));
    search.setGeometry(skin.SearchLeft(), skin.SearchTop(), skin.SearchWidth(), filter.sizeHint().height());
    const QRect inner = Inner(skin, frmTamselSkin::KindChannel, viewer.size());
    QTableWidget grid(4, 5, &viewer);
    grid.setGeometry(inner.x(), inner.y(), inner.width(), 4 * 18);
    grid.horizontalHeader()->hide();
    grid.verticalHeader()->hide();
    grid.setShowGrid(false);
    grid.setFrameShape(QFrame::NoFrame);
    grid.setFont(skin.GetFont(skin.GridFont()));
    grid.verticalHeader()->setDefaultSectionSize(18);
    grid.setColumnWidth(0, 22);
    grid.setColumnWidth(1, inner.width() - 22 - 150 - 3 * 22);
    grid.setColumnWidth(2, 150);
    grid.setColumnWidth(3, 22);
    grid.setColumnWidth(4, 22);
    const QStringList titles = {QStringLiteral("Snow and ice reach the hill villages a week early"),
                                QStringLiteral("Council approves the new cycle lanes"),
                                QStringLiteral("Night trains return to the coast line"),
                                QStringLiteral("Library extends its opening hours")};
    for (int row = 0; row < titles.size(); ++row) {
        const QColor colour = SkinColor::ToQColor(row % 2 == 0 ? skin.GridColorOdd() : skin.GridColorEven());
        for (int column = 0; column < 5; ++column) {
            auto* cell = new QTableWidgetItem;
            cell->setBackground(colour);
            cell->setForeground(SkinColor::ToQColor(skin.GetFontColor(skin.GridFont())));
            grid.setItem(row, column, cell);
        }
        grid.item(row, 0)->setIcon(
            skin.GetListIcon(row == 0 ? frmTamselSkin::ListIcon::ItemEx : frmTamselSkin::ListIcon::Item)
                .ToIcon());
        grid.item(row, 1)->setText(titles.at(row));
        QFont bold = grid.font();
        bold.setBold(row == 1);
        grid.item(row, 1)->setFont(bold);
        grid.item(row, 2)->setText(QStringLiteral("16 Nov 2026  09:05:00"));
        grid.item(row, 3)->setIcon(skin.GetListIcon(frmTamselSkin::ListIcon::NoTag).ToIcon());
        grid.item(row, 4)->setIcon(skin.GetListIcon(frmTamselSkin::ListIcon::NoDel).ToIcon());
    }
    PreviewWindow panel(skin, frmTamselSkin::KindItem, &viewer);
    panel.setWindowFlags(Qt::Widget);
    panel.setGeometry(inner.x(), inner.y() + 4 * 18, inner.width(), 220);
    QTextBrowser preview(&panel);
    preview.setFrameShape(QFrame::NoFrame);
    preview.setGeometry(Inner(skin, frmTamselSkin::KindItem, panel.size()));
    preview.setHtml(ItemHtml(skin));
    QWidget rest(&viewer);
    rest.setGeometry(inner.x(), panel.geometry().bottom() + 1, inner.width(),
                     inner.bottom() - panel.geometry().bottom());
    rest.setAutoFillBackground(true);
    Colour(rest, QPalette::Window, skin.GridColorEven());
    ok = Save(viewer, out + QStringLiteral("/viewer.png")) && ok;

    // The ticker prints its entry text itself after the skin has painted.
    PreviewWindow ticker(skin, frmTamselSkin::KindTicker);
    ticker.resize(960, 20);
    ticker.show();
    QApplication::processEvents();
    ticker.RepaintSkin();
    SkinSurface& surface = *ticker.picSkin();
    skin.SetFont(&surface, skin.TickerFont(), true);
    const QString entry = QStringLiteral("Snow and ice reach the hill villages a week early");
    const QSizeF extent = SkinSurface::TextExtent(surface.DrawFont(), entry);
    surface.SetCurrentPos(QPointF(std::round((960 - extent.width()) / 2), int((20 - extent.height()) / 2)));
    surface.Print(entry);
    ok = Save(ticker, out + QStringLiteral("/ticker.png")) && ok;

    PreviewWindow view(skin, frmTamselSkin::KindTickerItem);
    view.resize(520, 300);
    QTextBrowser browser(&view);
    browser.setFrameShape(QFrame::NoFrame);
    browser.setGeometry(Inner(skin, frmTamselSkin::KindTickerItem, view.size()));
    browser.setHtml(ItemHtml(skin));
    ok = Save(view, out + QStringLiteral("/tickeritem.png")) && ok;

    PreviewWindow dialog(skin, frmTamselSkin::KindDialog);
    dialog.resize(360, 150);
    QLineEdit name(&dialog);
    name.setText(QStringLiteral("Evening reading"));
    name.setGeometry(20, 40, 320, name.sizeHint().height());
    QPushButton okButton(QStringLiteral("OK"), &dialog);
    okButton.setGeometry(180, 100, 75, okButton.sizeHint().height());
    QPushButton cancel(QStringLiteral("Cancel"), &dialog);
    cancel.setGeometry(265, 100, 75, cancel.sizeHint().height());
    ok = Save(dialog, out + QStringLiteral("/dialog.png")) && ok;

    if (!ok) {
        std::fprintf(stderr, "tamsel-skin-preview: some pictures could not be written\n");
        return 1;
    }
    return 0;
}
