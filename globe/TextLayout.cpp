#include "globe/TextLayout.h"

#include <QFontMetricsF>
#include <QRectF>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numeric>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "common/Strings.h"
#include "geo/Ecef.h"
#include "globe/BaseMap.h"
#include "globe/Camera.h"
#include "globe/Graticule.h"
#include "globe/ScaleBar.h"

namespace sandbox {

using halCore::Ecef;
using halCore::LocalFrame;
using halCore::localFrame;

namespace {

/// About how large texts are: there may be thousands of them, and fonts take their time.
class TextSizes {
  public:
    QSizeF of(std::string_view text, std::string_view fontFile, int pixelSize) {
        const Font& font = fontOf(fontFile, pixelSize);
        double width = 0.0;
        double line = 0.0;
        int lines = 1;
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            if (c == '\n') {
                ++lines;
                line = 0.0;
            } else if (byte < 0x80) {
                line += font.advances[byte];
            } else if (byte >= 0xc0) {
                line += pixelSize * (byte < 0xe0 ? 0.6 : 1.0);
            }
            width = std::max(width, line);
        }
        return {width, font.lineSpacing * lines};
    }

  private:
    struct Font {
        std::array<double, 128> advances{};
        double lineSpacing = 0.0;
    };

    const Font& fontOf(std::string_view fontFile, int pixelSize) {
        if (latest_ && latest_->first.first == fontFile && latest_->first.second == pixelSize)
            return latest_->second;
        const auto [at, isNew] = fonts_.try_emplace({std::string(fontFile), pixelSize});
        latest_ = &*at;
        if (isNew) {
            const QFontMetricsF metrics(fontForFile(QString::fromStdString(at->first.first), pixelSize));
            for (int c = ' '; c < 127; ++c)
                at->second.advances[static_cast<std::size_t>(c)] = metrics.horizontalAdvance(QChar(c));
            // Of what a line has above and below its letters, another one may take some.
            at->second.lineSpacing = 0.85 * metrics.lineSpacing();
        }
        return at->second;
    }

    using Fonts = std::map<std::pair<std::string, int>, Font>;

    Fonts fonts_;
    const Fonts::value_type* latest_ = nullptr;
};

/// The room that is taken, found by the squares of the screen that it touches.
class Room {
  public:
    struct Holder {
        QRectF box;
        std::string text;
        double priority = 0.0;
        bool counts = false;  ///< what gives way to it
        int others = 0;       ///< that did
    };

    Holder* meets(const QRectF& box, auto&& isFree) {
        Holder* found = nullptr;
        forSquares(box, [&](std::int64_t square) {
            const auto at = squares_.find(square);
            if (found || at == squares_.end()) return;
            for (const std::size_t i : at->second)
                if (!found && holders_[i].box.intersects(box) && !isFree(holders_[i])) found = &holders_[i];
        });
        return found;
    }
    void take(Holder holder) {
        forSquares(holder.box, [&](std::int64_t square) { squares_[square].push_back(holders_.size()); });
        holders_.push_back(std::move(holder));
    }
    const std::vector<Holder>& holders() const { return holders_; }

  private:
    template <typename Function>
    static void forSquares(const QRectF& box, Function&& function) {
        constexpr double kSize = 128.0;
        const auto index = [](double v) { return static_cast<std::int64_t>(std::floor(v / kSize)); };
        for (std::int64_t row = index(box.top()); row <= index(box.bottom()); ++row)
            for (std::int64_t column = index(box.left()); column <= index(box.right()); ++column)
                function(row * 1'000'000 + column);
    }

    std::unordered_map<std::int64_t, std::vector<std::size_t>> squares_;
    std::vector<Holder> holders_;
};

/// About what a label covers.
QRectF boxOf(const TextLayout::Label& placed, TextSizes& sizes) {
    const DrawList::Label& label = *placed.label;
    const QSizeF size = sizes.of(label.text, label.fontName, label.pixelSize);
    QRectF box(QPointF(placed.x - size.width() / 2, placed.y - size.height() / 2), size);
    if (!label.icon.path.empty()) {
        constexpr double kIcon = 32.0;
        box.moveLeft(placed.x + kIcon / 2);
        box |= QRectF(placed.x - kIcon / 2, placed.y - kIcon / 2, kIcon, kIcon);
    }
    const double margin = label.outlineWidth;
    return box.adjusted(-margin, -margin, margin, margin);
}

/// Whether two texts can both be read although their boxes meet: of two beside each other less than half a
/// letter is covered, of two above each other only the room that lines have between them.
bool standsBeside(const QRectF& a, const QRectF& b) {
    const QRectF both = a & b;
    const double height = std::min(a.height(), b.height());
    return both.width() < 0.25 * height || both.height() < 0.2 * height;
}

/// The direction of a platform's heading on the screen, clockwise from up.
double screenTurn(const Camera& camera, const PlatformMarker& platform) {
    const LocalFrame frame = localFrame(platform.position.lat(), platform.position.lon());
    const Ecef ahead = frame.north * std::cos(platform.heading) + frame.east * std::sin(platform.heading);
    return std::atan2(dot(ahead, camera.right()), dot(ahead, camera.up()));
}

/// So that all of them take about as many pixels as so many in full, and none is too small to be seen.
double symbolScale(std::size_t count) {
    constexpr std::size_t kInFull = 2000;
    constexpr int kMostHalvings = 4;  // of their area
    int halvings = 0;
    for (std::size_t room = kInFull; room < count && halvings < kMostHalvings; room *= 2) ++halvings;
    return std::exp2(-0.5 * halvings);
}

class Layout {
  public:
    explicit Layout(const GlobeFrame& frame) : frame_(frame), camera_(frame.camera) {}

    void placeLabels(std::span<const DrawList::Label* const> labels) {
        std::vector<TextLayout::Label> placed;
        for (const DrawList::Label* label : labels)
            if (const Projected place = camera_.project(label->position); isInSight(place))
                placed.push_back({label, place.x, place.y});
        std::vector<std::size_t> order(placed.size());
        std::iota(order.rbegin(), order.rend(), std::size_t{0});
        std::ranges::stable_sort(order, std::ranges::greater(),
                                 [&](std::size_t i) { return placed[i].label->priority; });
        for (const std::size_t i : order) {
            const DrawList::Label& label = *placed[i].label;
            if (!claim(boxOf(placed[i], sizes_), label.text, label.priority)) placed[i].label = nullptr;
        }
        std::erase_if(placed, [](const TextLayout::Label& p) { return !p.label; });
        result_.labels = std::move(placed);
    }

    void placePlatforms() {
        const int pixelSize = platformLook().font.pixelSize();
        const auto take = [&](const PlatformMarker& platform) {
            const Projected place = camera_.project(platform.position);
            if (!isInSight(place)) return;
            const TextLayout::Platform placed{
                place.x, place.y, static_cast<float>(screenTurn(camera_, platform)), platform.icon == "x2"};
            std::string name = UTILS::excerpt(platform.name);
            const QSizeF size = sizes_.of(name, "arial.ttf", pixelSize);
            const QPointF corner(place.x + placed.kNameX, place.y + placed.kNameY);
            if (!name.empty() && claim(QRectF(corner, size), name, 0.0))
                result_.names.push_back({place.x, place.y, std::move(name)});
            result_.platforms.push_back(placed);
        };
        if (frame_.platforms) frame_.platforms(take);
        result_.symbolScale = symbolScale(result_.platforms.size());
        constexpr double kSmall = 0.4;
        if (result_.symbolScale < kSmall) leaveOutCovered();
    }

    /// From here on nothing may meet anything.
    void placeMap(std::span<const GraticuleLabel> graticule) {
        count();
        if (graticule.empty() && !frame_.map.names) return;
        const double size = 14.0 * result_.symbolScale;
        for (const TextLayout::Platform& platform : result_.platforms)
            room_.take({{platform.x - size / 2, platform.y - size / 2, size, size}, {}});
        // Others keep clear of the scale and of the hints.
        if (frame_.map.scaleBar) room_.take({areaOfScale(frame_), {}});
        for (const auto& [id, text] : frame_.screenTexts) room_.take({areaOf(text), {}});
        const TextLook look{fontForFile(QStringLiteral("arial.ttf"), 11), 0xd0ffffff, 0xa0000000, 1};
        const QFontMetricsF metrics(look.font);
        for (const GraticuleLabel& label : graticule) {
            const QString text = QString::fromStdString(label.text);
            // Beside its line, which would strike it through.
            const double right = label.isMeridian ? metrics.horizontalAdvance(text) / 2.0 + 4.0 : 0.0;
            const double up = label.isMeridian ? 0.0 : metrics.height() / 2.0;
            placeText({label.x + right, label.y - up, text, look});
        }
        if (!frame_.map.names) return;
        for (const DrawList::Label& name : BaseMap::names(camera_)) {
            const Projected place = camera_.project(name.position);
            placeText({place.x, place.y, QString::fromStdString(name.text), lookOf(name)});
        }
    }

    TextLayout take() { return std::move(result_); }

  private:
    // Room for what reaches into the view from outside.
    static constexpr double kMargin = 500.0;

    /// Of small symbols that stand in one spot the one that is drawn last is enough.
    void leaveOutCovered() {
        const double spot = 12.0 * result_.symbolScale;
        const auto spots = [spot](double pixels) {
            return static_cast<std::size_t>((pixels + kMargin) / spot);
        };
        const std::size_t inARow = spots(camera_.width() + kMargin) + 1;
        std::vector<bool> taken(inARow * (spots(camera_.height() + kMargin) + 1));
        const auto isCovered = [&](const TextLayout::Platform& platform) {
            const std::size_t at = spots(platform.y) * inARow + spots(platform.x);
            const bool covered = taken[at];
            taken[at] = true;
            return covered;
        };
        auto& all = result_.platforms;
        all.erase(all.begin(), std::remove_if(all.rbegin(), all.rend(), isCovered).base());
    }

    bool isInSight(const Projected& place) const {
        return place.visible && place.x > -kMargin && place.x < camera_.width() + kMargin &&
               place.y > -kMargin && place.y < camera_.height() + kMargin;
    }

    bool claim(const QRectF& box, std::string_view text, double priority) {
        if (box.isEmpty()) return true;
        Room::Holder* holder = room_.meets(box, [&](const Room::Holder& other) {
            return other.priority == priority && standsBeside(other.box, box);
        });
        if (!holder) {
            room_.take({box, std::string(text), priority, true});
            return true;
        }
        // A text on itself is one that is being dragged.
        if (holder->text != text) ++holder->others;
        return false;
    }

    void count() {
        const TextLook look{fontForFile(QStringLiteral("arialb.ttf"), 11), 0xffffffff, 0xd0000000, 2};
        std::vector<TextLayout::Text> counts;
        for (const Room::Holder& holder : room_.holders()) {
            if (!holder.counts || holder.others == 0) continue;
            const QString text = QString("+%1").arg(holder.others);
            const double width = QFontMetricsF(look.font).horizontalAdvance(text);
            counts.push_back({holder.box.right() + width / 2.0 + 3.0, holder.box.center().y(), text, look});
        }
        for (TextLayout::Text& text : counts) placeText(std::move(text), result_.counts);
    }

    void placeText(TextLayout::Text text, std::vector<TextLayout::Text>& into) {
        const QFontMetricsF metrics(text.look.font);
        const QSizeF size(metrics.horizontalAdvance(text.text), metrics.height());
        const QRectF box(QPointF(text.x - size.width() / 2.0, text.y - size.height() / 2.0), size);
        if (room_.meets(box, [](const Room::Holder&) { return false; })) return;
        room_.take({box, {}});
        into.push_back(std::move(text));
    }
    void placeText(TextLayout::Text text) { placeText(std::move(text), result_.map); }

    const GlobeFrame& frame_;
    const Camera& camera_;
    TextSizes sizes_;
    Room room_;
    TextLayout result_;
};

}  // namespace

TextLook lookOf(const DrawList::Label& label) {
    const auto argb = [](const Rgba& c) { return qRgba(c.r, c.g, c.b, c.a); };
    return {fontForFile(QString::fromStdString(label.fontName), label.pixelSize), argb(label.color),
            argb(label.outlineColor), label.outlineWidth};
}

TextLook platformLook() {
    return {fontForFile(QStringLiteral("arial.ttf"), 13), 0xffffffff, 0xb0000000, 1};
}

QRectF areaOf(const ScreenText& text) {
    const QFontMetricsF metrics(fontForFile(QString::fromStdString(text.fontFile), text.pixelSize));
    const QStringList lines = QString::fromStdString(text.text).split(QLatin1Char('\n'));
    double width = 0.0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    if (width == 0.0) return {};
    return QRectF(text.x, text.y, width, metrics.lineSpacing() * static_cast<double>(lines.size()))
        .adjusted(-8.0, -4.0, 8.0, 5.0);
}

QRectF areaOfScale(const GlobeFrame& frame) {
    const Camera& camera = frame.camera;
    const ScaleBar bar = scaleBar(camera, ScaleBar::kMostPixels);
    const double width = std::max(bar.pixels, 60.0);
    QRectF area(camera.width() - ScaleBar::kMargin - bar.pixels / 2.0 - width / 2.0 - 8.0,
                camera.height() - ScaleBar::kMargin - 24.0, width + 16.0, 32.0);
    // Each text may push it into the next one.
    for (std::size_t i = 0; i < frame.screenTexts.size(); ++i)
        for (const auto& [id, text] : frame.screenTexts)
            if (const QRectF other = areaOf(text); other.intersects(area)) area.moveBottom(other.top());
    return area;
}

TextLayout layOutTexts(const GlobeFrame& frame, std::span<const DrawList::Label* const> labels,
                       std::span<const GraticuleLabel> graticule) {
    Layout layout(frame);
    layout.placeLabels(labels);
    layout.placePlatforms();
    layout.placeMap(graticule);
    return layout.take();
}

}  // namespace sandbox
