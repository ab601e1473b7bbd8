#include "sandbox/Session.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <map>

#include "globe/GlobeView.h"
#include "sandbox/OverlayFiles.h"
#include "sandbox/Settings.h"
#include "sandbox/UserFiles.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

namespace {

const char* const kKey = "Host/Session";
constexpr int kKeepMilliseconds = 1000;

QString fromBytes(const std::string& text) {
    return QString::fromStdString(text);
}

/// The platform that a row of the session means: that of the file, or the user's own, by its name.
std::uint64_t findPlatform(const Scenario& scenario, const QJsonObject& row) {
    if (!row.contains("platform")) return 0;
    for (const auto& [id, platform] : scenario.platforms())
        if (fromBytes(platform.name) == row["platform"].toString() &&
            fromBytes(platform.file.text()) == row["platformFile"].toString())
            return id;
    return 0;
}

QJsonObject describe(const Camera& camera) {
    return {{"lat", camera.center().lat()}, {"lon", camera.center().lon()},
            {"alt", camera.center().alt()}, {"range", camera.range()},
            {"azimuth", camera.azimuth()},  {"elevation", camera.elevation()}};
}

}  // namespace

Session::Session(UserFiles& files, OverlayFiles& overlays, Scenario& scenario, GlobeView& view,
                 Settings& settings)
    : files_(files), overlays_(overlays), scenario_(scenario), view_(view), settings_(settings) {
    keepSoon_.setSingleShot(true);
    keepSoon_.setInterval(kKeepMilliseconds);
    connect(&keepSoon_, &QTimer::timeout, this, &Session::keep);
    connect(&overlays_, &OverlayFiles::filesChanged, this, &Session::keepSoon);
    connect(&scenario_, &Scenario::platformAdded, this, &Session::keepSoon);
    connect(&scenario_, &Scenario::platformRemoved, this, &Session::keepSoon);
    connect(&scenario_, &Scenario::timeChanged, this, &Session::keepSoon);
    connect(&scenario_, &Scenario::clockChanged, this, &Session::keepSoon);
    connect(&view_, &GlobeView::cameraChanged, this, &Session::keepSoon);
}

void Session::keepSoon() {
    if (keeping_ && !keepSoon_.isActive()) keepSoon_.start();
}

void Session::begin() {
    keeping_ = true;
    // What was named at the start may be all that there will ever be.
    keepSoon_.start();
}

void Session::finish() {
    keep();
    keeping_ = false;
    keepSoon_.stop();
}

void Session::keep() {
    if (!keeping_) return;
    settings_.setValue(kKey, text());
    emit kept();
}

QString Session::text() const {
    QJsonArray platforms;
    for (const auto& [id, platform] : scenario_.platforms()) {
        const auto point = scenario_.at(id, scenario_.time());
        if (platform.owner || !platform.file.empty() || !point) continue;
        platforms << QJsonObject{{"name", fromBytes(platform.name)},
                                 {"icon", fromBytes(platform.icon.text())},
                                 {"lat", point->latRad},
                                 {"lon", point->lonRad},
                                 {"alt", point->altMeters},
                                 {"heading", point->headingRad},
                                 {"speed", point->speedMetersPerSecond}};
    }
    QJsonArray overlays;
    for (const LoadedOverlay* overlay : overlays_.files()) {
        QJsonObject row{{"path", fromBytes(overlay->path)}, {"shown", overlay->wanted}};
        if (const Scenario::Platform* platform = scenario_.find(overlay->platform)) {
            row["platform"] = fromBytes(platform->name);
            row["platformFile"] = fromBytes(platform->file.text());
        }
        overlays << row;
    }
    const QJsonObject session{
        {"platformFiles", QJsonArray::fromStringList(files_.platformFiles())},
        {"platforms", platforms},
        {"overlays", overlays},
        {"camera", describe(view_.camera())},
        {"time", scenario_.time()},
        {"rate", scenario_.rate()},
        {"running", scenario_.isRunning()},
    };
    return QString::fromUtf8(QJsonDocument(session).toJson(QJsonDocument::Compact));
}

void Session::restore() {
    const QJsonObject session = QJsonDocument::fromJson(settings_.value(kKey).toUtf8()).object();
    if (session.isEmpty()) return;
    open(session);
    emit restored();
}

void Session::open(const QJsonObject& session) {
    for (const QJsonValue& file : session["platformFiles"].toArray()) files_.open(file.toString());
    // A platform file opens what it names; the session knows better.
    for (LoadedOverlay* overlay : overlays_.files()) overlays_.unload(*overlay);
    const double time = session["time"].toDouble();
    scenario_.setTime(time);
    for (const QJsonValue& value : session["platforms"].toArray()) {
        const QJsonObject row = value.toObject();
        PIData::PIPlatformHeader header;
        header.name = row["name"].toString().toStdString();
        header.icon = row["icon"].toString().toStdString();
        PIData::PIDataPoint point;
        point.timeSeconds = time;
        point.latRad = row["lat"].toDouble();
        point.lonRad = row["lon"].toDouble();
        point.altMeters = row["alt"].toDouble();
        point.headingRad = row["heading"].toDouble();
        point.speedMetersPerSecond = row["speed"].toDouble();
        scenario_.add(header, point);
    }
    for (const QJsonValue& value : session["overlays"].toArray()) {
        const QJsonObject row = value.toObject();
        overlays_.loadFile(row["path"].toString().toStdString(), findPlatform(scenario_, row),
                           row["shown"].toBool(true));
    }
    if (const double rate = session["rate"].toDouble(); rate > 0.0) scenario_.setRate(rate);
    if (session["running"].toBool()) scenario_.setRunning(true);
    const QJsonObject camera = session["camera"].toObject();
    if (camera.isEmpty()) return;
    view_.setCenter({camera["lat"].toDouble(), camera["lon"].toDouble(), camera["alt"].toDouble()});
    view_.setRangeAzimuthElevation(camera["range"].toDouble(), camera["azimuth"].toDouble(),
                                   camera["elevation"].toDouble());
}

}  // namespace sandbox
