#include "gui/MgrsEditGUI.h"

#include <algorithm>
#include <string_view>

#include "common/Strings.h"
#include "geo/MgrsConvert.h"
#include "geo/TypedText.h"

namespace OverlayEditor {

namespace {

/// With blanks for the commas and slashes between the parts.
std::string withBlanks(std::string_view typed) {
    std::string text = UTILS::plainText(typed);
    std::ranges::replace_if(
        text, [](char c) { return c == ',' || c == '/' || c == '\t'; }, ' ');
    return text;
}

/// Easting and northing of a field such as "12345 67890" or "1234567890".
void splitNumbers(std::string_view text, std::string& easting, std::string& northing) {
    text = UTILS::trimmed(text);
    const auto gap = text.find(' ');
    const auto middle = gap == std::string_view::npos ? (text.size() + 1) / 2 : gap;
    easting = text.substr(0, middle);
    std::string_view rest = text.substr(middle);
    northing = UTILS::trimmed(rest);
}

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

MgrsEditGUI::MgrsEditGUI(PanelBody& panel)
    : square_(panel, *this, "GZD:\tGrid zone and 100km square", ""),
      numbers_(panel, *this, "Easting/Northing:\tMGRS Easting and Northing components", "m"),
      alt_(panel, "Alt:\tAltitude in specified units", ValueUnitEntry::Quantity::Altitude) {}

void MgrsEditGUI::setPosition(const PlacedPoint& point) {
    const Texts before = reference_(position_);
    if (point.place.lat() != position_.lat() || point.place.lon() != position_.lon()) given_ = point.place;
    position_ = point.place;
    referenceEdited_ = false;
    alt_.setValue(position_.alt());
    if (!isRefused_() || reference_(position_) != before) showReference_();
}

std::optional<PlacedPoint> MgrsEditGUI::edited() const {
    if (!referenceEdited_ && !alt_.edited()) return std::nullopt;
    return PlacedPoint(halCore::Vec3(position_.lat(), position_.lon(), alt_.value()));
}

MgrsEditGUI::Texts MgrsEditGUI::reference_(const halCore::Vec3& place) {
    std::string mgrs, gzd, square, easting, northing;
    if (UTILS::MgrsConvert::geodeticToMgrs(place.lat(), place.lon(), mgrs) != 0 ||
        UTILS::MgrsConvert::divideMgrs(mgrs, gzd, square, easting, northing) != 0)
        return {};
    return {gzd + " " + square, easting + " " + northing};
}

void MgrsEditGUI::showReference_() {
    const Texts shown = reference_(position_);
    square_.refused().forget();
    numbers_.refused().forget();
    square_.setText(shown.square);
    numbers_.setText(shown.numbers);
}

bool MgrsEditGUI::takeReference_(TextRow& edited) {
    const Texts typed{square_.text(), numbers_.text()};
    if (typed == reference_(position_) || edited.refused().is(edited.text())) {
        showReference_();
        return false;
    }
    halCore::Vec3 lla(position_.lat(), position_.lon(), alt_.value());
    const std::string error = read_(typed, lla);
    // Whole numbers in the second field are easting and northing, whatever is wrong with them.
    const auto pairs = &edited == &numbers_ ? UTILS::PlainPairs::Decimals : UTILS::PlainPairs::All;
    std::string reason;
    if (!error.empty() && taker_ && taker_(edited.text(), {pairs}, reason)) {
        edited.refused().forget();
        return true;
    }
    if (error.empty()) {
        const halCore::Vec3 given = given_;
        if (typed == reference_(given)) lla = {given.lat(), given.lon(), lla.alt()};
        setPosition(PlacedPoint(lla));
        given_ = given;
    } else {
        const Texts shown = reference_(position_);
        std::string message = edited.name() + ": MGRS \"";
        message.append(UTILS::excerpt(typed.square + " " + typed.numbers)).append("\": ").append(error);
        message.append("; understood are \"4Q FJ\" and \"12345 67890\"; still ");
        message.append(shown.square).append(" ").append(shown.numbers);
        if (edited.refused().refuse(edited.text(), message)) return false;
    }
    showReference_();
    referenceEdited_ = referenceEdited_ || error.empty();
    return error.empty();
}

void MgrsEditGUI::setTaker(const Taker& taker) {
    taker_ = taker;
    alt_.setTaker([taker](const std::string& text, std::string& reason) { return taker(text, {}, reason); });
}

std::string MgrsEditGUI::read_(const Texts& fields, halCore::Vec3& lla) {
    const Texts typed{withBlanks(fields.square), withBlanks(fields.numbers)};
    std::string error, gzd, squareId, easting, northing, mgrs;
    // With letters the second field holds a whole reference, and the first is what it was before.
    const bool whole = std::ranges::any_of(typed.numbers, isLetter);
    if (UTILS::MgrsConvert::divideMgrs(whole ? typed.numbers : typed.square, gzd, squareId, easting, northing,
                                       &error) != 0)
        return error;
    // With its digits so does the first one.
    if (easting.empty()) splitNumbers(whole ? "" : typed.numbers, easting, northing);
    if (easting.empty()) return "easting and northing are missing";
    double lat = 0.0;
    double lon = 0.0;
    if (UTILS::MgrsConvert::combineMgrs(gzd, squareId, easting, northing, mgrs, &error) != 0 ||
        UTILS::MgrsConvert::mgrsToGeodetic(mgrs, lat, lon, &error) != 0)
        return error.empty() ? "no such place" : error;
    lla.setLat(lat);
    lla.setLon(lon);
    return {};
}

}  // namespace OverlayEditor
