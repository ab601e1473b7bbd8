#include "sandbox/ViewMenu.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <optional>

#include "geo/Angles.h"
#include "globe/GlobeView.h"
#include "sandbox/PlaceText.h"
#include "sandbox/Settings.h"

namespace sandbox {

using halCore::kHalfPi;

namespace {

constexpr double kClose = 2.0e5;

/// Asks again, with what was typed, until it is a place or the user gives up.
void askForPlace(GlobeView& view) {
    QString text;
    QString prompt = "Latitude and longitude, or an MGRS reference:";
    for (;;) {
        bool accepted = false;
        text = QInputDialog::getText(view.window(), "Fly To", prompt, QLineEdit::Normal, text, &accepted);
        if (!accepted || text.trimmed().isEmpty()) return;
        QString reason;
        if (const std::optional<halCore::Vec3> place = readPlace(text, reason)) {
            Camera target = view.camera();
            target.setCenter(*place);
            target.setRange(std::min(target.range(), kClose));
            view.flyTo(target);
            return;
        }
        prompt = reason;
    }
}

void showWholeEarth(GlobeView& view) {
    Camera target = view.camera();
    target.setRangeAzimuthElevation(Camera::kWholeEarthRange, 0.0, kHalfPi);
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
    addMapOption(menu, view, settings, "Land and Se&a", &MapOptions::land, true);
    addMapOption(menu, view, settings, "Countr&y Names", &MapOptions::names, true);
    addMapOption(menu, view, settings, "&Scale Bar", &MapOptions::scaleBar, true);
}

}  // namespace sandbox
