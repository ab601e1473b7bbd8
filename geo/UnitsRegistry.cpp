#include "geo/UnitsRegistry.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace halCore {
namespace {

struct Texts {
    std::string_view name;
    std::string_view abbreviation;
    std::string_view family;
};

constexpr std::array kTexts = {
#define UNIT(constant, family, abbreviation, name, offset, scale) Texts{name, abbreviation, family},
#include "geo/UnitsTable.def"
#undef UNIT
};

constexpr std::array kUnits = {
#define UNIT(constant, family, abbreviation, name, offset, scale) &Units::constant,
#include "geo/UnitsTable.def"
#undef UNIT
};

using Order = std::array<std::uint8_t, kTexts.size()>;

constexpr Order sortedBy(std::string_view Texts::*text) {
    Order order{};
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint8_t>(i);
    std::sort(order.begin(), order.end(),
              [text](std::uint8_t a, std::uint8_t b) { return kTexts[a].*text < kTexts[b].*text; });
    return order;
}

constexpr bool isUnique(const Order& order, std::string_view Texts::*text) {
    return std::adjacent_find(order.begin(), order.end(), [text](std::uint8_t a, std::uint8_t b) {
               return kTexts[a].*text == kTexts[b].*text;
           }) == order.end();
}

constexpr Order kByName = sortedBy(&Texts::name);
constexpr Order kByAbbreviation = sortedBy(&Texts::abbreviation);
static_assert(isUnique(kByName, &Texts::name));
static_assert(isUnique(kByAbbreviation, &Texts::abbreviation));

/// The predefined unit, or null.
const Units* findPredefined(const Order& order, std::string_view Texts::*text, std::string_view wanted) {
    const auto found =
        std::lower_bound(order.begin(), order.end(), wanted,
                         [text](std::uint8_t i, std::string_view value) { return kTexts[i].*text < value; });
    return found != order.end() && kTexts[*found].*text == wanted ? kUnits[*found] : nullptr;
}

}  // namespace

void UnitsRegistry::registerDefaultUnits() {
    if (hasDefaults_) return;
    hasDefaults_ = true;
    addedBeforeDefaults_ = added_.size();
}

void UnitsRegistry::registerUnits(const Units& units) {
    if (!units.isValid()) return;
    added_.push_back(units);
    addedByName_[added_.back().name()] = added_.size() - 1;
    addedByAbbreviation_[added_.back().abbreviation()] = added_.size() - 1;
}

template <typename Visit>
void UnitsRegistry::visit_(Visit visit) const {
    std::size_t i = 0;
    if (hasDefaults_) {
        for (; i < addedBeforeDefaults_; ++i) visit(added_[i]);
        for (const Units* unit : kUnits) visit(*unit);
    }
    for (; i < added_.size(); ++i) visit(added_[i]);
}

std::vector<Units> UnitsRegistry::units(std::string_view family) const {
    std::vector<Units> result;
    visit_([&](const Units& unit) {
        if (unit.family() == family) result.push_back(unit);
    });
    return result;
}

std::vector<std::string> UnitsRegistry::families() const {
    std::vector<std::string> result;
    visit_([&](const Units& unit) {
        if (std::find(result.begin(), result.end(), unit.family()) == result.end())
            result.emplace_back(unit.family());
    });
    return result;
}

Units UnitsRegistry::find_(const Index& added, const Units* predefined, std::string_view text) const {
    const auto found = added.find(text);
    const bool isAdded = found != added.end();
    if (isAdded && (!hasDefaults_ || !predefined || found->second >= addedBeforeDefaults_))
        return added_[found->second];
    return hasDefaults_ && predefined ? *predefined : Units();
}

Units UnitsRegistry::unitsByName(std::string_view name) const {
    return find_(addedByName_, findPredefined(kByName, &Texts::name, name), name);
}

Units UnitsRegistry::unitsByAbbreviation(std::string_view abbreviation) const {
    return find_(addedByAbbreviation_, findPredefined(kByAbbreviation, &Texts::abbreviation, abbreviation),
                 abbreviation);
}

int UnitsRegistry::unitsByName(std::string_view name, Units& out) const {
    out = unitsByName(name);
    return out.isValid() ? 0 : 1;
}

int UnitsRegistry::unitsByAbbreviation(std::string_view abbreviation, Units& out) const {
    out = unitsByAbbreviation(abbreviation);
    return out.isValid() ? 0 : 1;
}

}  // namespace halCore
