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

/// FNV-1a.
constexpr std::uint32_t hashOf(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash;
}

/// Finds a predefined unit by one of its texts: a hash table made at compile time.
class Table {
  public:
    constexpr explicit Table(std::string_view Texts::*text) : text_(text) {
        slots_.fill(kFree);
        for (std::size_t i = 0; i < kTexts.size(); ++i) {
            std::size_t slot = first(kTexts[i].*text);
            for (; slots_[slot] != kFree; slot = next(slot))
                isUnique_ = isUnique_ && kTexts[slots_[slot]].*text != kTexts[i].*text;
            slots_[slot] = static_cast<std::uint8_t>(i);
        }
    }
    constexpr bool isUnique() const { return isUnique_; }

    /// The unit, or null.
    const Units* find(std::string_view wanted) const {
        for (std::size_t slot = first(wanted); slots_[slot] != kFree; slot = next(slot))
            if (kTexts[slots_[slot]].*text_ == wanted) return kUnits[slots_[slot]];
        return nullptr;
    }

  private:
    static constexpr std::size_t kSlots = 256;
    static constexpr std::uint8_t kFree = 255;
    static_assert(kTexts.size() < kFree / 2);

    static constexpr std::size_t first(std::string_view text) { return hashOf(text) % kSlots; }
    static constexpr std::size_t next(std::size_t slot) { return (slot + 1) % kSlots; }

    std::string_view Texts::*text_;
    std::array<std::uint8_t, kSlots> slots_{};
    bool isUnique_ = true;
};

constexpr Table kByName(&Texts::name);
constexpr Table kByAbbreviation(&Texts::abbreviation);
static_assert(kByName.isUnique() && kByAbbreviation.isUnique());

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
    return find_(addedByName_, kByName.find(name), name);
}

Units UnitsRegistry::unitsByAbbreviation(std::string_view abbreviation) const {
    return find_(addedByAbbreviation_, kByAbbreviation.find(abbreviation), abbreviation);
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
