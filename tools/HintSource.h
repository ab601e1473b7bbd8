#pragma once

#include <string>

namespace OverlayEditor {

/// A mouse tool that tells the user what the next click does.
class HintSource {
  public:
    /// For the tool as it is now, a line without a line break; empty for nothing to say. It is asked for
    /// after each event and in each frame, and compared.
    virtual std::string hint() const = 0;

  protected:
    ~HintSource() = default;
};

}  // namespace OverlayEditor
