#include "sandbox/script/FileDialogAnswer.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "sandbox/script/Gestures.h"

namespace sandbox {

namespace {

constexpr int kTickMilliseconds = 10;
constexpr int kMaximumTicks = 500;
constexpr int kTicksBetweenAttempts = 50;
constexpr int kFocusTicks = 100;

}  // namespace

FileDialogAnswer::FileDialogAnswer(QFileDialog& dialog, const QString& path, bool overwrite,
                                   std::function<void(const QString&)> report)
    : QObject(&dialog), dialog_(dialog), path_(path), overwrite_(overwrite), report_(std::move(report)) {
    QTimer::singleShot(kTickMilliseconds, this, &FileDialogAnswer::act);
}

void FileDialogAnswer::act() {
    if (gaveUp_) return;
    // A new timer each time: a click may not return before a question that it raised is answered.
    QTimer::singleShot(kTickMilliseconds, this, &FileDialogAnswer::act);
    if (++ticks_ > kMaximumTicks) {
        giveUp("it did not take the answer " + path_);
        return;
    }
    if (!dialog_.isVisible()) return;
    if (auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        QAbstractButton* yes = question->button(QMessageBox::Yes);
        if (!yes) {
            const QString text = question->text();
            question->reject();
            giveUp(text.simplified());
            return;
        }
        gestures::click(*(overwrite_ ? yes : question->button(QMessageBox::No)));
        if (!overwrite_) dialog_.reject();
        return;
    }
    // The dialog reads its directory in the background and may lose the name or the click meanwhile.
    if (typedAt_ != 0 && ticks_ - typedAt_ < kTicksBetweenAttempts) return;
    // The dialog follows what is typed only while it has the focus.
    if (!dialog_.isActiveWindow() && ticks_ < kFocusTicks) {
        dialog_.activateWindow();
        return;
    }
    typedAt_ = ticks_;
    const auto* buttons = dialog_.findChild<QDialogButtonBox*>();
    auto* name = dialog_.findChild<QLineEdit*>("fileNameEdit");
    const bool saving = dialog_.acceptMode() == QFileDialog::AcceptSave;
    auto* accept =
        buttons ? buttons->button(saving ? QDialogButtonBox::Save : QDialogButtonBox::Open) : nullptr;
    auto* cancel = buttons ? buttons->button(QDialogButtonBox::Cancel) : nullptr;
    if (!accept && buttons && !buttons->buttons().isEmpty())
        accept = qobject_cast<QPushButton*>(buttons->buttons().first());
    if (!name || !accept || !cancel) {
        giveUp("its parts were not found");
        return;
    }
    if (path_.isEmpty()) {
        gestures::click(*cancel);
        return;
    }
    // In one go: letter by letter the dialog would select each directory on the way.
    gestures::click(*name);
    gestures::key(*name, Qt::Key_A, Qt::ControlModifier);
    gestures::commit(*name, path_);
    if (!accept->isEnabled()) {
        giveUp("it does not accept " + path_);
        return;
    }
    // While the list of completions is open, a click elsewhere only closes it.
    if (name->completer() && name->completer()->popup()->isVisible()) name->completer()->popup()->hide();
    gestures::click(*accept);
}

void FileDialogAnswer::giveUp(const QString& why) {
    gaveUp_ = true;
    report_(QString("file dialog \"%1\": %2").arg(dialog_.windowTitle(), why));
    dialog_.reject();
}

}  // namespace sandbox
