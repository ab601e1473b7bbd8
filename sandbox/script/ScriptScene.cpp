#include "sandbox/script/ScriptScene.h"

#include <QFileInfo>

#include "geo/Angles.h"
#include "globe/GlobeView.h"
#include "sandbox/Host.h"
#include "sandbox/Session.h"
#include "sandbox/UserFiles.h"
#include "sandbox/script/ScriptRun.h"

namespace sandbox {

using halCore::kRadiansPerDegree;

namespace {

void setIfGiven(const QVariantMap& values, const char* name, double unit, double& out) {
    if (!values.contains(name)) return;
    bool good = false;
    out = values[name].toDouble(&good) * unit;
    if (!good) throw ScriptError{QString("%1 is no number").arg(name)};
}

PIData::PIDataPoint pointOf(const QVariantMap& values, PIData::PIDataPoint point) {
    setIfGiven(values, "lat", kRadiansPerDegree, point.latRad);
    setIfGiven(values, "lon", kRadiansPerDegree, point.lonRad);
    setIfGiven(values, "alt", 1.0, point.altMeters);
    setIfGiven(values, "heading", kRadiansPerDegree, point.headingRad);
    setIfGiven(values, "pitch", kRadiansPerDegree, point.pitchRad);
    setIfGiven(values, "roll", kRadiansPerDegree, point.rollRad);
    setIfGiven(values, "speed", 1.0, point.speedMetersPerSecond);
    return point;
}

QVariantMap describe(const LoadedOverlay& overlay) {
    const QString path = QString::fromStdString(overlay.path);
    return {{"name", QFileInfo(path).fileName()},
            {"path", path},
            {"text", QString::fromStdString(overlay.text)},
            {"shown", overlay.shown},
            {"platform", static_cast<double>(overlay.platform)},
            {"stream", overlay.isStream()}};
}

}  // namespace

double ScriptScene::addPlatform(const QVariantMap& values) {
    return step([&] {
        PIData::PIPlatformHeader header;
        header.name = values.value("name", "Platform").toString().toStdString();
        header.icon = values.value("icon").toString().toStdString();
        PIData::PIDataPoint start;
        start.timeSeconds = host().scenario().time();
        return static_cast<double>(host().scenario().add(header, pointOf(values, start)));
    });
}

void ScriptScene::movePlatform(double id, const QVariantMap& values) {
    step([&] {
        const auto platform = static_cast<std::uint64_t>(id);
        const auto now = host().scenario().at(platform, host().scenario().time());
        if (!now) throw ScriptError{QString("there is no platform %1").arg(id)};
        host().scenario().move(platform, pointOf(values, *now));
    });
}

void ScriptScene::removePlatform(double id) {
    step([&] {
        if (!host().scenario().remove(static_cast<std::uint64_t>(id)))
            throw ScriptError{QString("there is no platform %1").arg(id)};
    });
}

QVariantList ScriptScene::platforms() {
    return step([&] {
        QVariantList result;
        for (const auto& [id, platform] : host().scenario().platforms()) {
            const auto point =
                host().scenario().at(id, host().scenario().time()).value_or(platform.track.point(0));
            result << QVariantMap{{"id", static_cast<double>(id)},
                                  {"name", QString::fromStdString(platform.name)},
                                  {"icon", QString::fromStdString(platform.icon.text())},
                                  {"lat", point.latRad / kRadiansPerDegree},
                                  {"lon", point.lonRad / kRadiansPerDegree},
                                  {"alt", point.altMeters},
                                  {"heading", point.headingRad / kRadiansPerDegree}};
        }
        return result;
    });
}

void ScriptScene::clearScenario(const QString& why) {
    step([&] {
        if (why == "cleared")
            host().scenario().clear(PIApplicationEvents_t::ScenarioCleared);
        else if (why == "replaced")
            host().scenario().clear(PIApplicationEvents_t::ScenarioReplaced);
        else if (why == "closed")
            host().scenario().clear(PIApplicationEvents_t::ScenarioClosed);
        else
            throw ScriptError{"a scenario is \"cleared\", \"replaced\" or \"closed\""};
    });
}

double ScriptScene::time() {
    return host().scenario().time();
}

void ScriptScene::setTime(double seconds) {
    step([&] { host().scenario().setTime(seconds); });
}

QVariantList ScriptScene::overlays() {
    return step([&] {
        QVariantList result;
        for (const LoadedOverlay* overlay : host().overlays().files()) result << describe(*overlay);
        for (const LoadedOverlay* overlay : host().overlays().streams()) result << describe(*overlay);
        return result;
    });
}

bool ScriptScene::openOverlay(const QString& path, double platform) {
    return step([&] {
        const auto id = static_cast<std::uint64_t>(platform);
        if (id == 0) return host().files().open(path);
        if (!host().scenario().find(id)) throw ScriptError{QString("there is no platform %1").arg(id)};
        return host().overlays().loadFile(path.toStdString(), id, true) != nullptr;
    });
}

QVariantList ScriptScene::screenTexts() {
    return step([&] {
        QVariantList result;
        for (const auto& [id, text] : host().view().screenTexts())
            result << QVariantMap{{"text", QString::fromStdString(text.text)}, {"x", text.x}, {"y", text.y}};
        return result;
    });
}

QVariantList ScriptScene::log() {
    return step([&] {
        QVariantList result;
        for (const LogEntry& entry : host().log().entries())
            result << QVariantMap{
                {"severity", entry.severity}, {"source", entry.source}, {"text", entry.text}};
        return result;
    });
}

void ScriptScene::keepSession() {
    step([&] {
        host().session().begin();
        host().session().finish();
    });
}

void ScriptScene::restoreSession() {
    step([&] { host().session().restore(); });
}

QString ScriptScene::setting(const QString& key) {
    return host().settings().value(key);
}

void ScriptScene::setSetting(const QString& key, const QString& value) {
    step([&] { host().settings().setValue(key, value); });
}

QString ScriptScene::settingsFile() {
    host().settings().flush();
    return host().settings().fileName();
}

QString ScriptScene::status() {
    return step([&] { return host().window().statusText(); });
}

QVariantList ScriptScene::plugins() {
    return step([&] {
        QVariantList result;
        for (const auto& plugin : host().plugins()) {
            result << QVariantMap{{"name", plugin->name()},
                                  {"path", QString::fromStdString(plugin->path().string())},
                                  {"description", plugin->text(PIClientFunctions_t::Description)},
                                  {"author", plugin->text(PIClientFunctions_t::Author)},
                                  {"version", plugin->text(PIClientFunctions_t::Version)},
                                  {"url", plugin->text(PIClientFunctions_t::URL)},
                                  {"contact", plugin->text(PIClientFunctions_t::ContactInfo)}};
        }
        return result;
    });
}

bool ScriptScene::openPlugin(const QString& path) {
    return step([&] { return host().openPlugin(path.toStdString()) != nullptr; });
}

QVariantMap ScriptScene::closePlugin(const QString& name) {
    return step([&] {
        for (const auto& plugin : host().plugins()) {
            if (plugin->name() != name) continue;
            const std::size_t before = host().log().entries().size();
            const bool gone = host().closePlugin(*plugin);
            QString leftBehind;
            const QString mark = name + " left behind: ";
            for (std::size_t i = before; i < host().log().entries().size(); ++i)
                if (const QString& text = host().log().entries()[i].text; text.startsWith(mark))
                    leftBehind = text.mid(mark.size());
            return QVariantMap{{"gone", gone}, {"leftBehind", leftBehind}};
        }
        throw ScriptError{QString("no plug-in \"%1\" is open").arg(name)};
    });
}

void ScriptScene::expectMisuse() {
    step([&] { run().setExpectingMisuse(true); });
}

QStringList ScriptScene::takeMisuses() {
    run().settle();
    run().setExpectingMisuse(false);
    return host().log().takeMisuses();
}

}  // namespace sandbox
