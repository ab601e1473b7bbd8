#include "sandbox/scenario/PlatformFile.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/Angles.h"

namespace sandbox {

using halCore::kRadiansPerDegree;

namespace {

using PIData::PIDataPoint;

enum Column { Time, Name, Latitude, Longitude, Altitude, Heading, Speed, Icon, Overlay, kColumnCount };

constexpr std::pair<std::string_view, Column> kColumnNames[] = {
    {"time", Time},           {"name", Name},      {"latitude", Latitude}, {"lat", Latitude},
    {"longitude", Longitude}, {"lon", Longitude},  {"altitude", Altitude}, {"alt", Altitude},
    {"heading", Heading},     {"course", Heading}, {"speed", Speed},       {"icon", Icon},
    {"overlay", Overlay},
};
constexpr Column kNeeded[] = {Time, Name, Latitude, Longitude};

std::string_view nameOf(Column column) {
    for (const auto& [name, which] : kColumnNames)
        if (which == column) return name;
    return {};
}

/// The fields of a row without the white space and quotes around them; nothing when a quote is not closed.
std::optional<std::vector<std::string>> fieldsOf(std::string_view row, char separator) {
    std::vector<std::string> fields;
    std::size_t at = 0;
    while (true) {
        while (at < row.size() && UTILS::isBlank(row[at])) ++at;
        std::string field;
        if (at < row.size() && row[at] == '"') {
            for (++at; at < row.size(); ++at) {
                if (row[at] != '"') {
                    field += row[at];
                } else if (at + 1 < row.size() && row[at + 1] == '"') {
                    field += row[at++];
                } else {
                    break;
                }
            }
            if (at++ == row.size()) return std::nullopt;
        }
        const std::size_t end = std::min(row.find(separator, at), row.size());
        field += UTILS::trimmed(row.substr(std::min(at, end), end - std::min(at, end)));
        fields.push_back(std::move(field));
        if (end == row.size()) return fields;
        at = end + 1;
    }
}

/// Seconds since 1970 of the form that most files have, "2026-11-22T10:00:00.5Z"; nothing for others.
std::optional<double> plainTime(std::string_view text) {
    if (text.ends_with('Z')) text.remove_suffix(1);
    constexpr std::string_view kForm = "0000-00-00T00:00:00";
    if (text.size() < kForm.size()) return std::nullopt;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i >= kForm.size() ? (i > kForm.size() ? !isDigit(text[i]) : text[i] != '.')
            : kForm[i] == '0' ? !isDigit(text[i])
                              : text[i] != kForm[i])
            return std::nullopt;
    }
    // Milliseconds, as Qt reads them.
    if (text.size() != kForm.size() && text.size() != kForm.size() + 4) return std::nullopt;
    const auto number = [&](std::size_t at, std::size_t digits) {
        int value = 0;
        for (const char c : text.substr(at, digits)) value = 10 * value + (c - '0');
        return value;
    };
    namespace chrono = std::chrono;
    const chrono::year_month_day date(chrono::year(number(0, 4)),
                                      chrono::month(static_cast<unsigned>(number(5, 2))),
                                      chrono::day(static_cast<unsigned>(number(8, 2))));
    const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const int milliseconds = text.size() > kForm.size() ? number(kForm.size() + 1, 3) : 0;
    const auto days = chrono::sys_days(date).time_since_epoch().count();
    return 86400.0 * static_cast<double>(days) + 3600 * hour + 60 * minute + second + milliseconds / 1000.0;
}

/// Reads times as seconds since a year began.
class Clock {
  public:
    explicit Clock(int year)
        : begin_(QDate(year, 1, 1), QTime(0, 0), QTimeZone::utc()),
          beginSeconds_(static_cast<double>(begin_.toSecsSinceEpoch())) {}

    std::optional<double> read(const std::string& text) const {
        if (const auto seconds = UTILS::readNumber(text)) return seconds;
        if (const auto seconds = plainTime(text)) return *seconds - beginSeconds_;
        QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODateWithMs);
        if (!time.isValid()) return std::nullopt;
        if (time.timeSpec() == Qt::LocalTime) time.setTimeZone(QTimeZone::utc());
        return static_cast<double>(begin_.msecsTo(time)) / 1000.0;
    }

  private:
    QDateTime begin_;
    double beginSeconds_;
};

/// Finds platforms by their names: a table of numbers, most of them in the places that their hashes say.
class Names {
  public:
    /// Of the platform with that name; one more than the last for a new one, which is to be added then.
    std::uint32_t numberOf(std::string_view name, const std::deque<PlatformFile::Platform>& platforms) {
        // Most rows follow one of the same platform.
        if (latest_ < platforms.size() && platforms[latest_].name == name) return latest_;
        if (2 * (platforms.size() + 1) > places_.size()) grow();
        const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
        Place& place = find(hash, [&](std::uint32_t number) { return platforms[number].name == name; });
        if (place.number == kNone) place = {hash, static_cast<std::uint32_t>(platforms.size())};
        return latest_ = place.number;
    }

  private:
    static constexpr std::uint32_t kNone = ~0U;
    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t number = kNone;
    };

    Place& find(std::uint32_t hash, auto&& is) {
        std::size_t at = hash % places_.size();
        while (places_[at].number != kNone && (places_[at].hash != hash || !is(places_[at].number)))
            at = (at + 1) % places_.size();
        return places_[at];
    }
    void grow() {
        constexpr std::size_t kFew = 16;
        const std::vector<Place> before =
            std::exchange(places_, std::vector<Place>(std::max(kFew, 2 * places_.size())));
        for (const Place& place : before)
            if (place.number != kNone) find(place.hash, [](std::uint32_t) { return false; }) = place;
    }

    std::vector<Place> places_;
    std::uint32_t latest_ = kNone;
};

/// Shares texts with those that came last.
class LatestTexts {
  public:
    SharedText share(const std::string& text) {
        constexpr std::size_t kMany = 1000;
        if (latest_.text() == text) return latest_;
        if (texts_.size() > kMany) texts_.clear();
        return latest_ = texts_.try_emplace(text, text).first->second;
    }

  private:
    std::map<std::string, SharedText> texts_;
    SharedText latest_;
};

}  // namespace

/// Reads the rows of one file; every row is good or gives one message.
class PlatformFileReading::Reader {
  public:
    explicit Reader(int year) : clock_(year) {}

    void readLine(std::size_t line, std::string_view row) {
        row = UTILS::trimmed(row);
        if (row.empty() || row.front() == '#') return;
        if (!hasHeader_) {
            hasHeader_ = true;
            separator_ = row.find(',') == std::string_view::npos && row.find(';') != std::string_view::npos
                             ? ';'
                             : ',';
        }
        const auto fields = fieldsOf(row, separator_);
        std::string problem = "a quote is not closed";
        if (fields) problem = columns_.empty() ? readHeader(*fields) : readRow(*fields);
        if (!problem.empty()) file_.messages.push_back({line, std::move(problem)});
    }

    /// Whether rows can be told apart: false once the first row was not the columns' names.
    bool isReadable() const { return !hasHeader_ || !columns_.empty(); }

    PlatformFile finish() {
        names_ = {};
        std::vector<std::uint32_t> ends(file_.platforms.size());
        for (const std::uint32_t platform : platformOf_) ++ends[platform];
        std::inclusive_scan(ends.begin(), ends.end(), ends.begin());
        // Each platform's rows, in the order of their times.
        std::vector<std::uint32_t> from(platformOf_.size());
        std::vector<std::uint32_t> firsts = ends;
        for (auto row = static_cast<std::uint32_t>(from.size()); row-- > 0;)
            from[--firsts[platformOf_[row]]] = row;
        platformOf_ = {};
        const auto time = [this](std::uint32_t row) { return rows_->time(row); };
        for (std::size_t i = 0; i < ends.size(); ++i) {
            const auto own = std::span(from).subspan(firsts[i], ends[i] - firsts[i]);
            if (!std::ranges::is_sorted(own, {}, time)) std::ranges::stable_sort(own, {}, time);
        }
        if (!std::ranges::is_sorted(from)) rows_->arrange(from);
        for (std::size_t i = 0; i < ends.size(); ++i)
            file_.platforms[i].track = Track(rows_, firsts[i], ends[i] - firsts[i]);
        return std::move(file_);
    }

  private:
    std::string readHeader(const std::vector<std::string>& fields) {
        std::vector<std::optional<Column>> columns;
        std::array<bool, kColumnCount> found{};
        for (const std::string& field : fields) {
            columns.emplace_back();
            for (const auto& [name, column] : kColumnNames)
                if (UTILS::equalsIgnoringCase(field, name)) columns.back() = column;
            if (!columns.back()) continue;
            if (std::exchange(found[*columns.back()], true)) return "two columns \"" + field + '"';
        }
        for (const Column column : kNeeded)
            if (!found[column])
                return "no column \"" + std::string(nameOf(column)) +
                       "\"; the first row must name the columns";
        columns_ = std::move(columns);
        return {};
    }

    /// A number in its range into `out`; an empty text leaves `out` as it is, if it may be left out.
    static std::string readField(std::string_view text, Column column, double low, double high, double& out) {
        if (text.empty() && column != Latitude && column != Longitude) return {};
        const auto number = UTILS::readNumber(text);
        if (!number || !(*number >= low && *number <= high))
            return std::string(nameOf(column)) + ": expected a number between " + UTILS::writeNumber(low) +
                   " and " + UTILS::writeNumber(high) + ", found \"" + UTILS::excerpt(text) + '"';
        out = *number;
        return {};
    }

    std::string readRow(const std::vector<std::string>& fields) {
        if (fields.size() > columns_.size())
            return std::to_string(fields.size()) + " fields for " + std::to_string(columns_.size()) +
                   " columns";
        std::array<std::string, kColumnCount> texts;
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (columns_[i]) texts[*columns_[i]] = fields[i];
        if (texts[Name].empty()) return "no name";

        PIDataPoint point;
        point.speedMetersPerSecond = Track::kFollows;
        double latitude = 0.0, longitude = 0.0, heading = Track::kFollows;
        constexpr double kHuge = 1e9;
        const std::optional<double> time = clock_.read(texts[Time]);
        std::string problem;
        if (!time)
            problem = "time: expected ISO 8601 or seconds, found \"" + UTILS::excerpt(texts[Time]) + '"';
        point.timeSeconds = time.value_or(0.0);
        const auto read = [&](Column column, double low, double high, double& out) {
            if (problem.empty()) problem = readField(texts[column], column, low, high, out);
        };
        read(Latitude, -90.0, 90.0, latitude);
        read(Longitude, -180.0, 360.0, longitude);
        read(Altitude, -kHuge, kHuge, point.altMeters);
        read(Heading, -360.0, 360.0, heading);
        read(Speed, 0.0, kHuge, point.speedMetersPerSecond);
        if (!problem.empty()) return problem;
        point.latRad = latitude * kRadiansPerDegree;
        point.lonRad = longitude * kRadiansPerDegree;
        point.headingRad = heading * kRadiansPerDegree;

        const std::uint32_t number = names_.numberOf(texts[Name], file_.platforms);
        if (number == file_.platforms.size()) file_.platforms.push_back({texts[Name], {}, {}, nowhere_});
        PlatformFile::Platform& platform = file_.platforms[number];
        if (!texts[Icon].empty()) platform.icon = icons_.share(texts[Icon]);
        if (!texts[Overlay].empty()) platform.overlay = overlays_.share(texts[Overlay]);
        platformOf_.push_back(number);
        rows_->add(point);
        return {};
    }

    const Clock clock_;
    bool hasHeader_ = false;
    char separator_ = ',';
    std::vector<std::optional<Column>> columns_;
    PlatformFile file_;
    Names names_;
    LatestTexts icons_;
    LatestTexts overlays_;
    const Track nowhere_;  ///< until all rows are there
    std::shared_ptr<TrackRows> rows_ = std::make_shared<TrackRows>();
    std::vector<std::uint32_t> platformOf_;  ///< of each row
};

std::optional<double> readScenarioTime(const std::string& text, int year) {
    return Clock(year).read(text);
}

PlatformFileReading::PlatformFileReading(std::string_view text, int year)
    : text_(text), reader_(std::make_unique<Reader>(year)) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text_.starts_with(kByteOrderMark)) text_.remove_prefix(kByteOrderMark.size());
}

PlatformFileReading::~PlatformFileReading() = default;

bool PlatformFileReading::goOn(std::size_t bytes) {
    const std::size_t before = text_.size();
    while (!text_.empty() && before - text_.size() < bytes) {
        const std::size_t end = std::min(text_.find('\n'), text_.size());
        reader_->readLine(line_++, text_.substr(0, end));
        text_.remove_prefix(reader_->isReadable() ? std::min(end + 1, text_.size()) : text_.size());
    }
    return text_.empty();
}

PlatformFile PlatformFileReading::take() {
    return reader_->finish();
}

PlatformFile readPlatformFile(std::string_view text, int year) {
    PlatformFileReading reading(text, year);
    reading.goOn(text.size() + 1);
    return reading.take();
}

}  // namespace sandbox
