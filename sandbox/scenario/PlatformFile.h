#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/scenario/SharedText.h"
#include "sandbox/scenario/Track.h"

namespace sandbox {

/// The platforms of a CSV file. Its first row names the columns, in any order:
///
///     time,name,latitude,longitude,altitude,heading,speed,icon,overlay
///     2026-03-01T06:00:00Z,Ferry,21.29,-157.88,0,180,9.5,,rings.zel
///
/// "time", "name", "latitude" and "longitude" ("lat", "lon") must be there; the others may be missing, and
/// so may their values. Times are ISO 8601 (in UTC unless they name a zone) or seconds since the start of
/// the scenario's year. Angles are degrees, altitudes metres, speeds metres a second. Fields with commas
/// stand in double quotes. An overlay file, named as seen from this one, is attached to the platform. Without
/// a heading a platform looks where it goes; without a speed it goes as fast as its times say, and stops at
/// its last point. Empty rows and rows that begin with "#" are skipped.
struct PlatformFile {
    struct Platform {
        std::string name;
        SharedText icon;
        SharedText overlay;
        Track track;
    };
    struct Message {
        std::size_t line = 0;  ///< from 1
        std::string text;
    };

    std::deque<Platform> platforms;  ///< in the order of their first rows
    /// What could not be read. The rows that it names are left out, the others stand.
    std::vector<Message> messages;
};

/// A time as such a file has it, in seconds since the year began; nothing for any other text.
std::optional<double> readScenarioTime(const std::string& text, int year);

/// Reads such a file a part at a time.
class PlatformFileReading {
  public:
    /// \param text only referred to \param year that seconds count from, as the times of the tracks do
    PlatformFileReading(std::string_view text, int year);
    ~PlatformFileReading();

    /// Reads whole rows, about so many bytes. \return whether nothing is left
    bool goOn(std::size_t bytes);
    /// Bytes that are left.
    std::size_t left() const { return text_.size(); }
    /// What was read; to be called once.
    PlatformFile take();

  private:
    class Reader;
    std::string_view text_;
    std::size_t line_ = 1;
    std::unique_ptr<Reader> reader_;
};

PlatformFile readPlatformFile(std::string_view text, int year);

}  // namespace sandbox
