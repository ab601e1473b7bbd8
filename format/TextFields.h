#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace halCore::ZEL {

/// Up to 64 numbered texts in one buffer or where they stand, each set or not. Clearing keeps the memory.
template <std::size_t Count>
class TextFields {
  public:
    static_assert(Count <= 64);

    void clear() {
        present_ = 0;
        viewed_ = 0;
        used_ = 0;
        if (capacity_ > kKept) {
            buffer_.reset();
            capacity_ = 0;
        }
    }

    void set(std::size_t index, std::string_view text) {
        if (text.size() > capacity_ - used_) grow_(text.size());
        copy_(buffer_.get() + used_, text);
        texts_[index] = {buffer_.get() + used_, text.size()};
        used_ += text.size();
        present_ |= 1ULL << index;
        viewed_ &= ~(1ULL << index);
    }

    /// The same for a text that stays where it is until `copyViewed`, or until it is cleared.
    void view(std::size_t index, std::string_view text) {
        texts_[index] = text;
        present_ |= 1ULL << index;
        viewed_ |= 1ULL << index;
    }
    void copyViewed() {
        while (viewed_ != 0) {
            const auto index = static_cast<std::size_t>(std::countr_zero(viewed_));
            set(index, texts_[index]);
        }
    }

    /// Empty when it is not set; valid until the next change.
    std::string_view get(std::size_t index) const {
        if ((present_ >> index & 1) == 0) return {};
        return texts_[index];
    }

    /// A bit for each text that is set.
    std::uint64_t present() const { return present_; }

  private:
    static constexpr std::size_t kKept = 1 << 16;

    void grow_(std::size_t more) {
        const std::size_t capacity = 2 * (used_ + more) + 256;
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        if (used_ != 0) std::memcpy(larger.get(), buffer_.get(), used_);
        for (std::uint64_t rest = present_ & ~viewed_; rest != 0; rest &= rest - 1) {
            std::string_view& text = texts_[static_cast<std::size_t>(std::countr_zero(rest))];
            text = {larger.get() + (text.data() - buffer_.get()), text.size()};
        }
        buffer_ = std::move(larger);
        capacity_ = capacity;
    }

    /// Most texts are short: two words that may overlap are faster than a call.
    static void copy_(char* to, std::string_view text) {
        const std::size_t size = text.size();
        const char* const from = text.data();
        if (size > 16) {
            std::memcpy(to, from, size);
        } else if (size >= 8) {
            std::uint64_t first, last;
            std::memcpy(&first, from, 8);
            std::memcpy(&last, from + size - 8, 8);
            std::memcpy(to, &first, 8);
            std::memcpy(to + size - 8, &last, 8);
        } else {
            for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
        }
    }

    std::uint64_t present_ = 0;
    /// Of those that are viewed; the others stand in the buffer.
    std::uint64_t viewed_ = 0;
    std::array<std::string_view, Count> texts_;
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t used_ = 0;
};

}  // namespace halCore::ZEL
