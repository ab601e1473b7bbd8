#include "gui/MgrsEditGUI.h"

#include <algorithm>
#include <string_view>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/MgrsConvert.h"
#include "gui/CallChange.h"

namespace OverlayEditor {

namespace {

/// Easting and northing of a field such as "12345 67890", "12345/67890" or "1234567890".
void splitNumbers(std::string_view text, std::string& easting, std::string& northing) {
    text = UTILS::trimmed(text);
    const auto gap = text.find_first_of(" \t/");
    const auto middle = gap == std::string_view::npos ? (text.size() + 1) / 2 : gap;
    easting = text.substr(0, middle);
    std::string_view rest = text.substr(middle);
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t/"), rest.size()));
    northing = rest;
}

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

MgrsEditGUI::MgrsEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : change_(change),
      squareCaption_(&table, "GZD:\tGrid zone and 100km square"),
      square_(&table, PIGUI::PITextFieldNormal, callbacks_.make(&MgrsEditGUI::onCmdEdit)),
      squareUnit_(&table, ""),
      numbersCaption_(&table, "Easting/Northing:\tMGRS Easting and Northing components"),
      numbers_(&table, PIGUI::PITextFieldNormal, callbacks_.make(&MgrsEditGUI::onCmdEdit)),
      numbersUnit_(&table, "m"),
      alt_(table, "Alt:\tAltitude in specified units", ValueUnitEntry::Quantity::Altitude, preferences,
           change) {}

void MgrsEditGUI::setPosition(const halCore::Vec3& lla) {
    position_ = lla;
    referenceEdited_ = false;
    alt_.setValue(lla.alt());

    const std::string square = shownSquare_;
    const std::string numbers = shownNumbers_;
    std::string mgrs, gzd, squareId, easting, northing;
    if (UTILS::MgrsConvert::geodeticToMgrs(lla.lat(), lla.lon(), mgrs) == 0 &&
        UTILS::MgrsConvert::divideMgrs(mgrs, gzd, squareId, easting, northing) == 0) {
        shownSquare_ = gzd + " " + squareId;
        shownNumbers_ = easting + " " + northing;
    } else {
        shownSquare_.clear();
        shownNumbers_.clear();
    }
    // Texts that stay the same are left alone: the user may be typing in the fields.
    if (square != shownSquare_ || numbers != shownNumbers_) showReference_();
}

std::optional<halCore::Vec3> MgrsEditGUI::edited() const {
    const auto alt = alt_.edited();
    if (!referenceEdited_ && !alt) return std::nullopt;
    return halCore::Vec3(position_.lat(), position_.lon(), alt.value_or(position_.alt()));
}

void MgrsEditGUI::notifyPrefsUpdate() {
    alt_.notifyPrefsUpdate();
}

void MgrsEditGUI::setEnabled(bool enabled) {
    square_.setEnabled(enabled);
    numbers_.setEnabled(enabled);
    alt_.setEnabled(enabled);
}

void MgrsEditGUI::setShown(bool shown) {
    for (PIGUI::PIWindow* cell : std::initializer_list<PIGUI::PIWindow*>{
             &squareCaption_, &square_, &squareUnit_, &numbersCaption_, &numbers_, &numbersUnit_})
        shown ? cell->show() : cell->hide();
    alt_.setShown(shown);
}

int MgrsEditGUI::onCmdEdit(PIObject*, void*) {
    const std::string square = square_.getValueText();
    const std::string numbers = numbers_.getValueText();
    if (square == shownSquare_ && numbers == shownNumbers_) return 1;
    halCore::Vec3 lla = edited().value_or(position_);
    if (const std::string error = read_(square, numbers, lla); !error.empty()) {
        halNotify::notify(halNotify::Warning) << "MGRS \"" << square << " " << numbers << "\": " << error;
        showReference_();
        return 1;
    }
    setPosition(lla);
    showReference_();
    referenceEdited_ = true;
    call(change_);
    return 1;
}

std::string MgrsEditGUI::read_(const std::string& square, const std::string& numbers,
                               halCore::Vec3& lla) const {
    std::string error, gzd, squareId, easting, northing, mgrs;
    // With letters the second field holds a whole reference, and the first is what it was before.
    const bool whole = std::any_of(numbers.begin(), numbers.end(), isLetter);
    if (UTILS::MgrsConvert::divideMgrs(whole ? numbers : square, gzd, squareId, easting, northing, &error) !=
        0)
        return error;
    // With its digits so does the first one.
    if (easting.empty()) splitNumbers(whole ? "" : numbers, easting, northing);
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

void MgrsEditGUI::showReference_() {
    square_.setValue(shownSquare_);
    numbers_.setValue(shownNumbers_);
}

}  // namespace OverlayEditor
