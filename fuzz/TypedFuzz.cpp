// Any text in any field of a panel, in any unit and precision, told by the first three bytes. What is taken
// is shown as a text that is taken in its place, and shown as the same again; what is refused changes
// nothing, is named in one message with its reason, and the text that one is told to type instead is taken.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "geo/Sodano.h"
#include "geo/UnitTypes.h"
#include "gui/TypedField.h"
#include "model/ShapeWriter.h"

namespace {

constexpr std::array kFields = {"Lat", "Lon", "Alt", "Radius", "Start Angle",      "End Angle",
                                "X",   "Y",   "Z",   "GZD",    "Easting/Northing", "Point"};

void require(bool condition, std::string_view what, TypedField& field, const std::string& typed) {
    if (condition) return;
    std::cerr << what << ": \"" << typed << "\" in " << field.label << " of " << field.shown << " gives";
    for (const std::string& text : field.position()) std::cerr << " \"" << text << '"';
    for (const std::string& message : field.messages) std::cerr << "\n" << message;
    std::cerr << '\n';
    std::abort();
}

/// What a reason tells to type instead.
std::vector<std::string> advised(const std::string& reason) {
    std::vector<std::string> texts;
    for (const std::string_view front : {"type \"", "decimals: \"", "turn: \""}) {
        const std::size_t at = reason.find(front);
        if (at == std::string::npos || reason.find("...") != std::string::npos) continue;
        const std::string quoted = reason.substr(at + front.size(), reason.rfind('"') - at - front.size());
        const std::size_t other = quoted.find("\" or \"");
        texts.push_back(quoted.substr(0, other));
        if (other != std::string::npos) texts.push_back(quoted.substr(other + 6));
    }
    return texts;
}

std::string saved(TypedField& field) {
    return OverlayEditor::shapesText(field.shapes, &field.converter);
}

void expectTheSameAgain(TypedField& field, const std::string& name, const std::string& typed) {
    const std::string own = field.text();
    // Of a small one no digit may be left, and a direction may be rounded up to a full turn.
    const auto& units = *field.preferences.unitsProvider();
    if (name == "Radius" && own.find_first_of("123456789") == std::string::npos) return;
    if (own == units.formatAngle(halCore::kTwoPi)) return;
    const auto position = field.position();
    const halCore::Vec3 place = field.place();
    field.open(name);
    const auto fields = field.form.textFields();
    if (field.isMgrs) {
        fields[0].widget->text = position[0];
        field.host.type(*fields[1].widget, position[1]);
        field.host.type(*fields[2].widget, position[2]);
    } else {
        // A parallel is shorter near a pole: north first, which is the second of the offsets.
        for (const std::size_t i : {1, 0, 2}) field.host.type(*fields[i].widget, position[i]);
        field.type(own);
    }
    if (field.isMgrs) {
        // The corner of its square may lie in the zone beside it.
        constexpr double diagonal = 1.5;
        const double apart = halCore::Sodano::inverse(place, field.place()).distance;
        require(field.messages.empty() && apart < diagonal, "Its own form is elsewhere: " + own, field,
                typed);
        return;
    }
    // Half way round its parallel the last digit may lead beyond.
    if (!field.messages.empty() && field.messages[0].find("no place") != std::string::npos) return;
    require(field.messages.empty() && field.position() == position && field.text() == own,
            "Its own form is another: " + own, field, typed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const std::string name = kFields[data[0] % kFields.size()];
    const std::string typed(reinterpret_cast<const char*>(data) + 3, size - 3);
    TypedField field;
    const auto of = [&](auto units) { return units[data[1] % units.size()]; };
    field.preferences.setRangeUnits(of(UTILS::lengthUnitTypes()));
    field.preferences.setAltitudeUnits(of(UTILS::lengthUnitTypes()));
    field.preferences.setAngleUnits(of(UTILS::angleUnitTypes()));
    field.preferences.setGeodeticUnits(of(UTILS::geodeticUnitTypes()));
    field.preferences.setPrecision(data[2] % 13);
    field.open(name);
    const std::string before = saved(field);
    field.type(typed);
    if (!field.refused()) {
        if (!field.line) expectTheSameAgain(field, name, typed);
        return 0;
    }
    const auto reason = field.reason();
    require(reason && !reason->empty(), "No reason", field, typed);
    require(saved(field) == before, "Refused, and changed", field, typed);
    for (const std::string& other : advised(*reason)) {
        field.open(name);
        field.type(other);
        const std::string again = field.refused() ? field.reason().value_or("?") : "beyond";
        const bool isNumber =
            std::ranges::any_of(std::array{"beyond", "reaches", "greater", "no place"},
                                [&](const char* limit) { return again.find(limit) != std::string::npos; });
        require(isNumber, "Advised after \"" + typed + "\"", field, other);
    }
    return 0;
}
