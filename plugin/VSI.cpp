#include "plugin/VSI.h"

#include <string_view>

namespace VSI {

namespace {

/// "2026-11-21" of the compiler's "Nov 21 2026", in which a day below 10 starts with a blank.
std::string isoDate(std::string_view date) {
    constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const std::size_t month = kMonths.find(date.substr(0, 3)) / 3 + 1;
    std::string iso(date.substr(7));
    iso += month < 10 ? "-0" : "-";
    iso += std::to_string(month);
    iso += '-';
    iso += date[4] == ' ' ? '0' : date[4];
    iso += date[5];
    return iso;
}

}  // namespace

std::string makerName() {
    return "the OverlayEditor authors";
}

std::string webAddress() {
    return "https://overlayeditor.example";
}

std::string contact() {
    return "maintainers@overlayeditor.example";
}

std::string version() {
    return OE_VERSION " (" + isoDate(__DATE__) + ")";
}

}  // namespace VSI
