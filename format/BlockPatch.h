#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/UntouchedPoints.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// Makes a block into that of a changed shape by changing lines: those that set a value that is another one
/// now, in the block's own units and words. All others stay as they are, whatever they say.
class BlockPatch {
  public:
    /// How much is written anew.
    enum class Extent {
        /// The values that differ.
        Changed,
        /// Every value that the editor has.
        All
    };

    /// \param block its lines \param read what a reader makes of them
    /// \param before, after what the editor writes of the shape as it was read, and of it as it is now. Both
    ///        get the block's units.
    /// \param untouched points that none of the shapes has
    /// All must outlive the patch.
    BlockPatch(std::string_view block, const ZelShape& read, ZelShape& before, ZelShape& after,
               const UntouchedPoints& untouched)
        : block_(block), read_(read), before_(before), after_(after), untouched_(untouched) {}

    struct Lines {
        std::string whole;
        /// Without the untouched points, where there are any; otherwise empty.
        std::string rest;
        /// Lines that go although nobody changed what they say: they meant nothing, and would mean something
        /// now. By their number in the block, from 0.
        std::vector<ParseMessage> lost;
    };
    /// The block's new lines; nothing when its lines cannot be told from each other. Whether a reader makes
    /// exactly the shape of them is for the caller to see.
    std::optional<Lines> lines(Extent extent) const;

    /// The block's lines where nothing is changed but whether the shape is drawn.
    std::string drawn(bool drawn) const;

  private:
    std::string_view block_;
    const ZelShape& read_;
    ZelShape& before_;
    ZelShape& after_;
    const UntouchedPoints& untouched_;
};

}  // namespace halCore::ZEL
