#include "sandbox/PluginActions.h"

#include <QMenuBar>
#include <algorithm>
#include <utility>

#include "sandbox/Settings.h"
#include "sandbox/widgets/DialogBox.h"

namespace sandbox {

namespace {

const char* const kNone = "none";

struct Default {
    const char* label;
    const char* keys;
};

constexpr Default kDefaults[] = {
    {"Undo Overlay Edit", "Ctrl+Z"},           {"Redo Overlay Edit", "Ctrl+Shift+Z; Ctrl+Y"},
    {"Finish Overlay Shape", "Return; Enter"}, {"Remove Last Overlay Point", "Backspace"},
    {"Delete Overlay Shape", "Del"},           {"Duplicate Overlay Shape", "Ctrl+D"},
    {"Cancel Overlay Drawing", "Esc"},         {"Type Next Overlay Point", "Ctrl+T"},
};

PluginActions::Keys keysOf(const QString& text) {
    if (text == kNone) return {};
    PluginActions::Keys keys = QKeySequence::listFromString(text, QKeySequence::PortableText);
    keys.removeIf([](const QKeySequence& key) { return key.isEmpty() || key[0].key() == Qt::Key_unknown; });
    return keys;
}

const QAction* holderIn(const QList<QAction*>& actions, const QKeySequence& key) {
    for (const QAction* action : actions) {
        if (action->shortcuts().contains(key)) return action;
        if (const auto* menu = action->menu())
            if (const QAction* found = holderIn(menu->actions(), key)) return found;
    }
    return nullptr;
}

/// Whether two labels begin or end alike: "Quick Circle Draw", "Quick Line Draw".
bool related(const QString& a, const QString& b) {
    return a.section(' ', 0, 0) == b.section(' ', 0, 0) || a.section(' ', -1) == b.section(' ', -1);
}

}  // namespace

PluginActions::PluginActions(QMenu& menu, const QMenuBar& hostMenus, Settings& settings)
    : menu_(menu), hostMenus_(hostMenus), settings_(settings), end_(menu.addSeparator()) {
    for (const auto& [label, key] : {std::pair{"Save", QKeySequence(QKeySequence::Save)},
                                     std::pair{"Fold Dialog", QKeySequence(DialogBox::kFoldKey)}}) {
        dialogKeys_ << new QAction(label, this);
        dialogKeys_.last()->setShortcut(key);
    }
    arrangeSoon_.setSingleShot(true);
    arrangeSoon_.setInterval(0);
    connect(&arrangeSoon_, &QTimer::timeout, this, &PluginActions::arrange);
}

QString PluginActions::settingOf(const Entry& entry) {
    return "Keys/" + QString("%1: %2").arg(entry.owner, entry.label).replace('/', '|');
}

PluginActions::Keys PluginActions::wanted(const Entry& entry) const {
    const QString kept = settings_.value(settingOf(entry));
    if (!kept.isEmpty()) return keysOf(kept);
    const auto* row = std::ranges::find(kDefaults, entry.label, &Default::label);
    return row == std::end(kDefaults) ? Keys() : keysOf(row->keys);
}

void PluginActions::admit(QAction& action, const QString& owner, const QString& label) {
    action.setShortcutContext(Qt::ApplicationShortcut);
    menu_.insertAction(end_, &action);
    entries_.push_back({&action, owner, label});
    connect(&action, &QObject::destroyed, this, [this] {
        std::erase_if(entries_, [](const Entry& entry) { return !entry.action; });
        arrangeSoon_.start();
    });
    applyKept(entries_.back());
    arrangeSoon_.start();
}

std::vector<PluginActions::Entry> PluginActions::entries() const {
    std::vector<Entry> live;
    for (const Entry& entry : entries_)
        if (entry.action && entry.action->isVisible()) live.push_back(entry);
    return live;
}

const PluginActions::Entry* PluginActions::find(const QAction& action) const {
    const auto at = std::ranges::find(entries_, &action, [](const Entry& e) { return e.action.data(); });
    return at == entries_.end() ? nullptr : &*at;
}

const QAction* PluginActions::holder(const QKeySequence& key) const {
    // Alt and a letter opens a menu.
    for (const QAction* menu : hostMenus_.actions())
        if (!key.isEmpty() && QKeySequence::mnemonic(menu->text()) == key) return menu;
    const QAction* inMenus = holderIn(hostMenus_.actions(), key);
    return inMenus ? inMenus : holderIn(dialogKeys_, key);
}

void PluginActions::store(const Entry& entry, const Keys& keys) {
    entry.action->setShortcuts(keys);
    settings_.setValue(settingOf(entry), keys.isEmpty()
                                             ? QString(kNone)
                                             : QKeySequence::listToString(keys, QKeySequence::PortableText));
}

bool PluginActions::setKeys(const Entry& entry, const Keys& keys) {
    if (!entry.action) return false;
    std::vector<Entry> losers;
    for (const QKeySequence& key : keys) {
        const QAction* other = holder(key);
        if (!other || other == entry.action) continue;
        const Entry* loser = find(*other);
        if (!loser) return false;
        losers.push_back(*loser);
    }
    for (const Entry& loser : losers) {
        Keys kept = loser.action->shortcuts();
        kept.removeIf([&keys](const QKeySequence& key) { return keys.contains(key); });
        store(loser, kept);
    }
    store(entry, keys);
    emit changed();
    return true;
}

void PluginActions::resetToDefault(const Entry& entry) {
    if (!entry.action) return;
    settings_.setValue(settingOf(entry), {});
    applyKept(entry);
}

void PluginActions::applyKept(const Entry& entry) {
    Keys keys = wanted(entry);
    keys.removeIf([&](const QKeySequence& key) {
        const QAction* other = holder(key);
        return other && other != entry.action;
    });
    entry.action->setShortcuts(keys);
    emit changed();
}

void PluginActions::arrange() {
    qDeleteAll(separators_);
    separators_.clear();
    const auto relatedTo = [this](std::size_t i, std::size_t j) {
        return j < entries_.size() && entries_[i].owner == entries_[j].owner &&
               related(entries_[i].label, entries_[j].label);
    };
    for (std::size_t i = 1; i < entries_.size(); ++i) {
        if (relatedTo(i, i - 1)) continue;
        const bool betweenLoners = entries_[i].owner == entries_[i - 1].owner &&
                                   (i < 2 || !relatedTo(i - 1, i - 2)) && !relatedTo(i, i + 1);
        if (!betweenLoners) separators_ << menu_.insertSeparator(entries_[i].action);
    }
    emit changed();
}

}  // namespace sandbox
