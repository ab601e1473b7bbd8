#include <string>

#include <gtest/gtest.h>

#include "common/Files.h"
#include "gui/TypedField.h"
#include "support/Rows.h"

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

struct TypedTexts : ::testing::Test, TypedField {
    /// \param name the field's, perhaps a unit of angles behind it
    std::string outcome(const std::string& name, const std::string& typed) {
        const auto parts = test::split(name, " in ");
        preferences.setAngleUnits(parts.size() > 1 ? UTILS::unitsGetTypeFromString(parts[1])
                                                   : UTILS::UnitType_t::Degrees);
        open(parts[0]);
        type(typed);
        if (refused())
            return "! " + reason().value_or("without a message: " + testing::PrintToString(messages));
        std::string result = "= " + text();
        const auto now = position();
        const bool isWhole = now[0] != before[0] && now[1] != before[1];
        if (line && line->points().size() != 1) {
            result = "@";
            for (const auto& point : line->points())
                result += " (" + preferences.unitsProvider()->formatLatitude(point.lat()) + " " +
                          preferences.unitsProvider()->formatLongitude(point.lon()) + ")";
        } else if (isWhole || (now != before && text() == shown)) {
            result = "@ " + now[0] + "; " + now[1] + "; " + now[2];
        }
        for (const std::string& message : messages) result += " ~ " + message;
        return result;
    }
};

TEST_F(TypedTexts, AreTakenOrRefusedAsTheTableSays) {
    std::string table;
    ASSERT_EQ(UTILS::readFile(OE_SOURCE_DIR "/tests/gui/typed.txt", table), "");
    int count = 0;
    for (const auto& row : test::rows(table, 3))
        for (std::string typed : test::split(row[1], " or ")) {
            for (const auto& [name, text] : {std::pair{"<nbsp>", "\u00A0"},
                                             {"<thin>", "\u202F"},
                                             {"<zero>", "\u200B"},
                                             {"<lf>", "\n"},
                                             {"<line>", "\u2028"},
                                             {"<tab>", "\t"}})
                typed = replaced(typed, name, text);
            EXPECT_EQ(outcome(row[0], typed), row[2]) << row[0] << ": " << typed;
            ++count;
        }
    EXPECT_GE(count, 430);
}

}  // namespace
