#include "sandbox/KeysDialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

QString shownKeys(const PluginActions::Keys& keys) {
    return QKeySequence::listToString(keys, QKeySequence::NativeText).replace("; ", ", ");
}

}  // namespace

KeysDialog::KeysDialog(PluginActions& actions, QWidget* parent) : QDialog(parent), actions_(actions) {
    setWindowTitle("Keys");
    setAttribute(Qt::WA_DeleteOnClose);
    list_ = new QTreeWidget;
    list_->setHeaderLabels({"Action", "Keys", "Plug-in"});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    for (const int column : {0, 1})
        list_->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    connect(list_, &QTreeWidget::currentItemChanged, this, &KeysDialog::showSelected);

    keys_ = new QKeySequenceEdit;
    keys_->setToolTip("Click here, then press the key");
    connect(keys_, &QKeySequenceEdit::keySequenceChanged, this, [this](const QKeySequence& sequence) {
        if (sequence.count() > 1) keys_->setKeySequence(pressed());
        judge();
    });
    keys_->installEventFilter(this);
    auto* caption = new QLabel("&New key:");
    caption->setBuddy(keys_);
    add_ = new QPushButton("&Add");
    clear_ = new QPushButton("&Remove Keys");
    reset_ = new QPushButton("&Default");
    for (QPushButton* button : {add_, clear_, reset_}) button->setAutoDefault(false);
    connect(add_, &QPushButton::clicked, this, &KeysDialog::add);
    connect(clear_, &QPushButton::clicked, this, [this] {
        if (const auto entry = selected()) actions_.setKeys(*entry, {});
    });
    connect(reset_, &QPushButton::clicked, this, [this] {
        if (const auto entry = selected()) actions_.resetToDefault(*entry);
    });
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(keys_, 1);
    for (QPushButton* button : {add_, clear_, reset_}) row->addWidget(button);

    clash_ = new QLabel(" ");
    clash_->setWordWrap(true);
    clash_->setTextFormat(Qt::PlainText);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_, 1);
    layout->addLayout(row);
    layout->addWidget(clash_);
    layout->addWidget(buttons);
    connect(&actions_, &PluginActions::changed, this, &KeysDialog::list);
    list();
    // Wide enough for every column, a scroll bar and a key more.
    QHeaderView* header = list_->header();
    header->setStretchLastSection(false);
    header->resizeSections(QHeaderView::ResizeToContents);
    const int width = header->length() + 90;
    header->setStretchLastSection(true);
    resize(std::max(560, width), 520);
    list_->setCurrentItem(list_->topLevelItem(0));
}

void KeysDialog::keyPressEvent(QKeyEvent* event) {
    // Enter is a key to be bound like others: it closes nothing.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return;
    QDialog::keyPressEvent(event);
}

bool KeysDialog::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<QKeyEvent&>(*event);
    // Somebody who presses it again wants to leave.
    const bool leaves = key.key() == Qt::Key_Escape && pressed() == QKeySequence(Qt::Key_Escape);
    const bool quits = key.matches(QKeySequence::Quit);
    // The field itself tells a second later.
    if (!leaves && !quits) QMetaObject::invokeMethod(this, &KeysDialog::judge, Qt::QueuedConnection);
    if (!leaves && !quits) return false;
    reject();
    if (quits) parentWidget()->close();
    return true;
}

void KeysDialog::list() {
    const int current = list_->indexOfTopLevelItem(list_->currentItem());
    {
        const QSignalBlocker blocker(list_);
        list_->clear();
        for (const PluginActions::Entry& entry : actions_.entries())
            if (entry.action)
                new QTreeWidgetItem(list_, {entry.label, shownKeys(entry.action->shortcuts()), entry.owner});
        list_->setCurrentItem(list_->topLevelItem(std::max(current, 0)));
    }
    showSelected();
}

std::optional<PluginActions::Entry> KeysDialog::selected() const {
    const QTreeWidgetItem* item = list_->currentItem();
    if (!item) return std::nullopt;
    for (const PluginActions::Entry& entry : actions_.entries())
        if (entry.action && entry.label == item->text(0) && entry.owner == item->text(2)) return entry;
    return std::nullopt;
}

QKeySequence KeysDialog::pressed() const {
    // Keys that are pressed one after the other are no key of an action: the last one counts.
    const QKeySequence sequence = keys_->keySequence();
    return sequence.isEmpty() ? sequence : QKeySequence(sequence[sequence.count() - 1]);
}

void KeysDialog::showSelected() {
    const auto entry = selected();
    clear_->setEnabled(entry && !entry->action->shortcuts().isEmpty());
    reset_->setEnabled(entry.has_value());
    keys_->setEnabled(entry.has_value());
    keys_->clear();
    judge();
}

void KeysDialog::judge() {
    const auto entry = selected();
    const QKeySequence key = pressed();
    const QAction* holder = key.isEmpty() ? nullptr : actions_.holder(key);
    const bool own = entry && holder == entry->action;
    const bool free = !holder || own || actions_.isPlugins(*holder);
    add_->setEnabled(entry && !key.isEmpty() && !own && free);
    QString text = " ";
    if (own)
        text = "It has this key already.";
    else if (holder && free)
        text = QString("%1 is the key of \"%2\", which loses it.")
                   .arg(key.toString(QKeySequence::NativeText), Caption::plain(holder->text()));
    else if (holder)
        text = QString("%1 is the program's own key, for \"%2\".")
                   .arg(key.toString(QKeySequence::NativeText), Caption::plain(holder->text()));
    if (key == QKeySequence(Qt::Key_Escape)) text += " Once more closes this window.";
    clash_->setText(text.trimmed().isEmpty() ? " " : text.trimmed());
}

void KeysDialog::add() {
    const auto entry = selected();
    if (!entry) return;
    PluginActions::Keys keys = entry->action->shortcuts();
    keys << pressed();
    actions_.setKeys(*entry, keys);
}

}  // namespace sandbox
