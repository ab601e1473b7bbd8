#pragma once

#include <initializer_list>
#include <string_view>

#include "format/ParseReport.h"

namespace halCore::ZEL {

/// Where a reader's messages go: into a report, or without one to the log.
class MessageSink {
  public:
    explicit MessageSink(ParseReport* report) : report_(report) {}

    /// The parts make one text. The log's line is "ZEL error: <text>, line: <line>".
    void error(std::size_t line, std::initializer_list<std::string_view> parts) const;
    /// Severity Warning; the log's line is the text alone.
    void warning(std::size_t line, std::string_view text) const;

    ParseReport* report() const { return report_; }

  private:
    ParseReport* report_;
};

}  // namespace halCore::ZEL
