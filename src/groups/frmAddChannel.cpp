// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/frmAddChannel.h"

#include "app/AppHost.h"
#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "feeds/RSSChannel.h"
#include "groups/ChannelCommands.h"
#include "groups/FeedDiscovery.h"
#include "groups/RSSGroup.h"
#include "groups/clsOPML.h"
#include "groups/frmAddGroup.h"
#include "platform/CRegSettings.h"
#include "platform/XmlDocument.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <limits>

namespace {

const QString kSection = QStringLiteral("ADDCHANNEL");
const QString kOpmlSection = QStringLiteral("OPML");
const QString kOpmlKey = QStringLiteral("ADD");
// The list columns, 2600 and 4530 window units wide, in average character widths.
constexpr int kTitleColumnCharacters = 26;
constexpr int kUrlColumnCharacters = 45;
constexpr int kListRows = 10;
// Clipboard text longer than any address is not one.
constexpr int kMaxClipboardAddress = 2048;

// Tells the OPML reader's complaints to the dialog instead of the main window.
class OpmlMessages final : public AppHost {
public:
    explicit OpmlMessages(std::function<void(const QString&)> show) : m_show(std::move(show)) {}
    void PopupInfo(const QString& message, const QString&, const QString&) override { m_show(message); }

private:
    std::function<void(const QString&)> m_show;
};

QTreeWidget* NewList(QWidget* parent, const QString& name, QAbstractItemView::SelectionMode mode) {
    auto* list = new QTreeWidget(parent);
    list->setHeaderLabels({QStringLiteral("Title"), QStringLiteral("URL")});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setSelectionMode(mode);
    list->setAccessibleName(name);
    const int unit = list->fontMetrics().averageCharWidth();
    list->setColumnWidth(0, unit * kTitleColumnCharacters);
    list->setMinimumWidth(unit * (kTitleColumnCharacters + kUrlColumnCharacters));
    list->setMinimumHeight(list->fontMetrics().height() * kListRows);
    return list;
}

// Fills a list with (title, URL) rows keyed by URL: empty URLs and keys already present (in any
// letter case) are left out.
void FillList(QTreeWidget* list, const QList<std::pair<QString, QString>>& rows) {
    list->clear();
    QSet<QString> keys;
    QList<QTreeWidgetItem*> items;
    for (const auto& [title, url] : rows) {
        const QString key = url.toLower();
        if (url.isEmpty() || keys.contains(key)) {
            continue;
        }
        keys.insert(key);
        auto* row = new QTreeWidgetItem({title, url});
        row->setToolTip(0, title);
        row->setToolTip(1, url);
        items.append(row);
    }
    list->addTopLevelItems(items);
}

// Text that is one address: no blanks or line breaks, and not longer than any address.
bool IsOneAddress(const QString& text) {
    return text.size() <= kMaxClipboardAddress &&
           std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

QLabel* BuddyLabel(const QString& caption, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setBuddy(buddy);
    return label;
}

} // namespace

frmAddChannel::frmAddChannel(ChannelCommands& commands, CRegSettings& settings, HttpClient& http,
                             Clock& clock, frmTamselSkin& skin, Paths paths, QWidget* parent)
    : QDialog(parent), m_commands(commands), m_settings(settings), m_skin(skin), m_paths(std::move(paths)),
      m_opmlHost(
          std::make_unique<OpmlMessages>([this](const QString& message) { ShowOPMLMessage(message); })),
      OPML(new clsOPML(clock, http, *m_opmlHost, this)), m_discovery(new FeedDiscovery(http, clock, this)),
      m_tabAdd(new QTabWidget(this)), m_txtURL(new QLineEdit(this)), m_lblStatus(new QLabel(this)),
      m_busy(new QProgressBar(this)),
      m_lstFound(NewList(this, QStringLiteral("Feeds found"), QAbstractItemView::SingleSelection)),
      m_cmdAsTyped(new QPushButton(QStringLiteral("&Subscribe to the address as typed"), this)),
      m_lstExisting(
          NewList(this, QStringLiteral("Channels of this profile"), QAbstractItemView::ExtendedSelection)),
      m_txtOPML(new QLineEdit(this)), m_cmdBrowseOPML(new QPushButton(QStringLiteral("&Browse..."), this)),
      m_cmdLoadOPML(new QPushButton(QStringLiteral("&Load"), this)), m_lblOPMLStatus(new QLabel(this)),
      m_lstOPML(
          NewList(this, QStringLiteral("Channels of the OPML file"), QAbstractItemView::ExtendedSelection)),
      m_cboUsers(new QComboBox(this)), m_lstUser(NewList(this, QStringLiteral("Channels of the profile"),
                                                         QAbstractItemView::ExtendedSelection)),
      m_lstSpotlights(
          NewList(this, QStringLiteral("Spotlight channels"), QAbstractItemView::ExtendedSelection)),
      m_txtExpire(new QLineEdit(QString::number(RSSChannel::kNewExpireDays), this)),
      m_txtUpdate(new QLineEdit(QString::number(RSSChannel::kNewUpdateMinutes), this)),
      m_cmdNewGroup(new QPushButton(QStringLiteral("&New Group..."), this)),
      m_cmdOk(new QPushButton(QStringLiteral("Ok"), this)),
      m_cmdCancel(new QPushButton(QStringLiteral("Cancel"), this)) {
    setWindowTitle(QStringLiteral("Add Channels"));
    setModal(true);
    for (int tab = 0; tab <= TabSpotlight; ++tab) {
        auto* box = new QComboBox(this);
        box->setAccessibleName(QStringLiteral("Add to group"));
        box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        m_groupBoxes.append(box);
    }

    BuildAddressTab();
    m_tabAdd->addTab(BuildListTab(m_lstExisting, m_groupBoxes[TabExisting], nullptr),
                     QStringLiteral("&Existing Channels"));

    auto* opmlRow = new QWidget(this);
    auto* opmlLayout = new QGridLayout(opmlRow);
    opmlLayout->setContentsMargins(0, 0, 0, 0);
    opmlLayout->addWidget(BuddyLabel(QStringLiteral("OPML &file:"), m_txtOPML, opmlRow), 0, 0);
    opmlLayout->addWidget(m_txtOPML, 0, 1);
    opmlLayout->addWidget(m_cmdBrowseOPML, 0, 2);
    opmlLayout->addWidget(m_cmdLoadOPML, 0, 3);
    opmlLayout->addWidget(m_lblOPMLStatus, 1, 1, 1, 3);
    opmlLayout->setColumnStretch(1, 1);
    m_lblOPMLStatus->setWordWrap(true);
    m_lblOPMLStatus->hide();
    m_txtOPML->setAccessibleName(QStringLiteral("OPML file"));
    m_cmdBrowseOPML->setAccessibleName(QStringLiteral("Browse for an OPML file"));
    m_cmdLoadOPML->setAccessibleName(QStringLiteral("Load the OPML file"));
    m_tabAdd->addTab(BuildListTab(m_lstOPML, m_groupBoxes[TabOPML], opmlRow), QStringLiteral("OP&ML File"));

    auto* userRow = new QWidget(this);
    auto* userLayout = new QHBoxLayout(userRow);
    userLayout->setContentsMargins(0, 0, 0, 0);
    userLayout->addWidget(BuddyLabel(QStringLiteral("&Profile:"), m_cboUsers, userRow));
    userLayout->addWidget(m_cboUsers, 1);
    m_cboUsers->setAccessibleName(QStringLiteral("Profile"));
    m_tabAdd->addTab(BuildListTab(m_lstUser, m_groupBoxes[TabUser], userRow),
                     QStringLiteral("Other P&rofile"));
    m_tabAdd->addTab(BuildListTab(m_lstSpotlights, m_groupBoxes[TabSpotlight], nullptr),
                     QStringLiteral("Spo&tlight"));
    // All five sources stay in sight: the dialog is as wide as its tabs.
    m_tabAdd->setUsesScrollButtons(false);
    // Pages take the skin's frame colour, whatever the style paints behind them.
    for (int tab = 0; tab < m_tabAdd->count(); ++tab) {
        m_tabAdd->widget(tab)->setAutoFillBackground(true);
    }
    m_tabAdd->tabBar()->setAccessibleName(QStringLiteral("Source of the channels"));
    m_tabAdd->setAccessibleName(QStringLiteral("Source of the channels"));

    auto* numbers = new QHBoxLayout();
    numbers->addWidget(BuddyLabel(QStringLiteral("Remove &items after"), m_txtExpire, this));
    numbers->addWidget(m_txtExpire);
    numbers->addWidget(BuddyLabel(QStringLiteral("days, and rel&oad every"), m_txtUpdate, this));
    numbers->addWidget(m_txtUpdate);
    numbers->addWidget(new QLabel(QStringLiteral("minutes"), this));
    numbers->addStretch();
    const int numberWidth = m_txtExpire->fontMetrics().horizontalAdvance(QStringLiteral("000000"));
    for (QLineEdit* box : {m_txtExpire, m_txtUpdate}) {
        box->setMaximumWidth(numberWidth + box->fontMetrics().averageCharWidth() * 2);
    }
    m_txtExpire->setAccessibleName(QStringLiteral("Remove items after (days)"));
    m_txtUpdate->setAccessibleName(QStringLiteral("Reload every (minutes)"));

    auto* buttons = new QHBoxLayout();
    buttons->addWidget(m_cmdNewGroup);
    buttons->addStretch();
    buttons->addWidget(m_cmdOk);
    buttons->addWidget(m_cmdCancel);
    m_cmdNewGroup->setAccessibleName(QStringLiteral("New group"));
    m_cmdOk->setAccessibleName(QStringLiteral("Ok"));
    m_cmdOk->setDefault(true);
    m_cmdCancel->setAccessibleName(QStringLiteral("Cancel"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabAdd, 1);
    layout->addLayout(numbers);
    layout->addLayout(buttons);

    SetTabChain({m_tabAdd->tabBar(),
                 m_txtURL,
                 m_groupBoxes[TabAddress],
                 m_lstFound,
                 m_cmdAsTyped,
                 m_lstExisting,
                 m_groupBoxes[TabExisting],
                 m_txtOPML,
                 m_cmdBrowseOPML,
                 m_cmdLoadOPML,
                 m_lstOPML,
                 m_groupBoxes[TabOPML],
                 m_cboUsers,
                 m_lstUser,
                 m_groupBoxes[TabUser],
                 m_lstSpotlights,
                 m_groupBoxes[TabSpotlight],
                 m_txtExpire,
                 m_txtUpdate,
                 m_cmdNewGroup,
                 m_cmdOk,
                 m_cmdCancel});

    connect(m_tabAdd, &QTabWidget::currentChanged, this, &frmAddChannel::tabAdd_Click);
    connect(m_cboUsers, &QComboBox::currentIndexChanged, this, &frmAddChannel::cboUsers_Click);
    connect(m_cmdBrowseOPML, &QPushButton::clicked, this, &frmAddChannel::cmdBrowseOPML_Click);
    connect(m_cmdLoadOPML, &QPushButton::clicked, this, &frmAddChannel::cmdLoadOPML_Click);
    // Return in the file box loads the file; it must not reach the dialog's Ok as well.
    m_txtOPML->installEventFilter(this);
    connect(m_cmdNewGroup, &QPushButton::clicked, this, &frmAddChannel::cmdNewGroup_Click);
    connect(m_cmdOk, &QPushButton::clicked, this, &frmAddChannel::cmdOk_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmAddChannel::reject);
    connect(m_cmdAsTyped, &QPushButton::clicked, this, &frmAddChannel::cmdAsTyped_Click);
    connect(m_txtURL, &QLineEdit::textEdited, this, &frmAddChannel::ForgetFound);
    connect(OPML, &clsOPML::FileLoaded, this, &frmAddChannel::OPML_FileLoaded);
    connect(OPML, &clsOPML::FileTimout, this, &frmAddChannel::OPML_FileLoaded);
    connect(m_discovery, &FeedDiscovery::Finished, this, &frmAddChannel::Discovery_Finished);
    connect(&m_skin, &frmTamselSkin::SkinLoaded, this, &frmAddChannel::ApplySkin);

    m_txtOPML->setText(
        m_settings.GetSetting(kOpmlSection, kOpmlKey, m_paths.DataFolder() + QStringLiteral("/tamsel.opml")));
    const QString clipboard = QGuiApplication::clipboard()->text().trimmed();
    if (clipboard.startsWith(QStringLiteral("http"), Qt::CaseInsensitive) && IsOneAddress(clipboard)) {
        m_txtURL->setText(clipboard);
    }
    ApplySkin();
    tabAdd_Click(m_tabAdd->currentIndex());
    // The reader waits for the file with the event loop running: not inside the constructor.
    QTimer::singleShot(0, this, &frmAddChannel::cmdLoadOPML_Click);
    m_txtURL->setFocus();
}

frmAddChannel::~frmAddChannel() = default;

void frmAddChannel::BuildAddressTab() {
    auto* page = new QWidget(this);
    auto* grid = new QGridLayout(page);
    grid->addWidget(BuddyLabel(QStringLiteral("Channel or web site &address:"), m_txtURL, page), 0, 0);
    grid->addWidget(m_txtURL, 0, 1);
    grid->addWidget(BuddyLabel(QStringLiteral("Add to &group:"), m_groupBoxes[TabAddress], page), 1, 0);
    grid->addWidget(m_groupBoxes[TabAddress], 1, 1, Qt::AlignLeft);
    auto* status = new QHBoxLayout();
    status->addWidget(m_lblStatus, 1);
    status->addWidget(m_busy);
    grid->addLayout(status, 2, 0, 1, 2);
    grid->addWidget(m_lstFound, 3, 0, 1, 2);
    grid->addWidget(m_cmdAsTyped, 4, 0, 1, 2, Qt::AlignLeft);
    grid->setRowStretch(5, 1);
    grid->setColumnStretch(1, 1);
    m_txtURL->setAccessibleName(QStringLiteral("Channel or web site address"));
    m_txtURL->setPlaceholderText(QStringLiteral("https://"));
    m_lblStatus->setWordWrap(true);
    m_lblStatus->setAccessibleName(QStringLiteral("Search status"));
    m_busy->setRange(0, 0);
    m_busy->setTextVisible(false);
    m_busy->setMaximumWidth(m_busy->fontMetrics().averageCharWidth() * 12);
    m_busy->setAccessibleName(QStringLiteral("Searching"));
    m_busy->hide();
    m_lstFound->hide();
    m_cmdAsTyped->setAccessibleName(QStringLiteral("Subscribe to the address as typed"));
    m_cmdAsTyped->hide();
    m_tabAdd->addTab(page, QStringLiteral("A&ddress"));
}

QWidget* frmAddChannel::BuildListTab(QTreeWidget* list, QComboBox* group, QWidget* top) {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    if (top) {
        layout->addWidget(top);
    }
    layout->addWidget(list, 1);
    auto* groupRow = new QHBoxLayout();
    groupRow->addWidget(BuddyLabel(QStringLiteral("Add to &group:"), group, page));
    groupRow->addWidget(group);
    groupRow->addStretch();
    layout->addLayout(groupRow);
    return page;
}

void frmAddChannel::ApplySkin() {
    ApplySkinPalette(*this, m_skin, frmTamselSkin::KindDialog);
}

QComboBox* frmAddChannel::GroupBox(int tab) const {
    return tab >= 0 && tab < m_groupBoxes.size() ? m_groupBoxes[tab] : nullptr;
}

QTreeWidget* frmAddChannel::List(int tab) const {
    switch (tab) {
    case TabAddress:
        return m_lstFound;
    case TabExisting:
        return m_lstExisting;
    case TabOPML:
        return m_lstOPML;
    case TabUser:
        return m_lstUser;
    case TabSpotlight:
        return m_lstSpotlights;
    default:
        return nullptr;
    }
}

int frmAddChannel::NumericValue(const QString& text) {
    const QString trimmed = text.trimmed();
    qsizetype end = 0;
    while (end < trimmed.size() && trimmed[end].isDigit() && trimmed[end].unicode() < 128) {
        ++end;
    }
    bool ok = false;
    const qlonglong value = trimmed.left(end).toLongLong(&ok);
    if (!ok) {
        // No digits at all, or more than any setting can hold.
        return end > 0 ? std::numeric_limits<int>::max() : 0;
    }
    return int(std::min<qlonglong>(value, std::numeric_limits<int>::max()));
}

void frmAddChannel::init() {
    clsProfile* profile = m_commands.ActiveProfile();
    for (QComboBox* box : std::as_const(m_groupBoxes)) {
        box->clear();
    }
    const QString chosenUser = m_cboUsers->currentText();
    const QSignalBlocker blockUsers(m_cboUsers);
    m_cboUsers->clear();
    m_lstExisting->clear();
    m_lstSpotlights->clear();
    m_lstUser->clear();
    if (!profile) {
        return;
    }
    for (int i = 1; i <= profile->GroupCount(); ++i) {
        const QString name = profile->GetGroup(i)->Name();
        if (IsReservedGroupName(name)) {
            continue;
        }
        for (QComboBox* box : std::as_const(m_groupBoxes)) {
            box->addItem(name);
        }
    }
    for (QComboBox* box : std::as_const(m_groupBoxes)) {
        box->setCurrentIndex(-1);
    }

    const MakerSite site(m_settings);
    QList<std::pair<QString, QString>> existing;
    for (int i = 1; i <= profile->ChannelCount(); ++i) {
        const RSSChannel* channel = profile->GetChannel(i);
        if (!IsBuiltinChannel(channel->URL(), site.HelpURL(), site.NewsURL())) {
            existing.append({channel->Title(), channel->URL()});
        }
    }
    FillList(m_lstExisting, existing);

    QList<std::pair<QString, QString>> spotlights;
    if (const RSSGroup* group = profile->GetGroup(GroupName::Spotlight)) {
        for (int i = 0; i < group->ChannelCount(); ++i) {
            const QString url = group->ChannelURL(i);
            const RSSChannel* channel = profile->GetChannel(url);
            spotlights.append({channel ? channel->Title() : url, url});
        }
    }
    FillList(m_lstSpotlights, spotlights);

    int chosen = -1;
    if (const colProfiles* users = m_commands.Users()) {
        for (int i = 1; i <= users->UserCount(); ++i) {
            const QString name = users->User(i)->Name();
            m_cboUsers->addItem(name);
            // Another profile first: the active one's channels are on the previous tab already.
            if (name == chosenUser || (chosenUser.isEmpty() && chosen < 0 && name != profile->Name())) {
                chosen = m_cboUsers->count() - 1;
            }
        }
    }
    if (chosen < 0 && m_cboUsers->count() > 0) {
        chosen = 0;
    }
    m_cboUsers->setCurrentIndex(chosen);
    cboUsers_Click(chosen);
}

void frmAddChannel::SelectGroup(const QString& name) {
    for (QComboBox* box : std::as_const(m_groupBoxes)) {
        box->setCurrentIndex(box->findText(name, Qt::MatchFixedString));
    }
}

void frmAddChannel::tabAdd_Click(int tab) {
    for (int i = TabExisting; i <= TabSpotlight; ++i) {
        List(i)->setEnabled(i == tab);
    }
    const bool fromList = tab != TabAddress;
    m_txtExpire->setEnabled(fromList);
    m_txtUpdate->setEnabled(fromList);
}

void frmAddChannel::cboUsers_Click(int index) {
    m_lstUser->clear();
    if (index < 0) {
        return;
    }
    const QString file = m_paths.ProfileFolder(m_cboUsers->itemText(index)) + QStringLiteral("/channels.xml");
    if (!QFileInfo::exists(file)) {
        return;
    }
    const XmlDocument doc = XmlDocument::Load(file);
    if (doc.IsNull()) {
        return;
    }
    const MakerSite site(m_settings);
    QList<std::pair<QString, QString>> rows;
    for (XmlNode node = doc.DocumentElement().FirstChild(); !node.IsNull(); node = node.NextSibling()) {
        if (!node.IsElement() || node.Name().toLower() != QStringLiteral("channel")) {
            continue;
        }
        QString url;
        QString title;
        for (XmlNode field = node.FirstChild(); !field.IsNull(); field = field.NextSibling()) {
            const QString name = field.Name().toLower();
            if (name == QStringLiteral("url")) {
                url = field.Text();
            } else if (name == QStringLiteral("title")) {
                title = field.Text();
            }
        }
        if (!IsBuiltinChannel(url, site.HelpURL(), site.NewsURL())) {
            rows.append({title, url});
        }
    }
    FillList(m_lstUser, rows);
}

void frmAddChannel::cmdBrowseOPML_Click() {
    const QString chosen = QFileDialog::getOpenFileName(
        this, QStringLiteral("Open OPML File"), QFileInfo(m_txtOPML->text()).absolutePath(),
        QStringLiteral("OPML files (*.opml *.xml);;All files (*)"));
    if (chosen.isEmpty()) {
        return;
    }
    m_txtOPML->setText(chosen);
    cmdLoadOPML_Click();
}

void frmAddChannel::cmdLoadOPML_Click() {
    const QString path = m_txtOPML->text().trimmed();
    if (path.isEmpty()) {
        return;
    }
    m_lblOPMLStatus->clear();
    m_lblOPMLStatus->hide();
    m_cmdLoadOPML->setEnabled(false);
    const QPointer<frmAddChannel> self(this);
    OPML->LoadOPML(path);
    if (self) {
        m_cmdLoadOPML->setEnabled(true);
    }
}

bool frmAddChannel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_txtOPML && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cmdLoadOPML_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmAddChannel::ShowOPMLMessage(const QString& message) {
    QString text = message;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_lblOPMLStatus->setText(text);
    m_lblOPMLStatus->show();
}

void frmAddChannel::OPML_FileLoaded() {
    QList<std::pair<QString, QString>> rows;
    for (int i = 0; i < OPML->GetCount(); ++i) {
        rows.append({OPML->GetTitle(i), OPML->GetURL(i)});
    }
    FillList(m_lstOPML, rows);
}

void frmAddChannel::cmdNewGroup_Click() {
    if (m_addGroup) {
        m_addGroup->activateWindow();
        return;
    }
    m_addGroup = new frmAddGroup(m_commands, m_skin, this);
    m_addGroup->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_addGroup, &frmAddGroup::Closed, this, &frmAddChannel::AddGroup_Closed);
    m_addGroup->show();
}

void frmAddChannel::AddGroup_Closed() {
    init();
    if (clsProfile* profile = m_commands.ActiveProfile(); profile && profile->GroupCount() > 0) {
        SelectGroup(profile->GetGroup(profile->GroupCount())->Name());
    }
}

void frmAddChannel::cmdOk_Click() {
    const int tab = m_tabAdd->currentIndex();
    const QString group = m_groupBoxes[tab]->currentText();
    if (group.isEmpty()) {
        QMessageBox::information(this, QStringLiteral("Tamsel"), QStringLiteral("No Group Selected"));
        return;
    }
    if (tab != TabAddress) {
        AddFromList(group);
        accept();
        return;
    }
    if (Searching()) {
        return;
    }
    if (const QTreeWidgetItem* chosen = m_lstFound->currentItem(); chosen && m_lstFound->isVisible()) {
        m_commands.AddChannel(chosen->text(1), group);
        accept();
        return;
    }
    StartSearch(group);
}

void frmAddChannel::AddFromList(const QString& group) {
    const int tab = m_tabAdd->currentIndex();
    if (tab == TabOPML) {
        m_settings.SaveSetting(kOpmlSection, kOpmlKey, m_txtOPML->text());
    }
    const int expire = NumericValue(m_txtExpire->text());
    const int update = std::min(NumericValue(m_txtUpdate->text()), RSSChannel::kMaxUpdateMinutes);
    QTreeWidget* list = List(tab);
    QStringList keys;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        if (list->topLevelItem(i)->isSelected()) {
            keys.append(list->topLevelItem(i)->text(1));
        }
    }
    // Every new channel takes the next id from the settings: one write for the whole list.
    const CRegSettings::DeferredWrites ids(m_settings);
    for (const QString& key : std::as_const(keys)) {
        m_commands.AddChannel(key, group);
        clsProfile* profile = m_commands.ActiveProfile();
        if (RSSChannel* channel = profile ? profile->GetChannel(key) : nullptr) {
            channel->SetExpire(expire);
            channel->SetUpdate(update);
        }
    }
}

void frmAddChannel::StartSearch(const QString& group) {
    const QString address = FeedDiscovery::NormalisedAddress(m_txtURL->text());
    if (address.isEmpty()) {
        m_lblStatus->setText(QStringLiteral("Please type the address of a channel or of a web site."));
        m_txtURL->setFocus();
        return;
    }
    ForgetFound();
    m_searchedAddress = address;
    m_searchGroup = group;
    m_lblStatus->setText(QStringLiteral("Looking for feeds at %1 ...").arg(address));
    SetSearching(true);
    m_discovery->Discover(address);
}

bool frmAddChannel::Searching() const {
    return m_discovery->Busy();
}

void frmAddChannel::SetSearching(bool searching) {
    m_busy->setVisible(searching);
    m_cmdOk->setEnabled(!searching);
    m_txtURL->setReadOnly(searching);
    if (!searching) {
        m_txtURL->setFocus();
    }
}

void frmAddChannel::ForgetFound() {
    m_lstFound->clear();
    m_lstFound->hide();
    m_cmdAsTyped->hide();
    if (!Searching()) {
        m_lblStatus->clear();
    }
}

void frmAddChannel::Discovery_Finished(const QList<DiscoveredFeed>& feeds, const QString& message) {
    SetSearching(false);
    if (feeds.size() == 1) {
        m_commands.AddChannel(feeds.first().url, m_searchGroup);
        accept();
        return;
    }
    if (feeds.size() > 1) {
        QList<std::pair<QString, QString>> rows;
        for (const DiscoveredFeed& feed : feeds) {
            rows.append({feed.title.isEmpty() ? feed.url : feed.title, feed.url});
        }
        FillList(m_lstFound, rows);
        m_lstFound->setCurrentItem(m_lstFound->topLevelItem(0));
        m_lstFound->show();
        m_lblStatus->setText(QStringLiteral("%1 feeds were found at %2. Choose one and press Ok.")
                                 .arg(QString::number(m_lstFound->topLevelItemCount()), m_searchedAddress));
        m_lstFound->setFocus();
        return;
    }
    const QString said =
        message.isEmpty() ? QStringLiteral("No feed was found at %1.").arg(m_searchedAddress) : message;
    // A site that could not be reached may be a feed that is down just now.
    const bool offer = m_discovery->Unreachable();
    m_lblStatus->setText(offer ? said + QStringLiteral("\nIt may be a feed that is down just now.") : said);
    m_cmdAsTyped->setVisible(offer);
}

void frmAddChannel::cmdAsTyped_Click() {
    if (m_searchedAddress.isEmpty() || m_searchGroup.isEmpty()) {
        return;
    }
    m_commands.AddChannel(m_searchedAddress, m_searchGroup);
    accept();
}

void frmAddChannel::reject() {
    if (Searching()) {
        m_discovery->Cancel();
        SetSearching(false);
        m_lblStatus->setText(QStringLiteral("The search was stopped."));
        return;
    }
    QDialog::reject();
}

void frmAddChannel::showEvent(QShowEvent* event) {
    if (!m_placed) {
        m_placed = true;
        RestoreWindowPlacement(m_settings, this, kSection);
    }
    QDialog::showEvent(event);
}

void frmAddChannel::hideEvent(QHideEvent* event) {
    if (Searching()) {
        m_discovery->Cancel();
        SetSearching(false);
    }
    SaveWindowPlacement(m_settings, this, kSection);
    QDialog::hideEvent(event);
}
