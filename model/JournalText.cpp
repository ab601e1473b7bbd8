#include "model/JournalText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

#include "common/Notify.h"
#include "format/Parser.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "geo/UnitsRegistry.h"
#include "model/BlockRewriter.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

/// At the beginning of each record; the last byte is the format's version.
constexpr std::string_view kMagic("\xF1OEJ1\n", 6);
constexpr std::size_t kPointsAtOnce = 4096;
constexpr std::size_t kLists = 3;

enum class Kind : std::uint8_t { Points = 1, Shape, Gone, Head, Extras };

/// Extras as a block of which a reader makes them again: none makes a list without points.
std::string blockOfExtras(const halCore::ZEL::ZelShape& extras) {
    constexpr int fewest = 3;
    std::string block = blockOf(extras);
    const auto* const points = halCore::ZEL::pointsOf(extras);
    if (!points || !points->empty()) return block;
    std::string some;
    for (int i = 0; i < fewest; ++i) some += extras.isRelative() ? "xyz 0 0 0\n" : "lla 0 0 0\n";
    return block.insert(block.rfind("end\n"), some);
}

// Values. What is the same in memory everywhere that the editor runs is written as it stands there.

class Bytes {
  public:
    explicit Bytes(Kind kind) { put(kind); }

    template <typename T>
    void put(const T& value) {
        static_assert(std::is_trivially_copyable_v<T>);
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void put(const std::string& text) {
        put(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
    }
    template <typename T>
    void put(const std::optional<T>& value) {
        put(value.has_value());
        if (value) put(*value);
    }
    template <typename T>
    void put(const std::vector<T>& values) {
        put(static_cast<std::uint32_t>(values.size()));
        bytes_.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
    }
    template <typename T, std::size_t count>
    void put(const std::array<T, count>& values) {
        for (const T& value : values) put(value);
    }
    /// As so many that may be there or not.
    template <typename T, std::size_t count>
    void put(const Slots<T, count>& values) {
        for (std::size_t i = 0; i < count; ++i) {
            put(values[i] != nullptr);
            if (values[i]) put(*values[i]);
        }
    }

    /// As a record.
    void appendTo(std::string& out) const {
        out += kMagic;
        const auto size = static_cast<std::uint32_t>(bytes_.size());
        const std::uint64_t sum = std::hash<std::string_view>()(bytes_);
        out.append(reinterpret_cast<const char*>(&size), sizeof size);
        out.append(reinterpret_cast<const char*>(&sum), sizeof sum);
        out += bytes_;
    }

  private:
    std::string bytes_;
};

class Reader {
  public:
    explicit Reader(std::string_view bytes) : left_(bytes) {}
    /// Whether everything was there until now.
    bool ok() const { return ok_; }

    template <typename T>
    void get(T& value) {
        static_assert(std::is_trivially_copyable_v<T>);
        const std::string_view bytes = some_(sizeof value);
        if (ok_) std::memcpy(&value, bytes.data(), sizeof value);
    }
    void get(std::string& text) { text = some_(length_()); }
    template <typename T>
    void get(std::optional<T>& value) {
        bool any = false;
        get(any);
        value.reset();
        // Not emplaced: clang takes a struct within a struct for one that has no default.
        if (any && ok_) get(*(value = T{}));
    }
    template <typename T>
    void get(std::vector<T>& values) {
        const std::string_view bytes = some_(length_() * sizeof(T));
        values.resize(bytes.size() / sizeof(T));
        if (!values.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
    }
    template <typename T, std::size_t count>
    void get(std::array<T, count>& values) {
        for (T& value : values) get(value);
    }
    template <typename T, std::size_t count>
    void get(Slots<T, count>& values) {
        for (std::size_t i = 0; i < count; ++i) {
            std::optional<T> value;
            get(value);
            if (value) values.set(i, *value);
        }
    }

  private:
    std::size_t length_() {
        std::uint32_t length = 0;
        get(length);
        return length;
    }
    std::string_view some_(std::size_t count) {
        ok_ = ok_ && count <= left_.size();
        const std::string_view some = left_.substr(0, ok_ ? count : 0);
        left_.remove_prefix(some.size());
        return some;
    }

    std::string_view left_;
    bool ok_ = true;
};

// Shapes. The same function names the values for writing and for reading.

template <typename State>
const State& valueOf(const Shared<State>& shared) {
    return *shared;
}
template <typename State>
State& valueOf(Shared<State>& shared) {
    return shared.change();
}

template <typename Archive, typename State>
void values(Archive& archive, State& state) {
    auto& positions = state.positions;
    archive(state.name, state.shown, state.showPoints, state.anchorCenter, state.keepsPlaces, state.attached,
            state.source.block, state.source.digest, state.lineColor, state.lineWidth, state.fillColor,
            state.filled, positions.missing, positions.frame, positions.stranded);
    if (auto* const shared = std::get_if<Shared<RoundState>>(&state.own)) {
        auto& round = valueOf(*shared);
        archive(round.places, round.numbers, round.marks, round.requiresAllPoints, round.heightGiven);
    }
    if (auto* const rectangle = std::get_if<RectangleState>(&state.own)) archive(rectangle->size);
    if (auto* const shared = std::get_if<Shared<FreeDrawState>>(&state.own)) {
        auto& drawn = valueOf(*shared);
        archive(drawn.lines, drawn.pixelPrecision);
    }
    if (auto* const label = std::get_if<LabelState>(&state.own))
        archive(label->color, label->fontSize, label->fontName);
}

/// The lists of points of a shape: its positions, those that it has left, its lines.
const SharedPoints& listOf(const ShapeState& state, std::size_t list) {
    static const SharedPoints none;
    if (list == 0) return state.positions.given;
    if (list == 1) return state.positions.left ? state.positions.left->offsets : none;
    const auto* const drawn = std::get_if<Shared<FreeDrawState>>(&state.own);
    return drawn ? (*drawn)->points : none;
}

SharedPoints::Common commonOf(const ShapeState& state, const ShapeState* before, std::size_t list) {
    return before ? listOf(state, list).commonWith(listOf(*before, list)) : SharedPoints::Common{};
}

/// A state of a kind with nothing in it; null for none.
std::shared_ptr<ShapeState> emptyState(std::uint8_t kind) {
    if (kind > ShapeKind::Orbit) return nullptr;
    auto state = std::make_shared<ShapeState>();
    state->kind = static_cast<ShapeKind::Id>(kind);
    if (kind >= ShapeKind::Circle) state->own.emplace<Shared<RoundState>>();
    if (kind == ShapeKind::Rectangle || kind == ShapeKind::Triangle) state->own.emplace<RectangleState>();
    if (kind == ShapeKind::FreeDraw) state->own.emplace<Shared<FreeDrawState>>();
    if (kind == ShapeKind::Text) state->own.emplace<LabelState>();
    return state;
}

struct Reference {
    Vec3 lla;
    unsigned long platform = 0;
};

template <typename Archive, typename State>
void headValues(Archive& archive, State& head) {
    auto& at = head.attachment;
    archive(head.fileName, at.platform, at.name, at.own, at.written, at.counts, at.reference, at.fromNowhere);
}

}  // namespace

// Writing

void JournalWriter::begin(std::uint64_t number, ShapeStatePtr state) {
    number_ = number;
    state_ = std::move(state);
    list_ = 0;
    at_ = 0;
}

bool JournalWriter::next(std::string& out) {
    Written& written = shapes_[number_];
    const ShapeState* const before = written.state.get();
    for (; list_ < kLists; ++list_, at_ = 0) {
        const SharedPoints& points = listOf(*state_, list_);
        const auto common = commonOf(*state_, before, list_);
        const std::size_t end = points.size() - common.back;
        const std::size_t from = std::max(at_, common.front);
        if (from >= end) continue;
        std::vector<Vec3> some;
        at_ = std::min(end, from + kPointsAtOnce);
        points.copyTo(some, from, at_ - from);
        Bytes bytes(Kind::Points);
        bytes.put(number_);
        bytes.put(static_cast<std::uint8_t>(list_));
        bytes.put(some);
        bytes.appendTo(out);
        return false;
    }

    const auto& extras = state_->source.extras;
    if (extras != (before ? before->source.extras : nullptr)) {
        Bytes bytes(Kind::Extras);
        bytes.put(number_);
        bytes.put(extras ? blockOfExtras(*extras) : std::string());
        bytes.appendTo(out);
    }
    Bytes bytes(Kind::Shape);
    bytes.put(number_);
    bytes.put(static_cast<std::uint8_t>(state_->kind));
    bytes.put(before ? written.version : 0U);
    bytes.put(written.version + 1);
    for (std::size_t list = 0; list < kLists; ++list) {
        const auto common = commonOf(*state_, before, list);
        bytes.put(common.front);
        bytes.put(common.back);
        bytes.put(listOf(*state_, list).size());
    }
    std::optional<Reference> own;
    if (state_->positions.own) {
        state_->positions.own->getReferenceLla(own.emplace().lla);
        own->platform = state_->positions.own->refPlatformId();
    }
    bytes.put(own);
    bytes.put(state_->positions.left ? std::optional(state_->positions.left->reference) : std::nullopt);
    const auto archive = [&bytes](const auto&... value) { (bytes.put(value), ...); };
    values(archive, *state_);
    bytes.appendTo(out);
    written = {std::move(state_), written.version + 1};
    return true;
}

void JournalWriter::gone(std::uint64_t number, std::string& out) {
    shapes_.erase(number);
    Bytes bytes(Kind::Gone);
    bytes.put(number);
    bytes.appendTo(out);
}

void JournalWriter::head(const JournalHead& head, std::string& out) {
    Bytes bytes(Kind::Head);
    bytes.put(head.known.path());
    bytes.put(head.known.hash());
    const auto archive = [&bytes](const auto&... value) { (bytes.put(value), ...); };
    headValues(archive, head);
    bytes.appendTo(out);
}

// Reading

namespace {

class JournalReader {
  public:
    JournalReader() {
        units_.registerDefaultUnits();
        parser_.setUnitsRegistry(&units_);
    }
    JournalContents read(std::string_view text) {
        // A torn end costs what does not belong together yet; without a whole state there is what there is.
        std::size_t whole = 0;
        forEach_(text, [&](std::string_view record) {
            if (record.starts_with(static_cast<char>(Kind::Head)))
                whole = static_cast<std::size_t>(record.end() - text.begin());
        });
        contents_.damaged = contents_.damaged && text.find(kMagic, whole) != std::string_view::npos;
        if (whole == 0) contents_.damaged = true;
        forEach_(whole ? text.substr(0, whole) : text, [&](std::string_view record) {
            Reader reader(record);
            if (!take_(reader)) contents_.damaged = true;
        });
        for (auto& [number, versioned] : shapes_)
            contents_.shapes.emplace(number, std::move(versioned.state));
        return std::move(contents_);
    }

  private:
    struct Versioned {
        ShapeStatePtr state;
        std::uint32_t version = 0;
    };

    /// All records that are whole.
    template <typename Take>
    void forEach_(std::string_view text, const Take& take) {
        while (!text.empty()) {
            if (const auto record = recordAt_(text)) {
                take(*record);
                text.remove_prefix(static_cast<std::size_t>(record->end() - text.begin()));
                continue;
            }
            contents_.damaged = true;
            const std::size_t next = text.find(kMagic, 1);
            text.remove_prefix(next == std::string_view::npos ? text.size() : next);
        }
    }

    static std::optional<std::string_view> recordAt_(std::string_view text) {
        if (!text.starts_with(kMagic)) return std::nullopt;
        Reader head(text.substr(kMagic.size()));
        std::uint32_t size = 0;
        std::uint64_t sum = 0;
        head.get(size);
        head.get(sum);
        const std::size_t begin = kMagic.size() + sizeof size + sizeof sum;
        if (!head.ok() || text.size() - begin < size) return std::nullopt;
        const std::string_view record = text.substr(begin, size);
        return std::hash<std::string_view>()(record) == sum ? std::optional(record) : std::nullopt;
    }

    bool take_(Reader& reader) {
        Kind kind{};
        reader.get(kind);
        if (kind == Kind::Points) return takePoints_(reader);
        if (kind == Kind::Shape) return takeShape_(reader);
        if (kind == Kind::Head) return takeHead_(reader);
        if (kind == Kind::Extras) return takeExtras_(reader);
        std::uint64_t number = 0;
        reader.get(number);
        shapes_.erase(number);
        return reader.ok() && kind == Kind::Gone;
    }

    bool takePoints_(Reader& reader) {
        std::uint64_t number = 0;
        std::uint8_t list = 0;
        std::vector<Vec3> points;
        reader.get(number);
        reader.get(list);
        reader.get(points);
        if (!reader.ok() || list >= kLists) return false;
        auto& pending = points_[number][list];
        pending.insert(pending.end(), points.begin(), points.end());
        return true;
    }

    bool takeExtras_(Reader& reader) {
        std::uint64_t number = 0;
        std::string block;
        reader.get(number);
        reader.get(block);
        const halNotify::Silence silence;
        halCore::ZEL::Parser::Shapes read;
        halCore::ZEL::ParseReport report;
        if (reader.ok()) parser_.parse(block, read, report);
        extras_[number] = read.size() == 1 ? halCore::ZEL::extrasOf(read.front()) : nullptr;
        return reader.ok() && (block.empty() || extras_[number]);
    }

    bool takeShape_(Reader& reader) {
        std::uint64_t number = 0;
        std::uint8_t kind = 0;
        std::uint32_t base = 0;
        std::uint32_t version = 0;
        reader.get(number);
        reader.get(kind);
        reader.get(base);
        reader.get(version);
        auto fresh = points_[number];
        points_.erase(number);
        const auto state = emptyState(kind);
        const auto known = shapes_.find(number);
        if (!state || (base != 0 && (known == shapes_.end() || known->second.version != base))) return false;

        std::array<SharedPoints, kLists> lists;
        for (std::size_t list = 0; list < kLists; ++list) {
            SharedPoints::Common common;
            std::size_t size = 0;
            reader.get(common.front);
            reader.get(common.back);
            reader.get(size);
            const SharedPoints before = base != 0 ? listOf(*known->second.state, list) : SharedPoints();
            if (!reader.ok() || common.front > before.size() || common.back > before.size() ||
                common.front + fresh[list].size() + common.back != size)
                return false;
            std::vector<Vec3> points;
            before.copyTo(points, 0, common.front);
            points.insert(points.end(), fresh[list].begin(), fresh[list].end());
            before.copyTo(points, before.size() - common.back, common.back);
            lists[list] = SharedPoints(points, &before);
        }
        std::optional<Reference> own;
        std::optional<Vec3> left;
        reader.get(own);
        reader.get(left);
        const auto archive = [&reader](auto&... value) { (reader.get(value), ...); };
        values(archive, *state);
        if (!reader.ok()) return false;
        auto& positions = state->positions;
        positions.given = std::move(lists[0]);
        using Left = PlacedPoints::State::Left;
        if (left) positions.left = std::make_shared<const Left>(Left{*left, std::move(lists[1])});
        if (auto* const drawn = std::get_if<Shared<FreeDrawState>>(&state->own))
            drawn->change().points = std::move(lists[2]);
        if (own) {
            auto reference = std::make_shared<PointConverter>();
            reference->setReferenceLla(own->lla, own->platform);
            positions.own = std::move(reference);
        }
        if (!isSound_(*state)) return false;
        const auto extras = extras_.extract(number);
        if (extras)
            state->source.extras = extras.mapped();
        else if (base != 0)
            state->source.extras = known->second.state->source.extras;
        shapes_[number] = {state, version};
        return true;
    }

    /// Whether the parts of a state fit each other: records that are whole may be of different times.
    static bool isSound_(const ShapeState& state) {
        using Frame = PlacedPoints::State::Frame;
        const auto& positions = state.positions;
        if (positions.frame > Frame::Own || (positions.frame == Frame::Own) != (positions.own != nullptr))
            return false;
        if (positions.left && positions.left->offsets.size() != positions.given.size()) return false;
        const auto* const drawn = std::get_if<Shared<FreeDrawState>>(&state.own);
        if (!drawn) return true;
        std::size_t left = (*drawn)->points.size();
        for (const std::size_t line : (*drawn)->lines) {
            if (line > left) return false;
            left -= line;
        }
        return left == 0;
    }

    bool takeHead_(Reader& reader) {
        std::string path;
        std::size_t hash = 0;
        reader.get(path);
        reader.get(hash);
        const auto archive = [&reader](auto&... value) { (reader.get(value), ...); };
        headValues(archive, contents_.head);
        if (!reader.ok()) return false;
        contents_.head.known = FileVersion::known(std::move(path), hash);
        return true;
    }

    halCore::UnitsRegistry units_;
    halCore::ZEL::Parser parser_;
    JournalContents contents_;
    std::map<std::uint64_t, Versioned> shapes_;
    /// Of shapes that are not whole yet.
    std::map<std::uint64_t, std::shared_ptr<const halCore::ZEL::ZelShape>> extras_;
    std::map<std::uint64_t, std::array<std::vector<Vec3>, kLists>> points_;
};

}  // namespace

JournalContents readJournal(std::string_view text) {
    return JournalReader().read(text);
}

}  // namespace OverlayEditor
