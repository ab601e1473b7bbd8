#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <vector>

class QMenuBar;

namespace sandbox {

class Settings;

/// The named commands of plug-ins: the "Actions" menu, and the keys that the user has bound to them. A key
/// works while any window of the program is in front, but for what a field that has the focus does with it
/// (`FieldKeys`).
///
/// Under "Keys/<owner>: <label>" the settings hold the keys that the user chose, "none" for none; an action
/// without an entry has its defaults (those of the editor's actions are known by their labels). A key that
/// another command has already is not given a second time: that would silence both.
class PluginActions : public QObject {
    Q_OBJECT

  public:
    using Keys = QList<QKeySequence>;
    struct Entry {
        QPointer<QAction> action;
        QString owner;
        QString label;
    };

    /// \param menu where the actions stand, before what the host adds later
    /// \param hostMenus with the host's commands and their keys
    PluginActions(QMenu& menu, const QMenuBar& hostMenus, Settings& settings);

    /// Takes in an action that its plug-in has made, with its keys, until it is destroyed.
    void admit(QAction& action, const QString& owner, const QString& label);

    /// Those that live, in the order in which they came.
    std::vector<Entry> entries() const;
    /// The command, of a plug-in or of the host, that has the key; null if it is free. The host's are those
    /// of its menus, and those of plug-ins' dialogs.
    const QAction* holder(const QKeySequence& key) const;
    /// Binds these keys alone and keeps them. Plug-ins' actions that have one of them lose it.
    /// \return false, and nothing is changed, when a command of the host's has one
    bool setKeys(const Entry& entry, const Keys& keys);
    /// Forgets what the user chose: the defaults hold, as far as they are free.
    void resetToDefault(const Entry& entry);
    bool isPlugins(const QAction& action) const { return find(action) != nullptr; }

  signals:
    void changed();

  private:
    static QString settingOf(const Entry& entry);
    Keys wanted(const Entry& entry) const;
    const Entry* find(const QAction& action) const;
    void applyKept(const Entry& entry);
    void store(const Entry& entry, const Keys& keys);
    void arrange();

    QMenu& menu_;
    const QMenuBar& hostMenus_;
    Settings& settings_;
    /// They do nothing, and stand for what each dialog does by itself.
    QList<QAction*> dialogKeys_;
    std::vector<Entry> entries_;
    QAction* end_;  ///< of the plug-ins' part of the menu
    QList<QAction*> separators_;
    QTimer arrangeSoon_;
};

}  // namespace sandbox
