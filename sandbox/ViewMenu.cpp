#include "sandbox/ViewMenu.h"

#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <optional>

#include "geo/AngleText.h"
#include "geo/Angles.h"
#include "globe/GlobeView.h"
#include "sandbox/Settings.h"

namespace sandbox {

using halCore::kHalfPi;

namespace {

constexpr double kWholeEarth = 2.3e7;
constexpr double kClose = 2.0e5;

/// "21.3 -158", "21°18'N, 158°W": two angles, parted by a comma or else by the middle blank.
std::optional<halCore::Vec3> readPlace(const QString& text) {
    QStringList parts = text.split(',', Qt::SkipEmptyParts);
    if (parts.size() == 1) {
        const QStringList words = text.simplified().split(' ');
        const auto half = words.size() / 2;
        parts = {words.mid(0, half).join(' '), words.mid(half).join(' ')};
    }
    if (parts.size() != 2) return std::nullopt;
    double lat = 0.0;
    double lon = 0.0;
    using halCore::AngleKind;
    if (halCore::readAngle(parts[0].trimmed().toStdString(), lat,
                           {.kind = AngleKind::Latitude, .checkRange = true}) != 0 ||
        halCore::readAngle(parts[1].trimmed().toStdString(), lon,
                           {.kind = AngleKind::Longitude, .checkRange = true}) != 0)
        return std::nullopt;
    return halCore::Vec3(lat, lon, 0.0);
}

void askForPlace(GlobeView& view) {
    const QString text = QInputDialog::getText(view.window(), "Fly To", "Latitude, longitude:");
    if (text.trimmed().isEmpty()) return;
    const std::optional<halCore::Vec3> place = readPlace(text);
    if (!place) {
        QMessageBox::warning(view.window(), "Fly To", QString("\"%1\" is no place").arg(text));
        return;
    }
    Camera target = view.camera();
    target.setCenter(*place);
    target.setRange(std::min(target.range(), kClose));
    view.flyTo(target);
}

void showWholeEarth(GlobeView& view) {
    Camera target = view.camera();
    target.setRangeAzimuthElevation(kWholeEarth, 0.0, kHalfPi);
    view.flyTo(target);
}

void addMapOption(QMenu& menu, GlobeView& view, Settings& settings, const QString& caption,
                  bool MapOptions::*option, bool shownAtFirst) {
    const QString key = "View/" + QString(caption).remove('&').remove(' ');
    const QString kept = settings.value(key);
    const bool shown = kept.isEmpty() ? shownAtFirst : kept == "true";
    const auto apply = [&view, option](bool on) {
        MapOptions options = view.mapOptions();
        options.*option = on;
        view.setMapOptions(options);
    };
    apply(shown);
    QAction* action = menu.addAction(caption);
    action->setCheckable(true);
    action->setChecked(shown);
    QObject::connect(action, &QAction::toggled, &view, [apply, &settings, key](bool on) {
        apply(on);
        settings.setValue(key, on ? "true" : "false");
    });
}

}  // namespace

void fillViewMenu(QMenu& menu, GlobeView& view, Settings& settings) {
    menu.addSeparator();
    menu.addAction("Zoom &In", QKeySequence::ZoomIn, &view, [&view] { view.zoom(0.5); });
    menu.addAction("Zoom &Out", QKeySequence::ZoomOut, &view, [&view] { view.zoom(2.0); });
    menu.addAction("&Whole Earth", QKeySequence("Ctrl+0"), &view, [&view] { showWholeEarth(view); });
    menu.addAction("&North Up", QKeySequence("Ctrl+Up"), &view, [&view] { view.turnNorthUp(); });
    menu.addAction("&Fly To...", QKeySequence("Ctrl+G"), &view, [&view] { askForPlace(view); });
    menu.addSeparator();
    addMapOption(menu, view, settings, "&Graticule", &MapOptions::graticule, true);
    addMapOption(menu, view, settings, "&Coastlines", &MapOptions::coastlines, true);
    addMapOption(menu, view, settings, "&Borders", &MapOptions::borders, true);
    addMapOption(menu, view, settings, "&Land and Sea", &MapOptions::land, true);
    addMapOption(menu, view, settings, "Country &Names", &MapOptions::names, true);
    addMapOption(menu, view, settings, "&Scale Bar", &MapOptions::scaleBar, true);
}

}  // namespace sandbox
