#pragma once

#include <memory>
#include <string>
#include <utility>

namespace sandbox {

/// A text that many may have, in memory once; to copy it costs no memory.
class SharedText {
  public:
    SharedText() = default;
    SharedText(std::string text)
        : text_(text.empty() ? nullptr : std::make_shared<const std::string>(std::move(text))) {}
    SharedText(const char* text) : SharedText(std::string(text)) {}

    const std::string& text() const {
        static const std::string none;
        return text_ ? *text_ : none;
    }
    bool empty() const { return !text_; }

  private:
    std::shared_ptr<const std::string> text_;
};

}  // namespace sandbox
