#include "sandbox/widgets/MenuItem.h"

#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/Mnemonics.h"

namespace sandbox {

MenuItem::MenuItem(QMenu& menu, const std::string& caption) : action_(new QAction(&menu)) {
    setText(QString::fromStdString(caption));
    menu.addAction(action_);
    QObject::connect(action_, &QAction::triggered, action_, [this] { activate(); });
}

MenuItem::~MenuItem() {
    if (submenu_) submenu_->deleteLater();
    if (!action_) return;
    action_->setVisible(false);
    action_->disconnect();
    action_->deleteLater();
}

bool MenuItem::setText(const QString& text) {
    const Caption caption = Caption::parse(text.toStdString());
    caption_ = caption.text;
    action_->setText(caption.escapedText());
    action_->setToolTip(caption.tooltip);
    action_->setStatusTip(caption.tooltip);
    return true;
}

bool MenuItem::setChecked(bool checked) {
    action_->setCheckable(true);
    action_->setChecked(checked);
    return true;
}

QMenu& MenuItem::submenu() {
    if (!submenu_) {
        submenu_ = new QMenu;
        action_->setMenu(submenu_);
        keepMnemonics(*submenu_);
    }
    return *submenu_;
}

}  // namespace sandbox
