#include "sandbox/PictureDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "sandbox/Settings.h"
#include "sandbox/SizeText.h"

namespace sandbox {

namespace {

const char* const kSizeKey = "Host/PictureSize";
const char* const kDensityKey = "Host/PictureDensity";
const char* const kBackgroundKey = "Host/PictureBackground";
const char* const kAsShown = "As shown";

QComboBox* row(QFormLayout& form, const QString& caption, const QString& tip) {
    auto* box = new QComboBox;
    box->setToolTip(tip);
    form.addRow(caption, box);
    return box;
}

}  // namespace

PictureDialog::PictureDialog(Settings& settings, QWidget* parent) : QDialog(parent), settings_(settings) {
    setWindowTitle("Save Picture");
    auto* form = new QFormLayout(this);
    size_ = row(*form, "&Size:", "Of the picture; the larger it is, the more of the earth there is room for");
    size_->setEditable(true);
    size_->setInsertPolicy(QComboBox::NoInsert);
    size_->addItems({kAsShown, "1280x800", "1920x1080", "3840x2160"});
    density_ = row(*form, "&Density:", "Pixels for each of the size's: lines and texts become finer");
    density_->addItems({"1", "2", "3", "4"});
    background_ = row(*form, "&Background:", "What lies behind the overlays");
    for (const auto& [text, background] : {std::pair{"The earth", PictureLook::Background::Earth},
                                           {"A plain earth", PictureLook::Background::PlainEarth},
                                           {"White", PictureLook::Background::White},
                                           {"Nothing (transparent)", PictureLook::Background::None}})
        background_->addItem(text, static_cast<int>(background));
    problem_ = new QLabel(" ");
    form->addRow(problem_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    save_ = buttons->addButton("Sa&ve...", QDialogButtonBox::AcceptRole);
    form->addRow(buttons);
    buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    save_->setDefault(true);

    if (const QString kept = settings_.value(kSizeKey); !kept.isEmpty()) size_->setCurrentText(kept);
    const QString density = settings_.value(kDensityKey);
    density_->setCurrentIndex(
        density.isEmpty() ? std::clamp(static_cast<int>(parent->devicePixelRatio()), 1, density_->count()) - 1
                          : std::max(0, density_->findText(density)));
    background_->setCurrentIndex(std::max(0, background_->findText(settings_.value(kBackgroundKey))));
    connect(size_, &QComboBox::currentTextChanged, this, &PictureDialog::judge);
    connect(density_, &QComboBox::currentTextChanged, this, &PictureDialog::judge);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        look_.background = static_cast<PictureLook::Background>(background_->currentData().toInt());
        settings_.setValue(kSizeKey, size_->currentText());
        settings_.setValue(kDensityKey, density_->currentText());
        settings_.setValue(kBackgroundKey, background_->currentText());
        accept();
    });
    judge();
}

void PictureDialog::judge() {
    const QString text = size_->currentText().trimmed();
    look_.size = text == kAsShown ? QSize() : readSize(text);
    look_.density = density_->currentText().toDouble();
    QString problem;
    if (text != kAsShown && look_.size.isEmpty())
        problem = QString("\"%1\" is no size: expected WIDTHxHEIGHT, such as 1600x1000").arg(text);
    else if (std::max(look_.size.width(), look_.size.height()) * look_.density > PictureLook::kMostPixels)
        problem = QString("The picture is larger than %1 pixels").arg(PictureLook::kMostPixels);
    problem_->setText(problem.isEmpty() ? " " : problem);
    save_->setEnabled(problem.isEmpty());
}

}  // namespace sandbox
