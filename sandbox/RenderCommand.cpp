#include "sandbox/RenderCommand.h"

#include <QColor>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "common/Files.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "format/Parser.h"
#include "geo/Angles.h"
#include "globe/Camera.h"
#include "globe/GlobePicture.h"
#include "globe/GlobeView.h"
#include "globe/SceneExtent.h"
#include "sandbox/OverlayNotes.h"
#include "sandbox/PlatformView.h"
#include "sandbox/SizeText.h"
#include "sandbox/TrackLines.h"
#include "sandbox/UserFiles.h"
#include "sandbox/ViewPicture.h"
#include "sandbox/scenario/PlatformFile.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

using halCore::kHalfPi;
using halCore::kRadiansPerDegree;

namespace {

constexpr int kMostPixels = PictureLook::kMostPixels;

enum Status { kGood = 0, kWithMessages = 1, kNoPicture = 2 };

struct Look {
    halCore::Vec3 center;
    double range = 0.0;
    double azimuth = 0.0;
    double elevation = kHalfPi;
};

struct RenderJob {
    QStringList files;
    QString output;
    QSize size;
    double density = 1.0;
    std::optional<Look> look;    ///< nothing: everything that the files hold
    std::optional<double> time;  ///< of the scenario; nothing: its begin
    Backdrop backdrop;
    MapOptions map;
    QImage earth;
};

/// A wrong command line, in the user's words.
using Complaint = QString;

std::optional<Look> readLook(const QString& text) {
    std::vector<double> numbers;
    for (const QString& part : text.split(',')) {
        const std::optional<double> number = UTILS::readNumber(part.trimmed().toStdString());
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    if (numbers.size() < 3 || numbers.size() > 5) return std::nullopt;
    if (std::abs(numbers[0]) > 90.0 || !(numbers[2] > 0.0)) return std::nullopt;
    Look look{{numbers[0] * kRadiansPerDegree, numbers[1] * kRadiansPerDegree, 0.0}, numbers[2]};
    if (numbers.size() > 3) look.azimuth = numbers[3] * kRadiansPerDegree;
    if (numbers.size() > 4) look.elevation = numbers[4] * kRadiansPerDegree;
    return look;
}

std::optional<Complaint> readBackground(const QString& text, RenderJob& job) {
    if (text == "earth") {
        job.earth = QImage(GlobeView::defaultEarthImage());
    } else if (text == "none") {
        job.backdrop = {.earth = false, .color = QColor(0, 0, 0, 0)};
    } else if (QFileInfo::exists(text)) {
        job.earth = QImage(text);
        if (job.earth.isNull()) return QString("--background %1: no picture").arg(text);
    } else if (const QColor color(text); color.isValid()) {
        job.backdrop = {.earth = false, .color = color};
    } else if (text != "plain") {
        return QString("--background %1: expected earth, plain, none, a colour or a picture of the earth")
            .arg(text);
    }
    return std::nullopt;
}

std::optional<MapOptions> readMap(const QString& text) {
    MapOptions map;
    for (const QString& word : text.split(',', Qt::SkipEmptyParts)) {
        if (word == "graticule")
            map.graticule = true;
        else if (word == "coast")
            map.coastlines = true;
        else if (word == "borders")
            map.borders = true;
        else if (word == "land")
            map.land = true;
        else if (word == "names")
            map.names = true;
        else if (word == "scale")
            map.scaleBar = true;
        else
            return std::nullopt;
    }
    return map;
}

std::variant<RenderJob, Complaint> readJob(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Draws overlay files and platforms as a picture.");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption render("render", "Draw a picture instead of opening the window.");
    const QCommandLineOption output({"o", "output"}, "Picture to write: .png, or .svg for print.", "file");
    const QCommandLineOption size("size", "Size of the picture, such as 1600x1000.", "WxH", "1280x800");
    const QCommandLineOption density("density", "Pixels for each of the size's: 2 for a fine screen.",
                                     "factor", "1");
    const QCommandLineOption view(
        "view", "Where to look, in degrees, and from how many metres. Without it: at all shapes.",
        "LAT,LON,RANGE[,AZIMUTH[,ELEVATION]]");
    const QCommandLineOption background(
        "background",
        "earth, plain, none (transparent), a colour such as white or #203040, or a picture of the "
        "earth.",
        "what", "earth");
    const QCommandLineOption time("time", "When to look at platforms. Without it: where their tracks begin.",
                                  "ISO 8601 or seconds");
    const QCommandLineOption map("map", "What else to show, such as graticule,scale. Without files: all.",
                                 "graticule,coast,borders,land,names,scale");
    parser.addOptions({render, output, size, density, view, background, time, map});
    parser.addPositionalArgument(
        "files", "Overlay files, or platforms (.csv); none, with --view, for the map alone.", "[FILE...]");
    if (!parser.parse(arguments)) return parser.errorText();
    if (parser.isSet("help")) parser.showHelp();
    if (parser.isSet("version")) parser.showVersion();

    RenderJob job;
    job.files = parser.positionalArguments();
    job.output = parser.value(output);
    if (job.files.isEmpty() && !parser.isSet(view))
        return QString("--render: which files? To draw the map alone, say where to look with --view");
    if (job.output.isEmpty()) return QString("--render: -o FILE is missing");
    job.size = readSize(parser.value(size));
    if (job.size.isEmpty()) return QString("--size %1: expected WIDTHxHEIGHT").arg(parser.value(size));
    job.density = UTILS::readNumber(parser.value(density).toStdString()).value_or(0.0);
    if (job.density < 0.5 || job.density > 8.0)
        return QString("--density %1: expected a number from 0.5 to 8").arg(parser.value(density));
    if (std::max(job.size.width(), job.size.height()) * job.density > kMostPixels)
        return QString("the picture is larger than %1 pixels").arg(kMostPixels);
    if (parser.isSet(view)) {
        job.look = readLook(parser.value(view));
        if (!job.look)
            return QString("--view %1: expected LAT,LON,RANGE[,AZIMUTH[,ELEVATION]]").arg(parser.value(view));
    }
    if (parser.isSet(time)) {
        job.time = readScenarioTime(parser.value(time).toStdString(), Scenario::kReferenceYear);
        if (!job.time) return QString("--time %1: expected ISO 8601 or seconds").arg(parser.value(time));
    }
    if (job.files.isEmpty() && !parser.isSet(map))
        job.map = {.graticule = true,
                   .land = true,
                   .coastlines = true,
                   .borders = true,
                   .names = true,
                   .scaleBar = true};
    else if (const auto wanted = readMap(parser.value(map)))
        job.map = *wanted;
    else
        return QString("--map %1: expected some of graticule,coast,borders,land,names,scale")
            .arg(parser.value(map));
    if (const auto complaint = readBackground(parser.value(background), job)) return *complaint;
    return job;
}

/// One line on standard error, with its place.
void complain(const std::string& file, std::size_t line, std::string_view text) {
    std::string place = UTILS::printable(file);
    if (line != 0) place.append(":").append(std::to_string(line));
    std::fprintf(stderr, "%s: %s\n", place.c_str(), UTILS::printable(text, UTILS::kLongestShown).c_str());
}

/// The files' shapes and platforms, and whether nothing was wrong with them.
class Stage {
  public:
    bool good = true;
    bool whole = true;  ///< every file could be read
    OverlayScene scene;
    Scenario scenario;

    /// Platforms come first: what is attached to them counts from where they are then.
    void load(const RenderJob& job) {
        for (const QString& file : job.files)
            if (UserFiles::isPlatformFile(file)) loadPlatforms(file);
        if (job.time) scenario.setTime(*job.time);
        for (const auto& [file, platform] : attached_) loadOverlay(file, platform);
        for (const QString& file : job.files)
            if (!UserFiles::isPlatformFile(file)) loadOverlay(file, 0);
    }

    EachPlatform platforms() const {
        return [this](const auto& take) {
            for (const auto& [id, platform] : scenario.platforms())
                if (const auto marker = markerOf(id, platform, scenario.time())) take(*marker);
        };
    }

  private:
    bool read(const std::string& path, std::string& text) {
        const std::string error = UTILS::readFile(path, text);
        if (error.empty()) return true;
        fault(path, 0, error);
        whole = false;
        return false;
    }
    void fault(const std::string& path, std::size_t line, std::string_view text) {
        complain(path, line, text);
        good = false;
    }

    void loadPlatforms(const QString& file) {
        const std::string path = file.toLocal8Bit().toStdString();
        std::string text;
        if (!read(path, text)) return;
        PlatformFile found = readPlatformFile(text, Scenario::kReferenceYear);
        std::string().swap(text);
        for (const PlatformFile::Message& message : found.messages) fault(path, message.line, message.text);
        if (found.platforms.empty()) fault(path, 0, "holds no platform");
        std::unordered_map<std::string, SharedText> overlays;
        for (const PlatformFile::Platform& platform : found.platforms)
            if (!platform.overlay.empty()) overlays[platform.name] = platform.overlay;
        scenario.load(path, std::move(found.platforms));
        if (overlays.empty()) return;
        for (const auto& [id, platform] : scenario.platforms())
            if (const auto at = overlays.find(platform.name);
                at != overlays.end() && platform.file.text() == path)
                attached_.emplace_back(
                    QFileInfo(file).dir().filePath(QString::fromStdString(at->second.text())), id);
    }

    void loadOverlay(const QString& file, std::uint64_t platform) {
        const std::string path = file.toLocal8Bit().toStdString();
        std::string text;
        if (!read(path, text)) return;
        OverlayScene::Shapes shapes;
        halCore::ZEL::ParseReport report;
        halCore::ZEL::Parser().parse(std::string_view(text), shapes, report);
        for (const auto& message : report.messages) fault(path, message.line, message.text);
        if (report.omittedMessages > 0)
            fault(path, 0, std::to_string(report.omittedMessages) + " more messages");
        if (report.unterminatedBlock > 0) fault(path, report.unterminatedBlock, "block without \"end\"");
        if (shapes.empty()) fault(path, 0, "holds no shape");
        const std::string directory = QFileInfo(file).absolutePath().toStdString();
        std::vector<OverlayNote> notes;
        takeNotes(shapes, directory, platform != 0, notes).finish();
        for (const OverlayNote& note : notes) {
            complain(path, report.shapeLines[note.shape], note.text);
            good = good && !note.isFault;
        }
        scene.add(std::move(shapes), referenceOf(scenario, platform), true, directory);
    }

    std::vector<std::pair<QString, std::uint64_t>> attached_;
    const TrackLines tracks_{scene, scenario};
};

Camera cameraFor(const RenderJob& job, const OverlayScene& scene, const Scenario& scenario) {
    Camera camera;
    camera.setViewport(job.size.width(), job.size.height());
    if (job.look) {
        camera.setCenter(job.look->center);
        camera.setRangeAzimuthElevation(job.look->range, job.look->azimuth, job.look->elevation);
        return camera;
    }
    std::vector<OverlayScene::Entry> entries;
    for (const auto& [id, entry] : scene.entries()) entries.push_back(entry);
    std::optional<SceneExtent> extent;
    measureExtent(std::move(entries), placesOf(scenario), extent).finish();
    if (extent) {
        const Outlook outlook = outlookOn(*extent, camera);
        camera.setCenter(outlook.center);
        camera.setRange(outlook.range);
    }
    return camera;
}

}  // namespace

int runRenderCommand(const QStringList& arguments) {
    const auto read = readJob(arguments);
    if (const auto* complaint = std::get_if<Complaint>(&read)) {
        std::fprintf(stderr, "%s\n", UTILS::printable(complaint->toStdString()).c_str());
        return kNoPicture;
    }
    const RenderJob& job = std::get<RenderJob>(read);
    Stage stage;
    stage.load(job);
    if (!stage.whole) return kNoPicture;

    GlobePicture picture;
    if (!picture.error().isEmpty()) {
        std::fprintf(stderr, "%s\n", UTILS::printable(picture.error().toStdString()).c_str());
        return kNoPicture;
    }
    picture.setEarthImage(job.earth);
    const Camera camera = cameraFor(job, stage.scene, stage.scenario);
    const GlobeFrame frame{.camera = camera,
                           .pixelRatio = job.density,
                           .backdrop = job.backdrop,
                           .map = job.map,
                           .overlays = stage.scene,
                           .platforms = stage.platforms(),
                           .screenTexts = {}};
    const QString problem = saveFrame(frame, picture, job.output);
    if (!problem.isEmpty()) {
        complain(job.output.toStdString(), 0, "cannot be written: " + problem.toStdString());
        return kNoPicture;
    }
    return stage.good ? kGood : kWithMessages;
}

}  // namespace sandbox
