// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "groups/frmAddGroup.h"
#include "platform/Paths.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QString>
#include <memory>

class AppHost;
class CRegSettings;
class ChannelCommands;
class Clock;
class FeedDiscovery;
class HttpClient;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QTreeWidget;
class clsOPML;
class frmTamselSkin;
struct DiscoveredFeed;

// Adds channels to a group from five sources, one per tab: a typed address (the page it names is
// searched for feeds), the profile's own channels, an OPML file, another profile's channels and
// the Spotlight directory. Channels added from the lists take the expiry and reload period typed
// below them.
class frmAddChannel final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmAddChannel)
public:
    enum Tab { TabAddress = 0, TabExisting, TabOPML, TabUser, TabSpotlight };

    // The settings file keeps the last OPML file and the window's placement. The OPML file is
    // loaded once the event loop runs.
    frmAddChannel(ChannelCommands& commands, CRegSettings& settings, HttpClient& http, Clock& clock,
                  frmTamselSkin& skin, Paths paths, QWidget* parent = nullptr);
    ~frmAddChannel() override;

    // Refills the group boxes and the lists of the profile's channels, the profiles and the
    // Spotlight directory from the active profile.
    void init();
    // Selects the group in all five group boxes; none when the boxes do not offer it.
    void SelectGroup(const QString& name);
    // Loads the OPML file named in txtOPML into lstOPML.
    void cmdLoadOPML_Click();
    void cmdOk_Click();
    // Stops a search for feeds; closes the dialog only when none was running.
    void reject() override;
    bool Searching() const;

    QTabWidget* tabAdd() const { return m_tabAdd; }
    QLineEdit* txtURL() const { return m_txtURL; }
    QLineEdit* txtOPML() const { return m_txtOPML; }
    QLineEdit* txtExpire() const { return m_txtExpire; }
    QLineEdit* txtUpdate() const { return m_txtUpdate; }
    QComboBox* cboUsers() const { return m_cboUsers; }
    // The group box of a tab.
    QComboBox* GroupBox(int tab) const;
    // The candidate list of a tab (1 to 4); the feeds found on tab 0.
    QTreeWidget* List(int tab) const;
    QLabel* lblStatus() const { return m_lblStatus; }
    QLabel* lblOPMLStatus() const { return m_lblOPMLStatus; }
    QPushButton* cmdAsTyped() const { return m_cmdAsTyped; }
    QPushButton* cmdNewGroup() const { return m_cmdNewGroup; }
    QPushButton* cmdOk() const { return m_cmdOk; }
    QPushButton* cmdCancel() const { return m_cmdCancel; }
    // The add-group dialog while cmdNewGroup shows it.
    frmAddGroup* NewGroupDialog() const { return m_addGroup; }

    // The leading whole number of a text, 0 when it has none (a blank box, "abc").
    static int NumericValue(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildAddressTab();
    QWidget* BuildListTab(QTreeWidget* list, QComboBox* group, QWidget* top);
    void ApplySkin();
    void tabAdd_Click(int tab);
    void cboUsers_Click(int index);
    void cmdBrowseOPML_Click();
    void cmdNewGroup_Click();
    void AddGroup_Closed();
    void OPML_FileLoaded();
    void ShowOPMLMessage(const QString& message);
    void StartSearch(const QString& group);
    void Discovery_Finished(const QList<DiscoveredFeed>& feeds, const QString& message);
    void SetSearching(bool searching);
    void ForgetFound();
    void cmdAsTyped_Click();
    void AddFromList(const QString& group);

    ChannelCommands& m_commands;
    CRegSettings& m_settings;
    frmTamselSkin& m_skin;
    Paths m_paths;
    std::unique_ptr<AppHost> m_opmlHost;
    clsOPML* OPML;
    FeedDiscovery* m_discovery;
    // What the last search looked at and for which group, while its results are shown.
    QString m_searchedAddress;
    QString m_searchGroup;
    QPointer<frmAddGroup> m_addGroup;
    bool m_placed = false;

    QTabWidget* m_tabAdd;
    QLineEdit* m_txtURL;
    QLabel* m_lblStatus;
    QProgressBar* m_busy;
    QTreeWidget* m_lstFound;
    QPushButton* m_cmdAsTyped;
    QTreeWidget* m_lstExisting;
    QLineEdit* m_txtOPML;
    QPushButton* m_cmdBrowseOPML;
    QPushButton* m_cmdLoadOPML;
    QLabel* m_lblOPMLStatus;
    QTreeWidget* m_lstOPML;
    QComboBox* m_cboUsers;
    QTreeWidget* m_lstUser;
    QTreeWidget* m_lstSpotlights;
    QList<QComboBox*> m_groupBoxes;
    QLineEdit* m_txtExpire;
    QLineEdit* m_txtUpdate;
    QPushButton* m_cmdNewGroup;
    QPushButton* m_cmdOk;
    QPushButton* m_cmdCancel;
};
