#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/Parser.h"

namespace OverlayEditor {

/// What is lost or changed when a file is loaded into the editor and saved again, by line:
///
/// - severity Error: what the reader of files dropped, in its own words;
/// - severity Warning: what it read and the editor cannot hold, such as comments, images, line styles;
/// - severity Notice: what is saved in another way and means the same, such as units.
///
/// \param text what was read
/// \param shapes, report what the reader made of exactly this text
/// \param reasons for each shape why the editor does not hold it, or would not save it; empty for one that
///        it would save
std::vector<halCore::ZEL::ParseMessage> lossReport(std::string_view text,
                                                   const halCore::ZEL::Parser::Shapes& shapes,
                                                   const halCore::ZEL::ParseReport& report,
                                                   std::span<const std::string> reasons);

/// Whether the report names anything that is gone for good, and not only written in another way.
bool losesAnything(std::span<const halCore::ZEL::ParseMessage> losses);

}  // namespace OverlayEditor
