#include "sandbox/PlatformDialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "sandbox/scenario/Scenario.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

PlatformDialog::PlatformDialog(const Scenario& scenario, const QString& title, QWidget* parent)
    : QDialog(parent), scenario_(scenario) {
    setWindowTitle(title);
    part_ = new QLineEdit;
    part_->setPlaceholderText("A part of the platform's name");
    part_->setClearButtonEnabled(true);
    names_ = new QListWidget;
    names_->setUniformItemSizes(true);
    others_ = new QLabel;
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    accept_ = buttons->button(QDialogButtonBox::Ok);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* part : {static_cast<QWidget*>(part_), static_cast<QWidget*>(names_),
                          static_cast<QWidget*>(others_), static_cast<QWidget*>(buttons)})
        layout->addWidget(part);
    part_->installEventFilter(this);
    connect(part_, &QLineEdit::textChanged, this, &PlatformDialog::list);
    connect(names_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    list();
}

bool PlatformDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == part_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(names_, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void PlatformDialog::list() {
    constexpr int kMost = 500;
    const QString part = part_->text().trimmed();
    names_->clear();
    bool more = false;
    for (const auto& [id, platform] : scenario_.platforms()) {
        const QString name = QString::fromStdString(platform.name);
        if (!name.contains(part, Qt::CaseInsensitive)) continue;
        more = names_->count() == kMost;
        if (more) break;
        auto* item = new QListWidgetItem(Caption::inOneLine(name), names_);
        item->setData(Qt::UserRole, QVariant::fromValue<qulonglong>(id));
    }
    names_->setCurrentRow(0);
    others_->setText(more                   ? QString("The first %1; there are others").arg(kMost)
                     : names_->count() == 0 ? "No platform's name has this"
                                            : " ");
    accept_->setEnabled(names_->count() > 0);
}

std::uint64_t PlatformDialog::platform() const {
    const QListWidgetItem* item = names_->currentItem();
    return item ? item->data(Qt::UserRole).toULongLong() : 0;
}

}  // namespace sandbox
