#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSpinBox>
#include <QToolButton>

#include "sandbox/widgets/HostWidget.h"

namespace sandbox {

class LabelWidget final : public HostWidget {
  public:
    explicit LabelWidget(const std::string& caption);
    const char* kind() const override { return "label"; }
    QString caption() const override { return text_; }
    bool setText(const QString& text) override;
    void setRoom(int columns, int rows) override;
    /// The widget that it stands in front of, and whose tooltip is this one's where it has none of its own.
    void explain(QWidget& field);
    bool setInteger(std::int32_t value) override { return setText(QString::number(value)); }
    bool setReal(double value) override;
    std::optional<QString> text() const override { return text_; }

  private:
    QLabel* label_;
    QString text_;
    QPointer<QWidget> explained_;
};

/// Push button, check button and radio button.
class ButtonWidget final : public HostWidget {
  public:
    enum class Style { Push, Check, Radio };

    ButtonWidget(Style style, const std::string& caption);
    const char* kind() const override;
    QString caption() const override { return caption_; }
    Style style() const { return style_; }
    bool setText(const QString& text) override;
    void setRoom(int columns, int rows) override;
    /// A push button becomes a toggle button by its first check.
    bool setChecked(bool checked) override;
    std::optional<QString> text() const override { return caption_; }
    std::optional<std::int64_t> integer() const override { return button_->isChecked() ? 1 : 0; }
    std::optional<bool> checked() const override { return button_->isChecked(); }

  private:
    Style style_;
    QAbstractButton* button_;
    QString caption_;
    /// Pixels that a check button's text may take.
    int widest_ = 260;
};

/// One line of text. It calls back once the user has changed it and pressed Enter or left it.
class TextFieldWidget final : public HostWidget {
  public:
    explicit TextFieldWidget(std::int32_t style);
    const char* kind() const override { return "text field"; }
    bool setText(const QString& text) override;
    void setRoom(int columns, int rows) override;
    bool setMarked(bool marked) override;
    /// From now on it calls back when Enter is pressed alone, and what is typed calls `typing`, null for
    /// nobody.
    void setLine(FunctorTwoParams__* typing);
    bool setInteger(std::int32_t value) override { return setText(QString::number(value)); }
    bool setReal(double value) override;
    std::optional<QString> text() const override { return field_->text(); }
    /// 0 for a text that is no number.
    std::optional<std::int64_t> integer() const override;
    std::optional<double> real() const override;

  private:
    QLineEdit* field_;
    bool isLine_ = false;
    FunctorTwoParams__* typing_ = nullptr;
    bool marked_ = false;
    /// Since it was left last.
    bool handedOver_ = false;
};

class SpinnerWidget final : public HostWidget {
  public:
    explicit SpinnerWidget(std::int32_t style);
    const char* kind() const override { return "spinner"; }
    bool setInteger(std::int32_t value) override;
    bool setReal(double value) override;
    bool setText(const QString& text) override;
    bool setMarked(bool marked) override;
    void setLimits(int least, int most);
    std::optional<QString> text() const override;
    std::optional<std::int64_t> integer() const override { return spinner_->value(); }
    std::optional<double> real() const override { return spinner_->value(); }

  private:
    void left();

    QSpinBox* spinner_;
    bool marked_ = false;
};

/// A colour, shown on a button that opens a colour dialog. Its value is 0xRRGGBBAA.
class ColorWellWidget final : public HostWidget {
  public:
    explicit ColorWellWidget(std::int32_t style);
    const char* kind() const override { return "colour well"; }
    bool setInteger(std::int32_t value) override;
    std::optional<QString> text() const override;
    std::optional<std::int64_t> integer() const override;

  private:
    void choose();
    void show(const QColor& color);

    QToolButton* button_;
    QColor color_;
    bool alpha_;
};

/// One choice of several; a caption stands before the menu.
class OptionMenuWidget final : public HostWidget {
  public:
    explicit OptionMenuWidget(const std::string& caption);
    const char* kind() const override { return "option menu"; }
    QString caption() const override { return caption_; }
    bool setInteger(std::int32_t value) override;
    bool setText(const QString& text) override;
    std::optional<QString> text() const override { return menu_->currentText(); }
    std::optional<std::int64_t> integer() const override { return menu_->currentIndex(); }
    void insertOption(std::int32_t index, const QString& text);
    std::optional<QString> option(std::int32_t index) const;
    QComboBox* menu() const { return menu_; }

  private:
    QComboBox* menu_;
    QString caption_;
};

}  // namespace sandbox
