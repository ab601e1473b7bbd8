#include <QEvent>
#include <QFontMetrics>

#include "globe/GlobeView.h"
#include "globe/Sprites.h"
#include "sandbox/Host.h"
#include "sandbox/services/ScreenTextRecord.h"
#include "sandbox/services/Services.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

/// A text of a plug-in's over the view; it keeps its corner when the view changes its size.
class PlacedText final : public HostObject {
  public:
    PlacedText(GlobeView& view, const ScreenTextRecord& record) : view_(view), record_(record) {}
    ~PlacedText() override {
        QObject::disconnect(resized_);
        view_.removeScreenText(id());
    }

    QString describe() const override { return QString("screen text \"%1\"").arg(record_.text); }

    /// To be called once the text has its handle, which is its id in the view.
    void show() {
        resized_ = QObject::connect(&view_, &GlobeView::cameraChanged, &view_, [this] {
            if (view_.size() != placedIn_) place();
        });
        place();
    }

  private:
    std::uint64_t id() const { return reinterpret_cast<std::uint64_t>(handle()); }

    void place() {
        placedIn_ = view_.size();
        if (!record_.enabled) return;
        const QFont font = fontForFile(record_.fontFile, record_.fontSize);
        const QSize size = QFontMetrics(font).size(0, record_.text);
        ScreenText text{.id = id(),
                        .text = record_.text.toStdString(),
                        .x = record_.x,
                        .y = record_.y,
                        .argb = record_.argb,
                        .pixelSize = record_.fontSize,
                        .fontFile = record_.fontFile.toStdString()};
        if (record_.alignment & Qt::AlignRight) text.x = view_.width() - record_.x - size.width();
        if (record_.alignment & Qt::AlignHCenter)
            text.x = view_.width() / 2.0 + record_.x - size.width() / 2.0;
        if (record_.alignment & Qt::AlignBottom) text.y = view_.height() - record_.y - size.height();
        if (record_.alignment & Qt::AlignVCenter)
            text.y = view_.height() / 2.0 + record_.y - size.height() / 2.0;
        view_.setScreenText(text);
    }

    GlobeView& view_;
    ScreenTextRecord record_;
    QSize placedIn_;
    QMetaObject::Connection resized_;
};

/// A line between two platforms that follows them, drawn as an overlay. It goes with its platforms.
class AnimatedLine final : public HostObject {
  public:
    AnimatedLine(Host& host, std::uint64_t from, std::uint64_t to, std::uint32_t rgba)
        : host_(host), from_(from), to_(to), rgba_(rgba) {
        const auto update = [this](std::uint64_t id) {
            if (id == from_ || id == to_) draw();
        };
        moved_ = QObject::connect(&host.scenario(), &Scenario::platformMoved, &host, update);
        passed_ = QObject::connect(&host.scenario(), &Scenario::timeChanged, &host, [this] {
            if (host_.scenario().moves(from_) || host_.scenario().moves(to_)) draw();
        });
        removed_ = QObject::connect(&host.scenario(), &Scenario::platformRemoved, &host, update);
        draw();
    }
    ~AnimatedLine() override {
        QObject::disconnect(moved_);
        QObject::disconnect(passed_);
        QObject::disconnect(removed_);
        host_.view().overlays().remove(scene_);
    }

    QString describe() const override { return QString("line from platform %1 to %2").arg(from_).arg(to_); }

  private:
    void draw() {
        OverlayScene& scene = host_.view().overlays();
        scene.remove(scene_);
        scene_ = 0;
        const double time = host_.scenario().time();
        const auto from = host_.scenario().at(from_, time);
        const auto to = host_.scenario().at(to_, time);
        const auto end = [&](std::size_t i) { return i == 0 ? *from : *to; };
        if (from && to) scene_ = scene.add(OverlayFiles::line(2, end, rgba_, 2));
    }

    Host& host_;
    std::uint64_t from_;
    std::uint64_t to_;
    std::uint32_t rgba_;
    OverlayScene::Id scene_ = 0;
    QMetaObject::Connection moved_;
    QMetaObject::Connection passed_;
    QMetaObject::Connection removed_;
};

}  // namespace

void addScreenServices(Host& host) {
    ServiceTable& table = host.services();
    table.addSelected(Id::ScreenText, PISelector::ScreenText::Add, "add screen text", {.texts = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          QString error;
                          const auto record = ScreenTextRecord::parse(arguments.text(0), error);
                          if (!record) return call.misuse(error);
                          auto* text = call.keep(std::make_unique<PlacedText>(host.view(), *record));
                          text->show();
                          arguments.give(text->handle());
                          return 1;
                      });
    table.addSelected(Id::ScreenText, PISelector::ScreenText::Remove, "remove screen text", {.pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!call.object<PlacedText>(arguments.pointer(0), "screen text")) return 0;
                          call.handles().remove(arguments.pointer(0));
                          return 1;
                      });
    table.addSelected(Id::AnimatedLine, PISelector::AnimatedLine::Create, "create line", {.integers = 3},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto from = static_cast<std::uint64_t>(arguments.integer(0));
                          const auto to = static_cast<std::uint64_t>(arguments.integer(1));
                          for (const std::uint64_t id : {from, to})
                              if (!host.scenario().find(id))
                                  return call.misuse(QString("unknown platform %1").arg(id));
                          auto* line = call.keep(std::make_unique<AnimatedLine>(
                              host, from, to, static_cast<std::uint32_t>(arguments.integer(2))));
                          arguments.give(line->handle());
                          return 1;
                      });
    table.addSelected(Id::AnimatedLine, PISelector::AnimatedLine::Remove, "remove line", {.pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!call.object<AnimatedLine>(arguments.pointer(0), "line")) return 0;
                          call.handles().remove(arguments.pointer(0));
                          return 1;
                      });
}

}  // namespace sandbox
