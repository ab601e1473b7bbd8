#pragma once

class QMenu;

namespace sandbox {

class GlobeView;
class Settings;

/// Adds what the user can do with the view: zoom, north up, fly to a place, and what is shown on the map. The
/// latter is remembered in the settings. The three must outlive the menu's actions.
void fillViewMenu(QMenu& menu, GlobeView& view, Settings& settings);

}  // namespace sandbox
