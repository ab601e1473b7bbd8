#pragma once

#include <chrono>
#include <memory>
#include <string_view>
#include <vector>

#include "geo/PointConverter.h"
#include "model/FileVersion.h"
#include "model/Overlay.h"
#include "tools/SnapLayer.h"
#include "tools/SnapSource.h"

namespace OverlayEditor {

/// What the hand may be drawn to: the shapes of the edited overlay, those of the files that the host has
/// loaded, and the platforms. The host is asked what it has a few times a second at most, and for a text only
/// while that does not stand in the file it came from.
class OverlaySnap final : public SnapSource {
  public:
    /// \param overlay the edited one; both must outlive the object
    OverlaySnap(const Preferences& preferences, const Overlay& overlay);
    ~OverlaySnap() override;
    OverlaySnap(const OverlaySnap&) = delete;
    OverlaySnap& operator=(const OverlaySnap&) = delete;

    std::optional<Snap> find(const Query& query) override;

  private:
    /// A file of the host's.
    struct File;
    struct Platform {
        unsigned long id = 0;
        std::string name;
    };

    void updateEdited_(bool held);
    void askHost_();
    std::unique_ptr<File> read_(void* overlay, unsigned long platform, FileVersion version,
                                std::string_view text) const;

    const Preferences& preferences_;
    const Overlay& overlay_;
    SnapLayer edited_;
    std::uint64_t editedRevision_ = 0;
    std::uint64_t editedFrame_ = 0;
    bool editedActive_ = false;
    std::vector<std::unique_ptr<File>> files_;
    std::vector<Platform> platforms_;
    SnapLayer platformPoints_;
    std::optional<std::chrono::steady_clock::time_point> asked_;
};

}  // namespace OverlayEditor
