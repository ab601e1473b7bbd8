#include "format/BlockPatch.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "common/NumberText.h"
#include "format/BlockLines.h"
#include "format/LineValues.h"
#include "format/LostLines.h"
#include "format/ShapeFields.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Units.h"

namespace halCore::ZEL {
namespace {

using P = ShapeParameter;

/// How far the points of two lists are compared across, where some were added or taken out.
constexpr std::size_t kWindow = 32;

/// Gives shapes the block's units while it lives.
class BorrowedUnits {
  public:
    BorrowedUnits(ZelShape& shape, const UnitsState& units) : shape_(shape), own_(shape.originalUnits()) {
        shape.setOriginalUnits(units);
    }
    ~BorrowedUnits() { shape_.setOriginalUnits(own_); }
    BorrowedUnits(const BorrowedUnits&) = delete;
    BorrowedUnits& operator=(const BorrowedUnits&) = delete;

  private:
    ZelShape& shape_;
    UnitsState own_;
};

class Patch {
  public:
    Patch(std::string_view block, const ZelShape& read, ZelShape& before, ZelShape& after,
          const UntouchedPoints& untouched, BlockPatch::Extent extent)
        : lines_(block, read, untouched.lines),
          read_(read),
          after_(after),
          all_(extent == BlockPatch::Extent::All),
          was_(fieldsOf(before)),
          is_(fieldsOf(after)) {
        was_[kShapeSlot] = {std::string(ZelShape::shapeTypeToString(read.shapeType())), {}};
        if (read.shapeType() == ShapeType::Annotation) was_.erase(kShapeSlot);
        if (!all_) {
            speakOfRadii_();
            speakOfEnd_();
        }
        followDefaults_();
    }

    bool points() {
        const std::vector<Vec3>* const old = pointsOf(read_);
        const std::vector<Vec3>* const now = pointsOf(after_);
        if (!old || !now) return old == now;
        lineOf_ = lines_.setters(kPointSlot);
        if (lineOf_.size() != old->size()) return false;
        old_ = *old;
        now_ = *now;
        turnBox_();
        comparePoints_();
        return true;
    }

    void fields() {
        for (const auto& [slot, field] : was_)
            if (!is_.contains(slot)) lines_.removeAll(slot);
        if (all_) removeIdle_();
        if (read_.shapeType() == ShapeType::Points && after_.shapeType() != ShapeType::Points) awake_();
        for (const auto& [slot, field] : is_) {
            const auto before = was_.find(slot);
            const bool same = before != was_.end() && before->second == field;
            if (all_ || !same || forced_.contains(slot))
                set_(slot, before == was_.end() ? nullptr : &before->second, field);
        }
    }

    /// Lines that would still mean something, and something else.
    void otherPositions() {
        if (read_.isRelative() == after_.isRelative()) return;
        drop_(kOtherPositionSlot);
        for (const int slot : {slotOf(P::CenterAbsolute), slotOf(P::Center2Absolute), int(kPointSlot)})
            for (const std::size_t line : lines_.setters(slot))
                if (!lines_.isEdited(line)) drop_({&line, 1});
    }

    std::vector<ParseMessage> lost() const {
        std::vector<ParseMessage> lost;
        for (const std::size_t line : dropped_)
            if (lines_.isRemoved(line))
                lost.push_back(lostLine(lines_.numberOf(line), lines_.lines()[line].text));
        return lost;
    }

    const BlockLines& lines() const { return lines_; }

  private:
    bool isSet_(P parameter) const { return !lines_.setters(slotOf(parameter)).empty(); }
    bool differs_(P parameter) const {
        const auto was = was_.find(slotOf(parameter));
        const auto is = is_.find(slotOf(parameter));
        if (was == was_.end() || is == is_.end()) return (was == was_.end()) != (is == is_.end());
        return was->second != is->second;
    }

    /// Values are told as the block tells them: an axis by the radius or by the other axis, the height of an
    /// ellipsoid by its longer axis, as long as that gives them.
    void speakOfRadii_() {
        const int major = slotOf(P::MajorAxis);
        const int minor = slotOf(P::MinorAxis);
        const int radius = slotOf(P::Radius);
        const ShapeFields before = was_;
        for (ShapeFields* const fields : {&was_, &is_}) {
            speakOfHeight_(*fields);
            if (!fields->contains(major) || !fields->contains(minor) || !before.contains(major)) continue;
            const auto axes = *fields;
            const bool same = axes.at(major).values == axes.at(minor).values;
            const auto tell = [&](int axis) {
                const double metres = UTILS::readNumber(axes.at(axis).values[0]).value_or(0.0);
                (*fields)[radius] = {"radius", {UTILS::writeNumber(0.5 * metres)}};
            };
            const bool hasMajor = isSet_(P::MajorAxis);
            const bool hasMinor = isSet_(P::MinorAxis);
            if (hasMajor && hasMinor) continue;
            if (!hasMajor && !hasMinor) {
                if (!isSet_(P::Radius)) continue;
                const bool keepsMajor = axes.at(major) == before.at(major);
                const bool keepsMinor = axes.at(minor) == before.at(minor);
                if (!same && !keepsMajor && !keepsMinor) continue;
                tell(keepsMajor ? major : minor);
                if (same || keepsMajor) fields->erase(major);
                if (same || keepsMinor) fields->erase(minor);
            } else if (isSet_(P::Radius)) {
                tell(hasMajor ? minor : major);
                fields->erase(hasMajor ? minor : major);
            } else if (same) {
                fields->erase(hasMajor ? minor : major);
            }
        }
    }

    void speakOfHeight_(ShapeFields& fields) const {
        const auto* const body = dynamic_cast<const Ellipsoid*>(&read_);
        double own = 0.0;
        if (!body || (body->getHeight(own) == 0 && own > 0.0)) return;
        const auto metres = [&](P parameter, const Units& units) {
            const auto field = fields.find(slotOf(parameter));
            const auto value =
                field != fields.end() ? UTILS::readNumber(field->second.values[0]) : std::nullopt;
            return value ? units.convertTo(Units::METERS, *value) : 0.0;
        };
        const UnitsState units = read_.originalUnits();
        const double longer = 0.5 * std::max(metres(P::MajorAxis, units.rangeUnits()),
                                             metres(P::MinorAxis, units.rangeUnits()));
        const double height = metres(P::Height, units.altitudeUnits());
        if (std::abs(height - longer) <= 1e-13 * longer) fields.erase(slotOf(P::Height));
    }

    /// Where a sweep is told by its end, it stays told by it.
    void speakOfEnd_() {
        if (!isSet_(P::AngleEnd) || isSet_(P::AngleSweep)) return;
        const double turn =
            halCore::Units::RADIANS.convertTo(read_.originalUnits().angleUnits(), halCore::kTwoPi);
        for (ShapeFields* const fields : {&was_, &is_}) {
            const auto start = fields->find(slotOf(P::AngleStart));
            const auto sweep = fields->find(slotOf(P::AngleSweep));
            if (start == fields->end() || sweep == fields->end()) continue;
            const auto from = UTILS::readNumber(start->second.values[0]);
            const auto by = UTILS::readNumber(sweep->second.values[0]);
            if (!from || !by) continue;
            const double end = *from + *by;
            (*fields)[slotOf(P::AngleEnd)] = {"angleend",
                                              {UTILS::writeNumber(end > turn ? end - turn : end)}};
            fields->erase(slotOf(P::AngleSweep));
        }
    }

    /// What stands for another value must be said when that changes.
    void followDefaults_() {
        const auto force = [this](P parameter) {
            if (is_.contains(slotOf(parameter)) && !isSet_(parameter)) forced_[slotOf(parameter)] = true;
        };
        if (differs_(P::LineColor)) force(P::FillColor);
        if (read_.shapeType() != after_.shapeType()) force(P::Name);
    }

    /// Lines that meant nothing may mean something among the others.
    void removeIdle_() {
        for (const P parameter :
             {P::Radius, P::MajorAxis, P::MinorAxis, P::Height, P::AngleStart, P::AngleEnd, P::AngleSweep})
            if (!is_.contains(slotOf(parameter))) drop_(slotOf(parameter));
    }

    /// What meant nothing to single points would mean something to a line.
    void awake_() {
        for (const P parameter : {P::LineStyle, P::LineWidth, P::Filled, P::FillColor, P::Tessellate})
            drop_(slotOf(parameter));
    }

    void drop_(int slot) { drop_(lines_.setters(slot)); }
    void drop_(std::span<const std::size_t> lines) {
        for (const std::size_t line : lines) {
            lines_.remove(line);
            dropped_.insert(line);
        }
    }

    void set_(int slot, const ShapeField* before, const ShapeField& after) {
        const std::vector<std::size_t>* setters = &lines_.setters(slot);
        // A label stands at its first point, or else at its centre.
        if (slot == kPointSlot && setters->empty()) setters = &lines_.setters(slotOf(P::CenterAbsolute));
        std::size_t line = setters->empty() ? 0 : slot == kPointSlot ? setters->front() : setters->back();
        const auto& text = lines_.setters(slotOf(P::AnnotationText));
        // The text gives a name, too: another one must come behind it.
        if (slot == slotOf(P::Name) && !text.empty() && line < text.back()) {
            lines_.removeAll(slot);
            line = 0;
        }
        if (line != 0)
            lines_.replace(line, withValues(lines_.lines()[line], before, after));
        else
            lines_.append(after.line());
        if (slot == slotOf(P::AngleSweep)) lines_.removeAll(slotOf(P::AngleEnd));
        const bool hasAxes = is_.contains(slotOf(P::MajorAxis)) && is_.contains(slotOf(P::MinorAxis));
        if (hasAxes && all_) lines_.removeAll(slotOf(P::Radius));
    }

    /// A box may be told the other way round.
    void turnBox_() {
        if (old_.size() != 4 || now_.size() != 4 || old_ == now_) return;
        const auto common = [this] {
            std::size_t count = 0;
            for (std::size_t i = 0; i < 4; ++i) count += same_(i, i) ? 1 : 0;
            return count;
        };
        const std::size_t asIs = common();
        std::swap(now_[1], now_[3]);
        if (common() <= asIs) std::swap(now_[1], now_[3]);
    }

    bool exactlySame_(std::size_t i, std::size_t j) const {
        return old_[i] == now_[j] && read_.isRelative() == after_.isRelative();
    }
    bool same_(std::size_t i, std::size_t j) const {
        if (read_.isRelative() != after_.isRelative()) return false;
        return old_[i] == now_[j] || pointField(read_, old_[i]) == pointField(read_, now_[j]);
    }

    void comparePoints_() {
        std::size_t i = 0;
        std::size_t j = 0;
        while (i < old_.size() || j < now_.size()) {
            if (i < old_.size() && j < now_.size() && same_(i, j)) {
                if (all_) replace_(i, j);
                ++i, ++j;
                continue;
            }
            const auto [gone, come] = nextCommon_(i, j);
            for (std::size_t k = 0; k < std::min(gone, come); ++k) replace_(i + k, j + k);
            for (std::size_t k = come; k < gone; ++k) lines_.remove(lineOf_[i + k]);
            for (std::size_t k = gone; k < come; ++k) insert_(i + gone, j + k);
            i += gone;
            j += come;
        }
    }

    /// How many points of each list come before the next one that both have.
    std::pair<std::size_t, std::size_t> nextCommon_(std::size_t i, std::size_t j) const {
        const std::size_t restOld = old_.size() - i;
        const std::size_t restNow = now_.size() - j;
        for (std::size_t both = 1; both < 2 * kWindow; ++both)
            for (std::size_t gone = 0; gone <= both; ++gone) {
                const std::size_t come = both - gone;
                if (gone < restOld && come < restNow && exactlySame_(i + gone, j + come)) return {gone, come};
            }
        if (restOld == 0 || restNow == 0) return {restOld, restNow};
        // None near: not looked for again from each of them.
        const std::size_t pairs = std::min({kWindow, restOld, restNow});
        return {pairs, pairs};
    }

    void replace_(std::size_t i, std::size_t j) {
        const ShapeField before = pointField(read_, old_[i]);
        const ShapeField after = pointField(after_, now_[j]);
        const bool known = read_.isRelative() == after_.isRelative();
        const auto& line = lines_.lines()[lineOf_[i]];
        lines_.replace(lineOf_[i], withValues(line, known && !all_ ? &before : nullptr, after));
    }

    /// A point in front of one of the old ones, or behind the last.
    void insert_(std::size_t i, std::size_t j) {
        ShapeField field = pointField(after_, now_[j]);
        const std::size_t neighbour = i > 0 ? i - 1 : i;
        if (lineOf_.empty()) {
            lines_.append(field.line());
            return;
        }
        const auto words = wordsOf(lines_.lines()[lineOf_[neighbour]].text);
        const bool sameKind = read_.isRelative() == after_.isRelative();
        const auto& keyword = *lines_.lines()[lineOf_[neighbour]].keyword;
        if (sameKind && keyword.action != KeywordAction::GridPoint) {
            field.keyword = words[0];
            if (words.size() == 3 && field.values[2] == "0") field.values.pop_back();
        }
        if (i > 0)
            lines_.insertBehind(lineOf_[neighbour], field.line());
        else
            lines_.insertBefore(lineOf_[neighbour], field.line());
    }

    BlockLines lines_;
    const ZelShape& read_;
    ZelShape& after_;
    bool all_;
    ShapeFields was_;
    ShapeFields is_;
    std::map<int, bool> forced_;
    std::set<std::size_t> dropped_;
    std::vector<std::size_t> lineOf_;
    std::vector<Vec3> old_;
    std::vector<Vec3> now_;
};

}  // namespace

std::optional<BlockPatch::Lines> BlockPatch::lines(Extent extent) const {
    const UnitsState units = read_.originalUnits();
    const BorrowedUnits beforeUnits(before_, units);
    const BorrowedUnits afterUnits(after_, units);
    Patch patch(block_, read_, before_, after_, untouched_, extent);
    if (!patch.points()) return std::nullopt;
    patch.fields();
    patch.otherPositions();
    return Lines{patch.lines().text(), untouched_.empty() ? std::string() : patch.lines().rest(),
                 patch.lost()};
}

std::string BlockPatch::drawn(bool drawn) const {
    BlockLines lines(block_, read_, untouched_.lines);
    drawn ? lines.removeAll(slotOf(P::Draw)) : lines.append("off");
    return lines.text();
}

}  // namespace halCore::ZEL
