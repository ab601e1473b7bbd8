#include "format/KeptLines.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <sstream>
#include <type_traits>

#include "format/TextWriter.h"

namespace halCore::ZEL {
namespace {

/// Other zeros have other lines, and what is no number is like itself.
bool isSame(const Vec3& a, const Vec3& b) {
    return std::memcmp(&a, &b, sizeof(Vec3)) == 0;
}
static_assert(std::is_trivially_copyable_v<Vec3> && sizeof(Vec3) == 3 * sizeof(double));

int slot() {
    static const int index = std::ios_base::xalloc();
    return index;
}

}  // namespace

KeptLines* KeptLines::of(std::ios_base& stream) {
    return static_cast<KeptLines*>(stream.pword(slot()));
}

void KeptLines::attachTo(std::ios_base& stream) {
    stream.pword(slot()) = this;
}

bool KeptLines::isLikeLast_(const std::string& form, std::span<const Vec3> positions) const {
    const std::size_t count = positions.size();
    return form == form_ && std::max(count, count_) - std::min(count, count_) <= 1 &&
           (isSame(positions.front(), first_) || isSame(positions.back(), last_));
}

void KeptLines::write(TextWriter& writer, const std::string& form, std::span<const Vec3> positions,
                      const Format& format) {
    if (positions.size() < kFewest || positions.size() > kMost) return format(writer, positions);
    try {
        if (isLikeLast_(form, positions))
            update_(writer, positions, format);
        else
            forget_();
        form_ = form;
    } catch (const std::bad_alloc&) {
        forget_();
    }
    count_ = positions.size();
    first_ = positions.front();
    last_ = positions.back();
    if (positions_.empty())
        format(writer, positions);
    else
        writer.text(text_);
}

void KeptLines::update_(TextWriter& writer, std::span<const Vec3> positions, const Format& format) {
    const auto [kept, now] =
        std::mismatch(positions_.begin(), positions_.end(), positions.begin(), positions.end(), isSame);
    const auto head = static_cast<std::size_t>(kept - positions_.begin());
    const std::size_t most = std::min(positions_.size(), positions.size()) - head;
    std::size_t tail = 0;
    while (tail < most &&
           isSame(positions_[positions_.size() - 1 - tail], positions[positions.size() - 1 - tail]))
        ++tail;
    const std::span<const Vec3> fresh = positions.subspan(head, positions.size() - head - tail);

    std::ostringstream stream;
    stream.flags(writer.stream().flags());
    stream.precision(writer.stream().precision());
    {
        TextWriter lines(stream);
        format(lines, fresh);
    }
    if (!stream) throw std::bad_alloc();
    const std::string_view text = stream.view();
    const std::size_t begin = head > 0 ? ends_[head - 1] : 0;
    const std::size_t end = tail < positions_.size() ? ends_[positions_.size() - tail - 1] : 0;
    text_.replace(begin, end - begin, text);

    std::vector<std::uint32_t> ends;
    ends.reserve(positions.size());
    ends.assign(ends_.begin(), ends_.begin() + static_cast<std::ptrdiff_t>(head));
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
        ends.push_back(static_cast<std::uint32_t>(begin + at + 1));
    for (std::size_t i = ends_.size() - tail; i < ends_.size(); ++i)
        ends.push_back(static_cast<std::uint32_t>(ends_[i] + text.size() - (end - begin)));
    ends_ = std::move(ends);
    positions_.assign(positions.begin(), positions.end());
}

void KeptLines::forget_() {
    positions_ = {};
    text_ = {};
    ends_ = {};
    form_.clear();
}

}  // namespace halCore::ZEL
