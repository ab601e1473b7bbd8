#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "gui/TestEquipment.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "pi/PIWidgets.h"
#include "support/Rows.h"

using namespace OverlayEditor;

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

/// A panel at 10 N 20 E, 30 m, for each text; typed.txt says what becomes of it.
struct TypedTexts : ::testing::Test {
    TypedTexts() {
        converter.setReferenceLla(place, 1);
        halNotify::setNotifyHandler([this](auto, const std::string& text) { said += text; });
    }
    ~TypedTexts() override {
        shape.reset();
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    /// \param field its name, perhaps a unit of angles behind it, or "Point" for a line's
    std::string outcome(const std::string& field, const std::string& typed) {
        const auto parts = test::split(field, " in ");
        const auto unit =
            parts.size() > 1 ? UTILS::unitsGetTypeFromString(parts[1]) : UTILS::UnitType_t::Degrees;
        preferences.setAngleUnits(unit);
        const bool isMgrs = parts[0] == "GZD" || parts[0] == "Easting/Northing";
        preferences.setCoordinateSystem(isMgrs ? Preferences::MGRS : Preferences::LLA);
        PolygonShape* line = nullptr;
        if (parts[0] == "Point") {
            shape = std::make_unique<PolygonShape>(preferences, PolygonShape::Line);
            line = static_cast<PolygonShape*>(shape.get());
            line->addPoint(place);
        } else {
            auto made = std::make_unique<CylinderShape>(preferences, CylinderShape::Arc);
            made->setCenter(place);
            made->setInnerRadius(5.0);
            shape = std::move(made);
        }
        if (parts[0] == "X" || parts[0] == "Z") shape->setAttachedPlatformId(1, &converter, false);
        shape->createGui(&preferences, &canvas);
        const std::string label = line                ? "Lat:"
                                  : parts[0] == "Lon" ? "Lon: "
                                                      : (parts[0] == "Radius" ? "X " : "") + parts[0] + ":";
        const auto position = [&](const char* separator) {
            const auto fields = form.textFields();
            return fields[0].widget->text + separator + fields[1].widget->text + separator +
                   fields[2].widget->text;
        };
        const std::string before = position("; ");
        const std::string shown = form.field(label).text;
        said.clear();
        form.type(label, typed);
        std::string result = "= " + form.field(label).text;
        if (form.field(label).marked) {
            // The frame of every refusal is said once here, its reason in the table.
            const std::string name = label.substr(0, label.find(':'));
            const std::string quoted = isMgrs ? ": MGRS \"" : ": Invalid value \"";
            EXPECT_TRUE(said.starts_with(name + quoted)) << said;
            const std::size_t reason = said.find("\": ") + 3;
            const std::size_t end = said.find("; understood are ");
            EXPECT_TRUE(said.ends_with(
                "; still " +
                (isMgrs ? test::split(before, "; ")[0] + " " + test::split(before, "; ")[1] : shown)))
                << said;
            result = "! " + said.substr(reason, end - reason);
        } else if (line && line->points().size() != 1) {
            result = "@";
            for (const auto& point : line->points())
                result += " (" + preferences.unitsProvider()->formatLatitude(point.lat()) + " " +
                          preferences.unitsProvider()->formatLongitude(point.lon()) + ")";
        } else if (position("; ") != before) {
            const auto old = test::split(before, "; ");
            const auto now = test::split(position("; "), "; ");
            const bool isWhole = now[0] != old[0] && now[1] != old[1];
            if (isWhole || form.field(label).text == shown) result = "@ " + position("; ");
        }
        if (!form.field(label).marked && !said.empty()) result += " ~ " + said;
        shape.reset();
        return result;
    }

    const halCore::Vec3 place{10 * halCore::kRadiansPerDegree, 20 * halCore::kRadiansPerDegree, 30};
    FakeHost host;
    TestEquipment equipment;
    Preferences preferences;
    PointConverter converter;
    PIGUI::PICanvas canvas{nullptr};
    Form form{host};
    std::string said;
    std::unique_ptr<Shape> shape;
};

TEST_F(TypedTexts, AreTakenOrRefusedAsTheTableSays) {
    host.marks = true;
    std::string table;
    ASSERT_EQ(UTILS::readFile(OE_SOURCE_DIR "/tests/gui/typed.txt", table), "");
    int count = 0;
    for (const auto& row : test::rows(table, 3)) {
        std::string typed = row[1];
        for (const auto& [name, text] : {std::pair{"<nbsp>", "\u00A0"},
                                         {"<thin>", "\u202F"},
                                         {"<zero>", "\u200B"},
                                         {"<lf>", "\n"},
                                         {"<line>", "\u2028"},
                                         {"<tab>", "\t"}})
            typed = replaced(typed, name, text);
        const std::string found = outcome(row[0], typed);
        if (std::getenv("TYPED_PRINT")) std::cout << row[0] << " | " << row[1] << " | " << found << '\n';
        EXPECT_EQ(found, row[2]) << row[0] << ": " << row[1];
        ++count;
    }
    EXPECT_GE(count, 270);
}

}  // namespace
