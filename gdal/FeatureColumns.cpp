#include "gdal/FeatureColumns.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <span>

#include <cpl_conv.h>
#include <cpl_string.h>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "gdal/ColorText.h"
#include "gdal/Describe.h"
#include "gdal/Track.h"

namespace exchange {

namespace ZEL = halCore::ZEL;
using halCore::kRadiansPerDegree;
using halCore::Vec3;

namespace {

constexpr double kRadian = halCore::kDegreesPerRadian;

/// A value that is shown in its unit: only angles are converted.
double shown(double value, double unit) {
    return unit == 1.0 ? value : degreesOf(value);
}

class ToFeature {
  public:
    ToFeature(const ColumnIndex& index, OGRFeature& feature) : index_(index), feature_(feature) {}

    void real(Column column, const auto& shape, auto get, auto, double unit = 1.0) {
        double value = 0.0;
        if (wants(column) && std::invoke(get, shape, value) == 0) put(column, shown(value, unit));
    }
    void whole(Column column, const auto& shape, auto get, auto) {
        int value = 0;
        if (wants(column) && std::invoke(get, shape, value) == 0) feature_.SetField(index_[column], value);
    }
    void truth(Column column, const auto& shape, auto get, auto) {
        bool value = false;
        if (wants(column) && std::invoke(get, shape, value) == 0)
            feature_.SetField(index_[column], value ? 1 : 0);
    }
    void text(Column column, const auto& shape, auto get, auto) {
        std::string value;
        if (wants(column) && std::invoke(get, shape, value) == 0 && !value.empty())
            feature_.SetField(index_[column], utf8(value).c_str());
    }
    void color(Column column, const auto& shape, auto get, auto) {
        ZEL::Color value;
        if (wants(column) && std::invoke(get, shape, value) == 0)
            feature_.SetField(index_[column], textOfColor(value).c_str());
    }
    template <typename Shape, typename Class, typename Enum, typename Set>
    void word(Column column, const Shape& shape, int (Class::*get)(Enum&) const, Set,
              std::span<const std::string_view> words) {
        Enum value{};
        if (wants(column) && (shape.*get)(value) == 0)
            feature_.SetField(index_[column], words[static_cast<std::size_t>(value)].data());
    }
    void vector(Column column, const auto& shape, auto get, auto, bool geodetic) {
        Vec3 value;
        if (!wants(column) || std::invoke(get, shape, value) != 0) return;
        put(column, shown(value.x(), geodetic ? kRadian : 1.0));
        put(next(column), shown(value.y(), geodetic ? kRadian : 1.0));
        put(next(column, 2), value.z());
    }

  private:
    bool wants(Column column) const { return index_[column] >= 0; }
    void put(Column column, double value) { feature_.SetField(index_[column], value); }

    const ColumnIndex& index_;
    OGRFeature& feature_;
};

class FromFeature {
  public:
    FromFeature(const OGRFeature& feature, const ColumnIndex& index, const Note& note)
        : feature_(feature), index_(index), note_(note) {}

    void real(Column column, auto& shape, auto, auto set, double unit = 1.0) {
        if (const auto value = number(column))
            std::invoke(set, shape, unit == 1.0 ? *value : radians(*value));
    }
    void whole(Column column, auto& shape, auto, auto set) {
        const auto value = number(column);
        if (value && std::abs(*value) <= std::numeric_limits<int>::max())
            std::invoke(set, shape, static_cast<int>(std::lround(*value)));
    }
    void truth(Column column, auto& shape, auto, auto set) {
        if (const auto value = truthIn(feature_, index_, column)) std::invoke(set, shape, *value);
    }
    void text(Column column, auto& shape, auto, auto set) {
        if (const auto value = textIn(feature_, index_, column)) std::invoke(set, shape, *value);
    }
    void color(Column column, auto& shape, auto, auto set) {
        const auto text = textIn(feature_, index_, column);
        const auto value = text ? colorOfText(*text) : std::nullopt;
        if (value) std::invoke(set, shape, *value);
        if (text && !value) unread(column, *text, "no colour, as #rrggbb or #rrggbbaa");
    }
    template <typename Shape, typename Class, typename Enum, typename Set>
    void word(Column column, Shape& shape, int (Class::*)(Enum&) const, Set set,
              std::span<const std::string_view> words) {
        const auto text = textIn(feature_, index_, column);
        if (!text) return;
        const auto found = std::ranges::find(words, UTILS::lowerCase(*text));
        if (found != words.end())
            std::invoke(set, shape, static_cast<Enum>(found - words.begin()));
        else
            unread(column, *text, "not known");
    }
    void vector(Column column, auto& shape, auto, auto set, bool geodetic) {
        const auto x = number(column);
        const auto y = number(next(column));
        if (!x || !y || (geodetic && std::abs(*x) > 90.0)) return;
        const double z = number(next(column, 2)).value_or(0.0);
        std::invoke(set, shape, geodetic ? Vec3(radians(*x), radians(*y), z) : Vec3(*x, *y, z));
    }

  private:
    std::optional<double> number(Column column) const {
        const auto value = numberIn(feature_, index_, column);
        if (const auto text = value ? std::nullopt : textIn(feature_, index_, column))
            unread(column, *text, "no number");
        return value;
    }
    void unread(Column column, const std::string& text, const char* why) const {
        note_(std::string(infoOf(column).name) + " \"" + UTILS::excerpt(text) + "\" is " + why);
    }
    static double radians(double degrees) { return degrees * kRadiansPerDegree; }

    const OGRFeature& feature_;
    const ColumnIndex& index_;
    const Note& note_;
};

}  // namespace

void putColumns(const ZEL::ZelShape& shape, const ColumnIndex& index, OGRFeature& feature) {
    ToFeature archive(index, feature);
    describe(shape, archive);
}

void takeColumns(const OGRFeature& feature, const ColumnIndex& index, ZEL::ZelShape& shape,
                 const Note& note) {
    FromFeature archive(feature, index, note);
    describe(shape, archive);
}

std::optional<std::string> textIn(const OGRFeature& feature, const ColumnIndex& index, Column column) {
    const int field = index[column];
    if (field < 0 || !feature.IsFieldSetAndNotNull(field)) return std::nullopt;
    std::string text = feature.GetFieldAsString(field);
    if (text.empty()) return std::nullopt;
    return text;
}

std::optional<double> numberIn(const OGRFeature& feature, const ColumnIndex& index, Column column) {
    const int field = index[column];
    if (field < 0 || !feature.IsFieldSetAndNotNull(field)) return std::nullopt;
    if (feature.GetFieldDefnRef(field)->GetType() == OFTString)
        return UTILS::readNumber(feature.GetFieldAsString(field));
    const double value = feature.GetFieldAsDouble(field);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<bool> truthIn(const OGRFeature& feature, const ColumnIndex& index, Column column) {
    const std::optional<std::string> text = textIn(feature, index, column);
    if (!text) return std::nullopt;
    const std::optional<double> number = UTILS::readNumber(*text);
    return number ? *number != 0.0 : UTILS::stringIsTrueToken(*text);
}

std::string textOfPoints(const std::vector<Vec3>& points, bool geodetic) {
    std::string text = "(";
    const auto add = [&text](double value, char after) {
        text.append(UTILS::writeNumber(value, 17)) += after;
    };
    for (const Vec3& point : points) {
        add(geodetic ? degreesOf(point.x()) : point.x(), ' ');
        add(geodetic ? degreesOf(point.y()) : point.y(), ' ');
        add(point.z(), ',');
    }
    if (!points.empty()) text.pop_back();
    return text += ')';
}

std::vector<Vec3> pointsOfText(std::string_view text, bool geodetic) {
    std::vector<Vec3> points;
    text = UTILS::trimmed(text);
    if (text.size() < 2 || text.front() != '(' || text.back() != ')') return points;
    text = text.substr(1, text.size() - 2);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        std::string_view part = UTILS::trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        std::array<double, 3> values{};
        for (double& value : values) {
            const std::size_t length = std::min(part.find(' '), part.size());
            const std::optional<double> number = UTILS::readNumber(part.substr(0, length));
            if (!number) return {};
            value = *number;
            part = UTILS::trimmed(part.substr(length));
        }
        const double unit = geodetic ? kRadiansPerDegree : 1.0;
        points.emplace_back(values[0] * unit, values[1] * unit, values[2]);
    }
    return points;
}

std::string utf8(const std::string& text) {
    std::string clean = text;
    std::erase(clean, '\0');
    if (CPLIsUTF8(clean.c_str(), -1)) return clean;
    char* const recoded = CPLRecode(clean.c_str(), CPL_ENC_ISO8859_1, CPL_ENC_UTF8);
    clean = recoded;
    CPLFree(recoded);
    return clean;
}

}  // namespace exchange
