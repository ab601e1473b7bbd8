#pragma once

#include <initializer_list>
#include <string_view>

#include "format/ParseReport.h"

namespace halCore::ZEL {

/// The one warning that stands in the log as it is.
inline constexpr std::string_view kMultipleShapes = "Multiple shape keywords found in single start/end block";

/// Where a reader's messages go: into a report, or without one to the log.
class MessageSink {
  public:
    explicit MessageSink(ParseReport* report) : report_(report) {}

    /// The parts make one text. The log's line is "ZEL error: <text>, line: <line>".
    void error(std::size_t line, std::initializer_list<std::string_view> parts) const;
    /// Severity Warning; the log's line is the text alone.
    void warning(std::size_t line, std::string_view text) const;
    /// Severity Warning, of what is read but perhaps not as it was meant; nothing for an empty text. The
    /// log's line is "ZEL warning: <text>, line: <line>".
    void advice(std::size_t line, std::string_view text) const;
    /// Whether somebody wants to hear of places, too.
    bool advisesOnPlaces() const { return report_ != nullptr && report_->advisesOnPlaces; }

    ParseReport* report() const { return report_; }

  private:
    ParseReport* report_;
};

}  // namespace halCore::ZEL
