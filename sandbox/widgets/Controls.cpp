#include "sandbox/widgets/Controls.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTextLayout>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "common/Notify.h"
#include "common/NumberText.h"
#include "common/Strings.h"
#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"
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

/// A closed menu stays as it is: a choice may be a command, and the wheel, or a key on the way through the
/// form, none. Keys that would choose open it.
class ClosedMenuGuard final : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto& menu = static_cast<QComboBox&>(*watched);
        if (event->type() == QEvent::Wheel) {
            event->ignore();
            return true;
        }
        if (event->type() != QEvent::KeyPress) return false;
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool chooses = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down ||
                             key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown ||
                             key.key() == Qt::Key_Home || key.key() == Qt::Key_End ||
                             (!key.text().isEmpty() && key.text().front().isLetterOrNumber());
        if (chooses) menu.showPopup();
        return chooses;
    }
};

/// A label that takes the room it was given, and no more for a longer text: that is cut.
class RoomyLabel final : public QLabel {
  public:
    void setWhole(const QString& text) {
        whole_ = text;
        show_();
    }
    void setRoom(int columns, int rows) {
        columns_ = columns;
        rows_ = rows;
        setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setSizePolicy(columns > 0 ? QSizePolicy::Preferred : QSizePolicy::Expanding, QSizePolicy::Fixed);
        updateGeometry();
        show_();
    }
    QSize sizeHint() const override {
        if (rows_ == 0) return QLabel::sizeHint();
        return {columns_ > 0 ? columns_ * fontMetrics().averageCharWidth() : 40,
                rows_ * fontMetrics().lineSpacing()};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
    bool hasHeightForWidth() const override { return rows_ == 0 && QLabel::hasHeightForWidth(); }
    int heightForWidth(int width) const override {
        return rows_ == 0 ? QLabel::heightForWidth(width) : sizeHint().height();
    }

  protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        show_();
    }
    bool event(QEvent* event) override {
        const bool asked = event->type() == QEvent::ToolTip && toolTip().isEmpty();
        if (!asked || rows_ == 0 || whole_.isEmpty()) return QLabel::event(event);
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole_, this);
        return true;
    }

  private:
    /// Broken into the lines that there are; the last one ends in dots when there is more.
    void show_() {
        if (rows_ == 0) return setText(whole_);
        QTextLayout layout(whole_, font());
        layout.beginLayout();
        QString shown;
        int from = 0;
        for (int row = 1; row < rows_; ++row) {
            QTextLine line = layout.createLine();
            if (!line.isValid()) break;
            line.setLineWidth(width());
            shown += whole_.sliced(from, line.textLength()).trimmed() + '\n';
            from += line.textLength();
        }
        layout.endLayout();
        shown += fontMetrics().elidedText(whole_.sliced(from), Qt::ElideRight, width());
        setText(shown.trimmed());
    }

    QString whole_;
    int columns_ = 0;
    int rows_ = 0;
};

/// What is not accepted stands on a ground of its own, in light and in dark colours; nothing changes its
/// size.
void showMarked(QWidget& field, bool marked) {
    QPalette palette;
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    if (marked) palette.setColor(QPalette::Base, dark ? QColor(112, 32, 32) : QColor(255, 196, 188));
    field.setPalette(palette);
}

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
  public:
    /// Whether what is refused is told to others, who say so.
    bool refusals = false;
    /// What the user has typed and not handed over, and what was refused of it and stands there still.
    std::optional<QString> typed;
    std::optional<QString> refused;
    bool takes(const QString& text) const { return number(text).has_value(); }

    QValidator::State validate(QString& text, int&) const override {
        return number(text) ? QValidator::Acceptable : QValidator::Intermediate;
    }
    QLineEdit& edit() const { return *lineEdit(); }
    int valueFromText(const QString& text) const override { return number(text).value_or(value()); }
    void fixup(QString& text) const override {
        if (refusals) return;
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

/// Qt tells that a line was left only when it was edited since; here the left line itself tells.
class LeftLine final : public QLineEdit {
  public:
    /// Called when the user leaves it for another place of this program.
    std::function<void()> left;
    /// Pixels that it wants, 0 for those that Qt gives every line.
    int wanted = 0;

    QSize sizeHint() const override {
        const QSize usual = QLineEdit::sizeHint();
        return wanted > 0 ? QSize(wanted, usual.height()) : usual;
    }

  protected:
    void focusOutEvent(QFocusEvent* event) override {
        QLineEdit::focusOutEvent(event);
        const auto reason = event->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) left();
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

LabelWidget::LabelWidget(const std::string& caption) : label_(new RoomyLabel) {
    setWidget(label_);
    setText(QString::fromStdString(caption));
}

bool LabelWidget::setText(const QString& text) {
    const Caption caption = Caption::parse(text.toStdString());
    text_ = caption.text;
    static_cast<RoomyLabel*>(label_)->setWhole(text_);
    const QString before = label_->toolTip();
    applyCaption(label_, caption, true);
    if (explained_ && explained_->toolTip() == before) explained_->setToolTip(label_->toolTip());
    return true;
}

void LabelWidget::setRoom(int columns, int rows) {
    static_cast<RoomyLabel*>(label_)->setRoom(columns, rows);
    if (parent()) parent()->roomChanged(*this);
}

void LabelWidget::explain(QWidget& field) {
    if (!field.toolTip().isEmpty()) return;
    field.setToolTip(label_->toolTip());
    explained_ = &field;
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
    // The name of something may stand behind a check button, of whatever length.
    const QString shown = style_ == Style::Check ? button_->fontMetrics().elidedText(
                                                       caption_, Qt::ElideMiddle, widest_, Qt::TextSingleLine)
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

void ButtonWidget::setRoom(int columns, int rows) {
    if (style_ != Style::Check || columns == 0) {
        HostWidget::setRoom(columns, rows);
        return;
    }
    constexpr int box = 24;
    widest_ = columns * button_->fontMetrics().averageCharWidth();
    button_->setFixedWidth(widest_ + box);
    setText(caption_);
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

TextFieldWidget::TextFieldWidget(std::int32_t style) {
    auto* const line = new LeftLine;
    field_ = line;
    setWidget(field_);
    if (style == PIGUI::PITextFieldReadOnly) {
        field_->setReadOnly(true);
        QPalette palette = field_->palette();
        palette.setBrush(QPalette::Base, palette.window());
        field_->setPalette(palette);
    }
    QObject::connect(field_, &QLineEdit::editingFinished, field_, [this] {
        handedOver_ = true;
        if (isLine_ || (!field_->isModified() && !marked_)) return;
        field_->setModified(false);
        activate();
    });
    line->left = [this] {
        // Enter leaves no field: the first leaving after it is the first one.
        if (std::exchange(handedOver_, false) || isLine_ || !marked_) return;
        activate();
    };
}

void TextFieldWidget::setLine(FunctorTwoParams__* typing) {
    typing_ = typing;
    if (std::exchange(isLine_, true)) return;
    QObject::connect(field_, &QLineEdit::returnPressed, field_, [this] {
        field_->setModified(false);
        activate();
    });
    QObject::connect(field_, &QLineEdit::textEdited, field_, [this] {
        if (!typing_) return;
        owner()->enter("typing in " + describe(),
                       [typing = typing_, wrapper = wrapper()] { typing->Call(wrapper, nullptr); });
    });
}

void TextFieldWidget::setRoom(int columns, int) {
    auto& line = static_cast<LeftLine&>(*field_);
    constexpr int frame = 12;
    line.wanted = columns > 0 ? columns * line.fontMetrics().averageCharWidth() + frame : 0;
    line.setMinimumWidth(line.wanted);
    line.updateGeometry();
}

bool TextFieldWidget::setMarked(bool marked) {
    marked_ = marked;
    showMarked(*field_, marked);
    return true;
}

bool TextFieldWidget::setText(const QString& text) {
    // The same text again keeps the cursor, and what the user is about to commit.
    if (field_->text() != text) {
        const int caret = field_->hasFocus() ? field_->cursorPosition() : 0;
        field_->setText(text);
        // What is too long to be seen whole is a path, where nobody types: its end tells it from others.
        if (!field_->isReadOnly()) field_->setCursorPosition(caret);
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
    QObject::connect(spinner_, &QSpinBox::valueChanged, spinner_, [this] {
        static_cast<WholeNumberBox*>(spinner_)->refused.reset();
        activate();
    });
}

void SpinnerWidget::setLimits(int least, int most) {
    const QSignalBlocker blocker(spinner_);
    spinner_->setRange(least, most);
    auto& box = static_cast<WholeNumberBox&>(*spinner_);
    if (std::exchange(box.refusals, true)) return;
    // What Qt is about to replace by the number before.
    QObject::connect(&box.edit(), &QLineEdit::textEdited, spinner_,
                     [&box](const QString& text) { box.typed = text; });
    QObject::connect(spinner_, &QSpinBox::editingFinished, spinner_, [this] { left(); });
}

void SpinnerWidget::left() {
    auto& box = static_cast<WholeNumberBox&>(*spinner_);
    const std::optional<QString> typed = std::exchange(box.typed, {});
    const bool refused = typed && !box.takes(*typed);
    if (!refused && !marked_) return;
    if (refused) box.refused = typed;
    if (box.refused) box.edit().setText(*box.refused);
    activate();
}

bool SpinnerWidget::setMarked(bool marked) {
    marked_ = marked;
    showMarked(*spinner_, marked);
    auto& box = static_cast<WholeNumberBox&>(*spinner_);
    if (!marked) box.refused.reset();
    return true;
}

std::optional<QString> SpinnerWidget::text() const {
    const auto& box = static_cast<const WholeNumberBox&>(*spinner_);
    return box.refused.value_or(spinner_->text());
}

bool SpinnerWidget::setInteger(std::int32_t value) {
    const QSignalBlocker blocker(spinner_);
    auto& box = static_cast<WholeNumberBox&>(*spinner_);
    box.refused.reset();
    box.setValue(value);
    // Qt sets the text only with another value.
    box.edit().setText(QString::number(box.value()));
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
    menu_->setFocusPolicy(Qt::StrongFocus);
    menu_->installEventFilter(new ClosedMenuGuard(menu_));
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
