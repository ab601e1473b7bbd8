#pragma once

#include <string_view>

namespace OverlayEditor {

/// A mouse tool that tells the user what the next click does.
class HintSource {
  public:
    /// For the tool as it is now, a line without a line break; empty for nothing to say. The text lives as
    /// long as the library: it is asked for after each event and in each frame, and compared.
    virtual std::string_view hint() const = 0;

  protected:
    ~HintSource() = default;
};

}  // namespace OverlayEditor
