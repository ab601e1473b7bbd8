#include "sandbox/widgets/Controls.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "common/Notify.h"
#include "common/NumberText.h"
#include "common/Strings.h"
#include "pi/HostStructures.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

QString numberText(double value) {
    return QString::fromStdString(UTILS::writeNumber(value));
}

/// Turning the wheel to scroll a dialog must not change what happens to be under the cursor.
class WheelGuard final : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Wheel || !widget || widget->hasFocus()) return false;
        event->ignore();
        return true;
    }
};

void guardWheel(QWidget* widget) {
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(new WheelGuard(widget));
}

void applyCaption(QWidget* widget, const Caption& caption, bool keepTooltip = false) {
    if (!keepTooltip || !caption.tooltip.isEmpty()) widget->setToolTip(caption.tooltip);
}

/// Qt's own box drops the keys that it does not like: "3.7" would become 37. Here what is typed stays until
/// it is left, and is refused as a whole.
class WholeNumberBox final : public QSpinBox {
  protected:
    QValidator::State validate(QString& text, int&) const override {
        return number(text) ? QValidator::Acceptable : QValidator::Intermediate;
    }
    int valueFromText(const QString& text) const override { return number(text).value_or(value()); }
    void fixup(QString& text) const override {
        halNotify::notify(halNotify::Warning)
            << '"' << UTILS::excerpt(text.toStdString()) << "\" is no whole number from " << minimum()
            << " to " << maximum();
        text = textFromValue(value());
    }

  private:
    std::optional<int> number(const QString& text) const {
        const auto read = UTILS::readInteger(text.toStdString());
        if (!read || *read < minimum() || *read > maximum()) return std::nullopt;
        return static_cast<int>(*read);
    }
};

/// In dark colours a pressed button looks like others; it takes on some of the highlight's.
void showPressed(QWidget& button, bool pressed) {
    QPalette palette;
    if (pressed && palette.color(QPalette::Window).lightness() < 128)
        palette.setColor(QPalette::Button, palette.color(QPalette::Highlight).darker(140));
    button.setPalette(palette);
}

}  // namespace

LabelWidget::LabelWidget(const std::string& caption) : label_(new QLabel) {
    setWidget(label_);
    setText(QString::fromStdString(caption));
}

bool LabelWidget::setText(const QString& text) {
    const Caption caption = Caption::parse(text.toStdString());
    label_->setText(caption.text);
    applyCaption(label_, caption, true);
    return true;
}

bool LabelWidget::setReal(double value) {
    return setText(numberText(value));
}

ButtonWidget::ButtonWidget(Style style, const std::string& caption) : style_(style) {
    switch (style) {
        case Style::Push: {
            auto* button = new QPushButton;
            // Enter in a text field commits the field and presses nothing.
            button->setAutoDefault(false);
            button_ = button;
            break;
        }
        case Style::Check:
            button_ = new QCheckBox;
            break;
        case Style::Radio:
            button_ = new QRadioButton;
            break;
    }
    setWidget(button_);
    setText(QString::fromStdString(caption));
    QObject::connect(button_, &QAbstractButton::toggled, button_, [this](bool checked) {
        if (style_ == Style::Push) showPressed(*button_, checked);
    });
    // A click of the user's; setChecked() sends no such signal.
    QObject::connect(button_, &QAbstractButton::clicked, button_, [this] { activate(); });
}

const char* ButtonWidget::kind() const {
    if (style_ == Style::Check) return "check button";
    if (style_ == Style::Radio) return "radio button";
    return button_->isCheckable() ? "toggle button" : "button";
}

bool ButtonWidget::setText(const QString& text) {
    const Caption caption = Caption::parse(text.toStdString());
    caption_ = caption.text;
    constexpr int widestCheck = 260;
    // The name of something may stand behind a check button, of whatever length.
    const QString shown =
        style_ == Style::Check
            ? button_->fontMetrics().elidedText(caption_, Qt::ElideMiddle, widestCheck, Qt::TextSingleLine)
            : caption_;
    button_->setText(Caption::escaped(shown));
    applyCaption(button_, caption, true);
    // A button with a mere "..." or "<-" needs no room for a word.
    if (style_ == Style::Push) {
        const int width = button_->fontMetrics().horizontalAdvance(caption_) + 18;
        const bool word = std::ranges::any_of(caption_, [](QChar c) { return c.isLetter(); });
        button_->setMaximumWidth(caption_.size() <= 3 && !word ? std::max(width, 32) : QWIDGETSIZE_MAX);
    }
    return true;
}

bool ButtonWidget::setChecked(bool checked) {
    button_->setCheckable(true);
    // Radio buttons exclude each other: the last one cannot be unchecked otherwise.
    const bool exclusive = button_->autoExclusive();
    if (!checked) button_->setAutoExclusive(false);
    button_->setChecked(checked);
    button_->setAutoExclusive(exclusive);
    return true;
}

TextFieldWidget::TextFieldWidget(std::int32_t style) : field_(new QLineEdit) {
    setWidget(field_);
    if (style == PIGUI::PITextFieldReadOnly) {
        field_->setReadOnly(true);
        QPalette palette = field_->palette();
        palette.setBrush(QPalette::Base, palette.window());
        field_->setPalette(palette);
    }
    QObject::connect(field_, &QLineEdit::editingFinished, field_, [this] {
        if (!field_->isModified()) return;
        field_->setModified(false);
        activate();
    });
}

bool TextFieldWidget::setText(const QString& text) {
    // The same text again keeps the cursor, and what the user is about to commit.
    if (field_->text() != text) {
        field_->setText(text);
        // What is too long to be seen whole is a path, where nobody types: its end tells it from others.
        if (!field_->isReadOnly()) field_->setCursorPosition(0);
    }
    field_->setModified(false);
    return true;
}

bool TextFieldWidget::setReal(double value) {
    return setText(numberText(value));
}

std::optional<std::int64_t> TextFieldWidget::integer() const {
    const auto value = UTILS::readInteger(field_->text().toStdString());
    return value ? *value : static_cast<std::int64_t>(std::clamp(*real(), -9.0e18, 9.0e18));
}

std::optional<double> TextFieldWidget::real() const {
    return UTILS::readNumber(field_->text().toStdString()).value_or(0.0);
}

SpinnerWidget::SpinnerWidget(std::int32_t style) : spinner_(new WholeNumberBox) {
    setWidget(spinner_);
    constexpr int limit = 9999;
    spinner_->setRange(style == PIGUI::PISpinnerSigned ? -limit : 0, limit);
    spinner_->setKeyboardTracking(false);
    guardWheel(spinner_);
    QObject::connect(spinner_, &QSpinBox::valueChanged, spinner_, [this] { activate(); });
}

bool SpinnerWidget::setInteger(std::int32_t value) {
    const QSignalBlocker blocker(spinner_);
    spinner_->setValue(value);
    return true;
}

bool SpinnerWidget::setReal(double value) {
    if (std::isnan(value)) return false;
    return setInteger(static_cast<std::int32_t>(std::clamp(value, -9999.0, 9999.0)));
}

bool SpinnerWidget::setText(const QString& text) {
    const auto value = UTILS::readInteger(text.toStdString());
    return value && setInteger(static_cast<std::int32_t>(std::clamp<std::int64_t>(*value, -9999, 9999)));
}

ColorWellWidget::ColorWellWidget(std::int32_t style)
    : button_(new QToolButton), alpha_(style == PIGUI::PIColorWellAlpha) {
    setWidget(button_);
    button_->setIconSize({40, 16});
    show(Qt::white);
    QObject::connect(button_, &QToolButton::clicked, button_, [this] { choose(); });
}

void ColorWellWidget::show(const QColor& color) {
    color_ = color;
    QPixmap swatch(button_->iconSize());
    swatch.fill(Qt::white);
    QPainter painter(&swatch);
    // A chequered ground shows how much shines through.
    for (int x = 0; x < swatch.width(); x += 8)
        for (int y = (x / 8) % 2 * 8; y < swatch.height(); y += 16)
            painter.fillRect(x, y, 8, 8, Qt::lightGray);
    painter.fillRect(swatch.rect(), color_);
    painter.setPen(Qt::darkGray);
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    button_->setIcon(swatch);
}

bool ColorWellWidget::setInteger(std::int32_t value) {
    const auto rgba = static_cast<std::uint32_t>(value);
    show(QColor(static_cast<int>(rgba >> 24), static_cast<int>(rgba >> 16 & 255),
                static_cast<int>(rgba >> 8 & 255), static_cast<int>(rgba & 255)));
    return true;
}

std::optional<std::int64_t> ColorWellWidget::integer() const {
    const auto part = [](int value) { return static_cast<std::uint32_t>(value); };
    const std::uint32_t rgba = part(color_.red()) << 24 | part(color_.green()) << 16 |
                               part(color_.blue()) << 8 | part(color_.alpha());
    return static_cast<std::int32_t>(rgba);
}

std::optional<QString> ColorWellWidget::text() const {
    return QString("0x%1").arg(static_cast<std::uint32_t>(*integer()), 8, 16, QChar('0'));
}

void ColorWellWidget::choose() {
    auto* dialog = new QColorDialog(color_, button_->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    dialog->setOption(QColorDialog::ShowAlphaChannel, alpha_);
    QObject::connect(dialog, &QColorDialog::colorSelected, button_, [this](QColor chosen) {
        if (!alpha_) chosen.setAlpha(color_.alpha());
        show(chosen);
        activate();
    });
    dialog->open();
}

OptionMenuWidget::OptionMenuWidget(const std::string& caption) : menu_(new QComboBox) {
    const Caption parsed = Caption::parse(caption);
    caption_ = parsed.text;
    if (caption_.isEmpty()) {
        setWidget(menu_);
    } else {
        auto* row = new QWidget;
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(new QLabel(caption_));
        layout->addWidget(menu_);
        setWidget(row);
    }
    widget()->setToolTip(parsed.tooltip);
    menu_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    guardWheel(menu_);
    QObject::connect(menu_, &QComboBox::activated, menu_, [this] { activate(); });
}

bool OptionMenuWidget::setInteger(std::int32_t value) {
    if (value < -1 || value >= menu_->count()) return false;
    menu_->setCurrentIndex(value);
    return true;
}

bool OptionMenuWidget::setText(const QString& text) {
    const int index = menu_->findText(text);
    return index >= 0 && setInteger(index);
}

void OptionMenuWidget::insertOption(std::int32_t index, const QString& text) {
    const int at = index < 0 || index > menu_->count() ? menu_->count() : index;
    const Caption caption = Caption::parse(text.toStdString());
    menu_->insertItem(at, caption.text);
    menu_->setItemData(at, caption.tooltip, Qt::ToolTipRole);
}

std::optional<QString> OptionMenuWidget::option(std::int32_t index) const {
    if (index < 0 || index >= menu_->count()) return std::nullopt;
    return menu_->itemText(index);
}

}  // namespace sandbox
