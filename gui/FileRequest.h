#pragma once

#include <string>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "pi/PICommon.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// The host begins where it remembers; one that remembers nothing, where the file was.
/// \param last the setting with the file that was used last
inline PICommon::FileDialogRequest fileRequest(std::string title, std::vector<std::string> filters,
                                               const char* last) {
    return {.title = std::move(title),
            .filters = std::move(filters),
            .settingsGroup = "SETTINGS",
            .settingsKey = last,
            .startDirectory = UTILS::directoryOf(PIGUI::PIRegistry::getValue(last))};
}

}  // namespace OverlayEditor
