#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "gui/PanelRows.h"
#include "gui/RefusedText.h"

namespace OverlayEditor {

/// A value with its unit. The field shows the value in the user's units and precision, while the entry keeps
/// all of its digits. Values are metres or radians. A text that is typed and is what the field shows of the
/// value that it had before it was edited means that value, with all of its digits: so is an edit taken back.
class ValueUnitEntry final : public PanelRow<PIGUI::PITextField>, public PanelPart {
  public:
    /// Radius and Size are ranges too. A radius is above 0, a size of either sign; neither reaches farther
    /// than half way round the earth. A range or an altitude is refused beyond a million kilometres.
    enum class Quantity { Range, Radius, Size, Altitude, Angle, Latitude, Longitude };

    ValueUnitEntry(PanelBody& panel, const std::string& caption, Quantity quantity);

    /// Why no shape can have a value; empty when one can.
    static std::string_view refusal(Quantity quantity, double value);

    /// Shows a value; what the user typed before no longer counts as an edit.
    void setValue(double value);
    /// The value that the user typed since the last setValue; nothing when there was no edit.
    std::optional<double> edited() const { return edited_ ? std::optional(value_) : std::nullopt; }

    /// The value with all its digits, edited or not.
    double value() const { return value_; }
    /// The unit of length that the user typed behind it, Invalid for none, or when other units were chosen
    /// since.
    UTILS::UnitType_t typedUnit() const { return typedUnit_; }

    /// Asked about every value that is typed: why it cannot be taken, empty when it can.
    using Check = std::function<std::string_view(double)>;
    void setCheck(Check check) { check_ = std::move(check); }

    /// Asked about every text that is no value: whether somebody else takes it, who has then done so.
    /// Otherwise `reason` may tell why not.
    using Taker = std::function<bool(const std::string& text, std::string& reason)>;
    void setTaker(Taker taker) { taker_ = std::move(taker); }

    void notifyPrefsUpdate() override;
    void startAnew() override { given_ = value_; }

  private:
    /// Text that is no value of this kind is reported, and refused.
    bool takeEdit_() override;
    std::string format_() const { return format_(value_); }
    std::string format_(double value) const;
    int parse_(const std::string& text, double& value, std::string& remark, UTILS::UnitType_t& unit) const;
    bool isCoordinate_() const { return quantity_ == Quantity::Latitude || quantity_ == Quantity::Longitude; }
    std::string unitText_() const;
    /// What is understood, for a message.
    std::string_view example_() const;

    const Preferences& preferences_;
    Quantity quantity_;
    Check check_;
    Taker taker_;
    std::string name_;
    RefusedText refused_{field_};
    double value_ = 0.0;
    /// The last one that nobody typed here.
    double given_ = 0.0;
    bool edited_ = false;
    UTILS::UnitType_t typedUnit_ = UTILS::UnitType_t::Invalid;
};

}  // namespace OverlayEditor
