#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "geo/Units.h"

namespace halCore {

/// Finds units by name or abbreviation, matched exactly ("k" is kelvin, "kHz" kilohertz). The predefined
/// units are looked up in tables made at compile time, so a registry that holds them costs nothing to
/// make. A unit registered later wins over an earlier one of the same name or abbreviation.
class UnitsRegistry {
  public:
    /// Registers every predefined unit, family by family. Calling it again changes nothing.
    void registerDefaultUnits();
    /// Registers one more unit; an invalid one is ignored.
    void registerUnits(const Units& units);

    /// All units of a family, in the order of their registration; empty for an unknown family.
    std::vector<Units> units(std::string_view family) const;
    /// The families that have a unit, in the order of their first registration.
    std::vector<std::string> families() const;

    /// The unit, or an invalid one.
    Units unitsByName(std::string_view name) const;
    Units unitsByAbbreviation(std::string_view abbreviation) const;
    /// The same into `out`. Returns 0 when found; otherwise non-zero, and `out` is an invalid unit.
    int unitsByName(std::string_view name, Units& out) const;
    int unitsByAbbreviation(std::string_view abbreviation, Units& out) const;

  private:
    using Index = std::unordered_map<std::string_view, std::size_t>;

    /// Calls `visit` with every unit, in the order of registration.
    template <typename Visit>
    void visit_(Visit visit) const;
    Units find_(const Index& added, const Units* predefined, std::string_view text) const;

    bool hasDefaults_ = false;
    /// How many of `added_` were there before the defaults.
    std::size_t addedBeforeDefaults_ = 0;
    std::vector<Units> added_;
    /// Position in `added_`; the keys view the texts of the units there, which do not move.
    Index addedByName_;
    Index addedByAbbreviation_;
};

}  // namespace halCore
