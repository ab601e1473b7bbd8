#include "gui/RingsDialog.h"

#include "common/Notify.h"
#include "common/NumberText.h"
#include "geo/UnitTypes.h"
#include "gui/RefusedText.h"

namespace OverlayEditor {

using halCore::Units;
using Quantity = ValueUnitEntry::Quantity;

namespace {

constexpr int kCount = 5;
constexpr double kLeastFirstStep = 1000.0;

/// Five of the unit, or so many times ten that they can be seen from afar.
double firstStep(const Units& unit) {
    double value = 5.0;
    while (unit.convertTo(Units::METERS, value) < kLeastFirstStep) value *= 10.0;
    return unit.convertTo(Units::METERS, value);
}

/// Without what the sums of binary fractions leave behind: three times 0.1 is 0.3.
std::string plainNumber(double value) {
    constexpr int digits = 12;
    return UTILS::writeNumber(value, digits);
}

}  // namespace

RingsDialog::Rows::Rows(const Preferences& preferences, PIGUI::PICanvas& canvas)
    : PanelBody(preferences, canvas, {}),
      heading(*this, "Center\tWhat the rings lie about"),
      center(*this),
      first(*this, "First:\tRadius of the innermost ring", Quantity::Radius),
      step(*this, "Step:\tFrom each ring to the next", Quantity::Radius),
      count(*this, "Count:\tHow many rings", "", 1, kMost),
      labels(*this, "Labels:\tA label with the radius at the north of each ring") {}

RingsDialog::RingsDialog(const Preferences& preferences, FunctorTwoParams__* onOk)
    : preferences_(preferences),
      box_(nullptr, "Rings"),
      rows_(preferences, box_),
      buttons_(&box_, PIGUI::PILayoutFillX),
      ok_(&buttons_, "OK\tMake the rings", onOk),
      cancel_(&buttons_, "Cancel\tMake no rings", callbacks_.make(&RingsDialog::onCmdCancel)) {
    const double step = firstStep(UTILS::unitsGetUnits(preferences.rangeUnits()));
    rows_.first.setUnitRoom();
    rows_.first.setValue(step);
    rows_.step.setValue(step);
    rows_.count.setValue(kCount);
    rows_.labels.setValue(true);
}

RingsDialog::~RingsDialog() {
    callbacks_.disconnect();
}

void RingsDialog::show(const PlacedPoint& center, const PointConverter* reference) {
    if (reference) {
        halCore::Vec3 lla;
        reference->getReferenceLla(lla);
        reference_.setReferenceLla(lla, reference->refPlatformId());
    }
    rows_.center.setPointConverter(reference ? &reference_ : nullptr);
    rows_.center.setPosition(center);
    box_.show();
}

void RingsDialog::notifyPrefsUpdate() {
    const PlacedPoint center = rows_.center.position();
    rows_.center.notifyPrefsUpdate();
    rows_.center.setPosition(center);
    rows_.first.notifyPrefsUpdate();
    rows_.step.notifyPrefsUpdate();
}

std::vector<RingsDialog::Ring> RingsDialog::rings() const {
    if (const auto refused = RefusedText::messages(); !refused.empty()) {
        halNotify::notify(halNotify::Warning) << "No rings are made: " << refused.front();
        return {};
    }
    constexpr auto none = UTILS::UnitType_t::Invalid;
    const UTILS::UnitType_t last = rows_.step.typedUnit();
    UTILS::UnitType_t type = rows_.first.typedUnit();
    if (type == none) type = last;
    // Of two units neither gives round numbers.
    if (type == none || (last != none && last != type)) type = preferences_.rangeUnits();
    const Units& unit = UTILS::unitsGetUnits(type);
    const double first = Units::METERS.convertTo(unit, rows_.first.value());
    const double step = Units::METERS.convertTo(unit, rows_.step.value());
    std::vector<Ring> rings;
    for (int i = 0; i < rows_.count.value(); ++i) {
        const std::string number = plainNumber(first + i * step);
        Ring ring{unit.convertTo(Units::METERS, UTILS::readNumber(number).value_or(0.0)), number};
        ring.radius.append(" ").append(UTILS::unitsGetAbbreviation(type));
        if (const auto reason = ValueUnitEntry::refusal(Quantity::Radius, ring.meters); !reason.empty()) {
            halNotify::notify(halNotify::Warning) << "No rings are made: " << ring.radius << ": " << reason;
            return {};
        }
        rings.push_back(std::move(ring));
    }
    return rings;
}

int RingsDialog::onCmdCancel(PIObject*, void*) {
    hide();
    return 1;
}

}  // namespace OverlayEditor
