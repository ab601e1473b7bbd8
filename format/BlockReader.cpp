#include "format/BlockReader.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>
#include <iterator>

#include "common/Strings.h"
#include "format/FileNumber.h"
#include "format/Keyword.h"
#include "format/LabelText.h"
#include "format/LineSettings.h"
#include "format/PlaceAdvice.h"
#include "format/PlainPoint.h"
#include "geo/Angles.h"
#include "geo/Mgrs.h"

namespace halCore::ZEL {
namespace {

constexpr std::string_view kAtLeast1 = " command requires at least 1 argument";
constexpr std::string_view kAtLeast2 = " command requires at least 2 arguments";
constexpr std::string_view kExactly1 = " command requires 1 argument";
constexpr std::string_view kExactly3 = " command requires 3 arguments";

std::string_view firstWord(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && !UTILS::isBlank(text[length])) ++length;
    return text.substr(0, length);
}

/// Degrees with 7 decimals in a field of 11: about a centimetre, as grid references are stored.
std::string gridDegrees(double radians) {
    char text[32];
    const auto result = std::to_chars(std::begin(text), std::end(text), radians * kDegreesPerRadian,
                                      std::chars_format::fixed, 7);
    const auto length = static_cast<std::size_t>(result.ptr - text);
    return std::string(length < 11 ? 11 - length : 0, ' ').append(text, length);
}

}  // namespace

void BlockReader::readLines(std::string_view text) {
    const char* p = text.data();
    const char* const end = p + text.size();
    text_ = p;
    textEnd_ = end;
    while (p != end) {
        ++lineNumber_;
        while (*p != '\n' && UTILS::isBlank(*p)) ++p;
        if ((*p == 'l' || *p == 'x') && insideBlock_) {
            if (const char* const next = readPlainPoints_(p, end)) {
                p = next;
                continue;
            }
        }
        if (*p == '#' || *p == '/') {
            const auto* const stop =
                static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
            readComment_(p, stop);
            p = stop + 1;
        } else if (*p == '\n') {
            ++p;
        } else {
            p = readWords_(p, end) + 1;
        }
    }
    offset_ += text.size();
    if (!insideBlock_) return;
    record_.copyViewed();
    modifiers_.copyViewed();
}

/// Nearly all lines of a large file are points written in the plainest way. They are read here, straight
/// from the text, as many as stand there; returns the next line, or null, and nothing done, for every other
/// line.
const char* BlockReader::readPlainPoints_(const char* p, const char* end) {
    const char* const line = p;
    const bool absolute = *p == 'l';
    if (*++p != (absolute ? 'l' : 'y')) return nullptr;
    if (*++p == (absolute ? 'a' : 'z')) ++p;
    const auto type = absolute ? ParsedShape::PointType::Absolute : ParsedShape::PointType::Relative;
    PointLines::Use use;
    if (absolute) use.factor = kRadiansPerDegree;
    // What there is to say of places beyond takes their words.
    if (absolute && messages_.advisesOnPlaces()) {
        use.largestX = 90.0;
        use.largestY = 360.0;
    }
    if (record_.accepts(type) && (silent_ == nullptr || takesPoints_())) {
        const char* next = line;
        const std::span<const Vec3> points =
            pointLines_.read(next, end, static_cast<std::size_t>(p - line), use);
        if (!points.empty()) {
            const auto bytesEach = static_cast<std::size_t>(next - line) / points.size();
            record_.append(type, points, (static_cast<std::size_t>(end - next) + behind_) / bytesEach);
            // The first one is counted.
            lineNumber_ += points.size() - 1;
            return next;
        }
    }
    Vec3 point;
    const char* const stop = scanPlainPoint(p, end, point);
    if (stop == nullptr) return nullptr;
    if (!(std::abs(point.x()) <= use.largestX && std::abs(point.y()) <= use.largestY)) return nullptr;
    const bool taken = record_.append(type, Vec3(point.x() * use.factor, point.y() * use.factor, point.z()));
    if (silent_ != nullptr && !(taken && takesPoints_())) addSilent_(line, stop);
    return stop + 1;
}

bool BlockReader::takesPoints_() const {
    // Of other kinds it is not yet known, or they take none, or one.
    switch (record_.shape()) {
        case ShapeType::Line:
        case ShapeType::LineSegs:
        case ShapeType::Points:
        case ShapeType::Polygon:
            return true;
        default:
            return false;
    }
}

void BlockReader::addSilent_(const char* begin, const char* end) {
    const std::string_view line(begin, end);
    silentLines_.add(lineNumber_, findKeyword(firstWord(line)), line);
}

const char* BlockReader::readWords_(const char* p, const char* end) {
    const char* const stop = tokens_.split(p, end);
    line_ = p;
    lineFeed_ = stop;
    if (tokens_.isCut()) error_({"line is longer than 1 MiB: its rest is not read"});
    const Keyword& keyword = insideBlock_ ? keywordOf(tokens_) : findKeyword(tokens_[0]);
    if (keyword.action == KeywordAction::Comment) {
        readComment_(p, stop);
    } else if (insideBlock_) {
        if (silent_ != nullptr) silentLines_.add(lineNumber_, keyword, {p, stop});
        readKeyword_(keyword);
    } else {
        readOutside_(keyword);
        if (silent_ != nullptr && insideBlock_) silentLines_.add(lineNumber_, keyword, {p, stop});
        if (silent_ != nullptr && !insideBlock_) SilentLines::tellOutside(lineNumber_, {p, stop}, *silent_);
    }
    return stop;
}

void BlockReader::readOutside_(const Keyword& keyword) {
    if (keyword.action == KeywordAction::Start)
        openBlock_();
    else if (keyword.action == KeywordAction::End)
        error_({"end command encountered before start"});
    else if (tokens_[0] != "version")
        error_({"token \"", tokens_[0], "\" detected outside of a valid start/end block"});
}

void BlockReader::readComment_(const char* begin, const char* end) {
    const std::string_view line = UTILS::trimmed({begin, static_cast<std::size_t>(end - begin)});
    if (!insideBlock_) {
        if (messages_.report() == nullptr || !messages_.report()->keepsComments) return;
        std::vector<LooseComments>& comments = messages_.report()->looseComments;
        if (comments.empty() || comments.back().shapesBefore != made_) comments.push_back({made_, {}});
        comments.back().lines.append(line).push_back('\n');
        return;
    }
    record_.addComment(line);
    readImageOverlay_(line, end);
}

void BlockReader::spanBegins_() const {
    if (messages_.report() == nullptr || messages_.report()->spans == nullptr) return;
    const char* begin = line_;
    while (begin != text_ && begin[-1] != '\n') --begin;
    messages_.report()->spans->push_back(
        {.begin = offset_ + static_cast<std::size_t>(begin - text_), .line = lineNumber_});
}

void BlockReader::spanEnds_(bool makesShape) const {
    if (messages_.report() == nullptr || messages_.report()->spans == nullptr) return;
    BlockSpan& span = messages_.report()->spans->back();
    span.end = offset_ + static_cast<std::size_t>(lineFeed_ + 1 - text_);
    span.lastLine = lineNumber_;
    span.isEnded = true;
    span.makesShape = makesShape;
}

void BlockReader::openBlock_() {
    spanBegins_();
    record_.reset();
    record_.setLineNumber(lineNumber_);
    modifiers_.clear();
    silentLines_.clear();
    badBlock_ = false;
    insideBlock_ = true;
    ++blocks_;
}

void BlockReader::closeBlock_() {
    insideBlock_ = false;
    const std::size_t before = made_;
    makeShape_();
    spanEnds_(made_ != before);
}

void BlockReader::makeShape_() {
    if (record_.shape() == ShapeType::None) {
        error_({"end command encountered before recognized ZEL shape type keyword"});
        return;
    }
    // Its message was given with the second shape keyword.
    if (badBlock_) return;
    if (record_.pointType() == ParsedShape::PointType::Absolute) record_.view(ShapeParameter::Absolute, "1");
    modifiers_.apply(record_);
    const ParsedShape::PointType pointType = record_.pointType();
    if (std::shared_ptr<ZelShape> shape = parser_.getShape_(record_, registry_, messages_)) {
        if (silent_ != nullptr) silentLines_.tell(record_.lineNumber(), *shape, pointType, *silent_);
        if (messages_.advisesOnPlaces()) tellAdvice_(record_.lineNumber(), adviceOnMissingPlace(*shape));
        shapes_.push_back(std::move(shape));
        ++made_;
        if (messages_.report() != nullptr) messages_.report()->shapeLines.push_back(record_.lineNumber());
    }
}

void BlockReader::finish() {
    ParseReport* const report = messages_.report();
    if (report == nullptr) return;
    report->lines += lineNumber_ - report->linesBefore;
    report->blocks += blocks_;
    report->shapes += made_;
    if (insideBlock_) report->unterminatedBlock = record_.lineNumber();
}

/// An image overlay is told by comments only, so that older readers pass over it.
void BlockReader::readImageOverlay_(std::string_view line, const char* end) {
    const std::string_view rest = UTILS::trimmed(line.substr(firstWord(line).size()));
    const std::string_view second = firstWord(rest);
    if (second.size() < 4 || !UTILS::equalsIgnoringCase(second.substr(0, 4), "kml_")) return;
    // File names keep their case.
    tokens_.split(line.data(), end + 1, LineTokens::Case::Keep);
    if (UTILS::equalsIgnoringCase(second, "kml_icon")) {
        if (tokens_.count() >= 3) record_.set(ShapeParameter::ImageFile, tokens_[2]);
    } else if (UTILS::equalsIgnoringCase(second, "kml_groundoverlay")) {
        record_.setShape(ShapeType::ImageOverlay);
    } else if (UTILS::equalsIgnoringCase(second, "kml_latlonbox") && tokens_.count() >= 7) {
        record_.set(ShapeParameter::ImageNorth, tokens_[2]);
        record_.set(ShapeParameter::ImageSouth, tokens_[3]);
        record_.set(ShapeParameter::ImageEast, tokens_[4]);
        record_.set(ShapeParameter::ImageWest, tokens_[5]);
        record_.set(ShapeParameter::ImageRotation, tokens_[6]);
        if (messages_.advisesOnPlaces())
            tellAdvice_(lineNumber_, adviceOnBox(tokens_[2], tokens_[3], tokens_[5], tokens_[4]));
    }
}

bool BlockReader::setShape_(ShapeType type) {
    const bool first = record_.shape() == ShapeType::None;
    if (!first) {
        messages_.warning(lineNumber_, kMultipleShapes);
        badBlock_ = true;
    }
    record_.setShape(type);
    return first;
}

void BlockReader::readKeyword_(const Keyword& keyword) {
    const std::string_view label = keyword.label.empty() ? keyword.text : keyword.label;
    if (tokens_.endedInCapitalS() || messages_.advisesOnPlaces()) advise_(keyword);
    switch (keyword.action) {
        case KeywordAction::Unknown:
            readUnknown_();
            break;
        case KeywordAction::Start:
            error_({"nested start command not allowed"});
            break;
        case KeywordAction::End:
            closeBlock_();
            break;
        case KeywordAction::Ignore:
        case KeywordAction::Comment:
            break;
        case KeywordAction::Shape:
            setShape_(keyword.shape);
            break;
        case KeywordAction::AnnotationText:
            readAnnotation_();
            break;
        case KeywordAction::Box:
            readBox_();
            break;
        case KeywordAction::Flag:
            set_(keyword.parameter, keyword.parameter == ShapeParameter::Draw ? "0" : "1");
            break;
        case KeywordAction::Value:
            if (hasArguments_(1, label, kExactly1)) set_(keyword.parameter, tokens_[1]);
            break;
        case KeywordAction::QuietValue:
            if (tokens_.count() >= 2) set_(keyword.parameter, tokens_[1]);
            break;
        case KeywordAction::RestOfLine:
            if (hasArguments_(1, label, kExactly1)) set_(keyword.parameter, tokens_.from(1));
            break;
        case KeywordAction::Color:
            readColor_(keyword);
            break;
        case KeywordAction::AbsolutePoint:
            if (hasArguments_(2, label, kAtLeast2))
                record_.append(ParsedShape::PointType::Absolute, tokens_[1], tokens_[2], tokens_[3]);
            break;
        case KeywordAction::RelativePoint:
            if (hasArguments_(2, label, kAtLeast2))
                record_.append(ParsedShape::PointType::Relative, tokens_[1], tokens_[2], tokens_[3]);
            break;
        case KeywordAction::GridPoint:
            readGridPoint_();
            break;
        case KeywordAction::AbsolutePosition:
            if (!hasArguments_(2, label, kAtLeast2)) break;
            record_.set(keyword.parameter, position_());
            record_.set(ShapeParameter::Absolute, "1");
            break;
        case KeywordAction::RelativePosition:
        case KeywordAction::ReferencePoint:
            if (hasArguments_(2, label, kAtLeast2)) record_.set(keyword.parameter, position_());
            break;
        case KeywordAction::Half:
            readScaled_(keyword, 0.5);
            break;
        case KeywordAction::Double:
            readScaled_(keyword, 2.0);
            break;
        case KeywordAction::Scale:
            if (hasArguments_(3, label, kExactly3)) record_.set(keyword.parameter, position_());
            break;
        case KeywordAction::Orient:
            readOrient_();
            break;
        case KeywordAction::Extrude:
            readExtrude_();
            break;
        case KeywordAction::ThreeD:
            read3d_();
            break;
    }
}

void BlockReader::readAnnotation_() {
    if (!hasArguments_(1, "annotation", kAtLeast1)) return;
    setShape_(ShapeType::Annotation);
    const std::string_view text = tokens_.from(1);
    record_.set(ShapeParameter::AnnotationText, text);
    record_.set(ShapeParameter::Name, labelFromText(text));
}

void BlockReader::readBox_() {
    if (tokens_.count() < 6) {
        error_({"latlonaltbox command requires at least 5 arguments"});
        return;
    }
    setShape_(ShapeType::LatLonAltBox);
    record_.set(ShapeParameter::BoxNorth, tokens_[1]);
    record_.set(ShapeParameter::BoxSouth, tokens_[2]);
    record_.set(ShapeParameter::BoxWest, tokens_[3]);
    record_.set(ShapeParameter::BoxEast, tokens_[4]);
    record_.set(ShapeParameter::BoxAltitude, tokens_[5]);
    if (tokens_.count() >= 7) record_.set(ShapeParameter::BoxHeight, tokens_[6]);
}

void BlockReader::advise_(const Keyword& keyword) const {
    // Latitude and longitude; a box has two latitudes first.
    const bool isBox = keyword.action == KeywordAction::Box;
    switch (keyword.action) {
        case KeywordAction::AbsolutePoint:
        case KeywordAction::AbsolutePosition:
        case KeywordAction::ReferencePoint:
        case KeywordAction::Box:
            break;
        default:
            return;
    }
    if (tokens_.count() < (isBox ? 6 : 3)) return;
    if (tokens_.endedInCapitalS())
        for (std::size_t word = 1; word <= (isBox ? 2 : 1); ++word)
            messages_.advice(lineNumber_, adviceOnCapitalS(tokens_[word]));
    if (!messages_.advisesOnPlaces()) return;
    tellAdvice_(lineNumber_, isBox ? adviceOnBox(tokens_[1], tokens_[2], tokens_[3], tokens_[4])
                                   : adviceOnPlace(tokens_[1], tokens_[2]));
}

void BlockReader::tellAdvice_(std::size_t line, std::string text) const {
    if (text.empty()) return;
    ParseMessage message{line, halNotify::Warning, std::move(text)};
    if (silent_ != nullptr)
        silent_->push_back(std::move(message));
    else
        messages_.report()->tell(std::move(message));
}

void BlockReader::readColor_(const Keyword& keyword) {
    // The number of words alone decides, whatever the second word says; files depend on it.
    if (tokens_.count() == 2) {
        set_(keyword.parameter, parser_.colorNamed_(tokens_[1]));
    } else if (tokens_.count() == 3) {
        const std::string_view value = tokens_[2];
        if (value.starts_with("0x"))
            set_(keyword.parameter, value);
        else
            set_(keyword.parameter, std::string("0x").append(value));
    } else {
        error_({keyword.text, kAtLeast1});
    }
}

void BlockReader::readGridPoint_() {
    // One argument is enough, whatever the message says.
    if (!hasArguments_(1, "mgrs", kAtLeast2)) return;
    double lat = 0.0;
    double lon = 0.0;
    if (Mgrs::convertMgrsToGeodetic(tokens_[1], lat, lon) != 0) {
        error_({"Unable to convert MGRS coordinate to lat/lon"});
        return;
    }
    messages_.advice(lineNumber_, adviceOnReference(tokens_[1], tokens_[2], tokens_[3]));
    record_.append(ParsedShape::PointType::Absolute, gridDegrees(lat), gridDegrees(lon), tokens_[2]);
}

void BlockReader::readScaled_(const Keyword& keyword, double factor) {
    if (!hasArguments_(1, keyword.text, kExactly1)) return;
    // Text that is no number is left for the builder to report.
    const std::optional<double> value = readFileNumber(tokens_[1]);
    set_(keyword.parameter, value ? exactNumberText(*value * factor) : std::string(tokens_[1]));
}

void BlockReader::readOrient_() {
    if (!hasArguments_(1, "orient", kAtLeast1)) return;
    record_.set(ShapeParameter::OffsetCourse, tokens_[1]);
    if (tokens_.count() >= 3) record_.set(ShapeParameter::OffsetPitch, tokens_[2]);
    if (tokens_.count() >= 4) record_.set(ShapeParameter::OffsetRoll, tokens_[3]);
    record_.set(ShapeParameter::Follow, std::string_view("cpr").substr(0, tokens_.count() - 1));
}

void BlockReader::readExtrude_() {
    if (!hasArguments_(1, "extrude", kAtLeast1)) return;
    if (UTILS::stringIsTrueToken(tokens_[1])) modifiers_.set(ShapeParameter::AltitudeMode, "extrude");
    if (tokens_.count() >= 3) record_.set(ShapeParameter::ExtrudeHeight, tokens_[2]);
}

void BlockReader::read3d_() {
    if (const auto parameter = parameterOf3d(tokens_)) {
        if (hasArguments_(2, "3d", kAtLeast2)) set_(*parameter, tokens_.from(2));
    } else {
        readUnknown_();
    }
}

void BlockReader::readUnknown_() {
    const std::string_view line = tokens_.line();
    if (!line.starts_with("3d billboard")) error_({"Found unknown ZEL command ", line});
}

void BlockReader::set_(ShapeParameter parameter, std::string_view value) {
    // What stands in the text stays there as long as this is read.
    const bool stays = std::less_equal()(text_, value.data()) && std::less()(value.data(), textEnd_);
    const auto put = [&](auto& where) {
        if (stays)
            where.view(parameter, value);
        else
            where.set(parameter, value);
    };
    if (static_cast<std::size_t>(parameter) < kModifierCount)
        put(modifiers_);
    else
        put(record_);
}

bool BlockReader::hasArguments_(std::size_t count, std::string_view label, std::string_view message) {
    if (tokens_.count() > count) return true;
    error_({label, message});
    return false;
}

void BlockReader::error_(std::initializer_list<std::string_view> parts) const {
    messages_.error(lineNumber_, parts);
}

}  // namespace halCore::ZEL
