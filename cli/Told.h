#pragma once

#include <iterator>
#include <utility>
#include <vector>

#include "format/ParseReport.h"

namespace cli {

/// All that reading tells of a text, or of a piece of one.
struct Told {
    halCore::ZEL::ParseReport report;
    std::vector<halCore::ZEL::ParseMessage> silent;

    bool isClean() const { return report.messages.empty() && silent.empty(); }
    /// Adds what was told of the piece that comes next.
    void append(Told next) {
        report.append(std::move(next.report));
        silent.insert(silent.end(), std::make_move_iterator(next.silent.begin()),
                      std::make_move_iterator(next.silent.end()));
    }
};

}  // namespace cli
