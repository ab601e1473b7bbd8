#include "gui/OverlayEditorDialogWidgets.h"

#include <utility>

#include "geo/TspiUnitsProviderAdapter.h"

namespace OverlayEditor {

namespace {

constexpr std::uint32_t kFill = PIGUI::PILayoutFillX | PIGUI::PILayoutFillY;
constexpr const char* kAutoDelete = "\tDelete any ZEL files that were automatically created on exit";

/// "Easting/Northing:"
constexpr std::int32_t kCaptionLetters = 18;
/// A rectangle's.
constexpr std::int32_t kPanelRows = 16;
/// Caption, field and unit of a longitude.
constexpr std::int32_t kPanelLetters = 70;
/// The end of a path.
constexpr std::int32_t kFileLetters = 13;

}  // namespace

OverlayEditorDialog::UnitsMenu::UnitsMenu(PIGUI::PICanvas& table, const std::string& text,
                                          std::span<const UTILS::UnitType_t> choices,
                                          UTILS::UnitType_t chosen, FunctorTwoParams__* callback)
    : caption(&table, text), menu(&table, text.substr(text.find('\t')), callback) {
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(choices.size()); ++i) {
        const UTILS::UnitType_t choice = choices[static_cast<std::size_t>(i)];
        menu.appendOption(i, std::string(UTILS::unitsGetAbbreviation(choice)));
        if (choice == chosen) menu.setValue(i);
    }
}

OverlayEditorDialog::Widgets::Widgets(PIGUI::PIDialogBox& box, CallbackList<OverlayEditorDialog>& callbacks,
                                      MouseManager* mouseManager, const Preferences& preferences,
                                      const std::vector<Shape*>& prototypes, NextTarget nextTarget)
    : columns(&box, kFill),
      left(&columns, kFill),
      right(&columns, kFill),

      listGroup(&left, "All Shapes", kFill),
      list(&listGroup, PIGUI::PIListSingle),
      listButtons(&listGroup, PIGUI::PILayoutFillX),
      center(&listButtons, "Center\tCenter on the selected ZEL in HALVIS",
             callbacks.make(&OverlayEditorDialog::onCmdCenter)),
      remove(&listButtons, "Delete\tRemove the selected shape",
             callbacks.make(&OverlayEditorDialog::onCmdDelete)),
      removeAll(&listButtons, "Delete All\tRemove all shapes",
                callbacks.make(&OverlayEditorDialog::onCmdClear)),
      stepButtons(&listGroup, PIGUI::PILayoutFillX),
      undo(&stepButtons, "Undo", callbacks.make(&OverlayEditorDialog::onCmdUndo)),
      redo(&stepButtons, "Redo", callbacks.make(&OverlayEditorDialog::onCmdRedo)),
      duplicate(&stepButtons, "Duplicate\tCopy the selected shape, where it is",
                callbacks.make(&OverlayEditorDialog::onCmdDuplicate)),
      styleRow(&listGroup, PIGUI::PILayoutFillX),
      style(&styleRow, "Same style for all\tGive the selected shape's colors, width and filling to others",
            callbacks.make(&OverlayEditorDialog::onCmdSameStyle)),
      rings(&styleRow, "Rings...\tMake circles about one center",
            callbacks.make(&OverlayEditorDialog::onCmdRings)),

      generalGroup(&left, "General Options"),
      general(&generalGroup, 2),
      fileCaption(&general, "File:\tCurrently loaded ZEL file"),
      fileRow(&general, PIGUI::PILayoutFillX),
      file(&fileRow, PIGUI::PITextFieldReadOnly, nullptr),
      load(&fileRow, "...\tLoad a ZEL file from file system to edit",
           callbacks.make(&OverlayEditorDialog::onCmdLoadOverlay)),
      fresh(&fileRow, "New\tGive up the overlay and begin an empty one",
            callbacks.make(&OverlayEditorDialog::onCmdClear)),
      changesCaption(&general, "Changes:\tWhether the shapes are in the file as they are here"),
      changes(&general, "None"),
      attach(&general, mouseManager, callbacks.make(&OverlayEditorDialog::onCmdAttach),
             callbacks.make(&OverlayEditorDialog::onCmdSetMouseTool)),
      autoDeleteCaption(&general, std::string("Auto-delete:") + kAutoDelete),
      autoDelete(&general, kAutoDelete, callbacks.make(&OverlayEditorDialog::onCmdAutoDelete)),

      shapeGroup(&right, "Shape Controls"),
      shapeControls(&shapeGroup, 2),
      shapeCaption(&shapeControls, "Shape:\tSelect a shape to add it"),
      shape(&shapeControls, "\tSelect a shape to add it",
            callbacks.make(&OverlayEditorDialog::onCmdDrawShapeSelection)),
      mouseCaption(&shapeControls, "Mouse:\tEnable/disable mouse tool for drawing shape"),
      mouseButtons(&shapeControls, PIGUI::PILayoutFillX | PIGUI::PILayoutTight),
      edit(&mouseButtons, "Edit\tStart editing the selected Shape using the mouse controls",
           callbacks.make(&OverlayEditorDialog::onCmdStartDraw)),
      stop(&mouseButtons, "Stop\tStop editing the selected Shape with the mouse controls",
           callbacks.make(&OverlayEditorDialog::onCmdStop)),
      nameCaption(&shapeControls, "Name:\tName of the shape"),
      name(&shapeControls, PIGUI::PITextFieldNormal, callbacks.make(&OverlayEditorDialog::onCmdShapeName)),
      next(&shapeControls, std::move(nextTarget)),
      panelArea(&shapeGroup, PIGUI::PILayoutFillX | PIGUI::PILayoutTight),

      unitsGroup(&left, "Units"),
      units(&unitsGroup, 4),
      lla(units, "LLA:\tGeodetic units for all latitude and longitude fields", UTILS::geodeticUnitTypes(),
          preferences.geodeticUnits(), callbacks.make(&OverlayEditorDialog::onCmdLlaUnits)),
      altitude(units, "Alt:\tAltitude units for all altitude fields", UTILS::lengthUnitTypes(),
               preferences.altitudeUnits(), callbacks.make(&OverlayEditorDialog::onCmdAltitudeUnits)),
      angle(units, "Ang:\tAngle format for all non-latitude/longitude angle fields", UTILS::angleUnitTypes(),
            preferences.angleUnits(), callbacks.make(&OverlayEditorDialog::onCmdAngleUnits)),
      range(units, "Rng:\tRange units for all non-altitude distance fields", UTILS::lengthUnitTypes(),
            preferences.rangeUnits(), callbacks.make(&OverlayEditorDialog::onCmdRangeUnits)),
      precisionCaption(&units, "Prec:\tDecimal points to use for precision"),
      precision(&units, PIGUI::PISpinnerNormal, callbacks.make(&OverlayEditorDialog::onCmdPrecision)),
      digits(precision, "Prec", 0, UTILS::TspiUnitsProviderAdapter::kMaxPrecision),
      systemCaption(&units, "Pos:\tCoordinate system for all position fields"),
      system(&units, "\tCoordinate system for all position fields",
             callbacks.make(&OverlayEditorDialog::onCmdCoordinateSystem)),

      foot(&box, PIGUI::PILayoutFillX | PIGUI::PILayoutTight),
      footColumn(&foot, PIGUI::PILayoutFillX),
      messages(&footColumn, callbacks.make(&OverlayEditorDialog::onCmdAnswer),
               callbacks.make(&OverlayEditorDialog::onCmdCancelLoading),
               callbacks.make(&OverlayEditorDialog::onCmdRecoverLost),
               callbacks.make(&OverlayEditorDialog::onCmdDiscardLost)),
      buttons(&footColumn, PIGUI::PILayoutFillX),
      loadExisting(&buttons, "Load HALVIS...\tLoad a ZEL file currently loaded in HALVIS",
                   callbacks.make(&OverlayEditorDialog::onCmdLoadExisting)),
      save(&buttons, "Save\tSave the current shapes to the current ZEL file and reload it in HALVIS",
           callbacks.make(&OverlayEditorDialog::onCmdSave)),
      saveAs(&buttons, "Save As...\tSave the current shapes to a new ZEL file and load it in HALVIS",
             callbacks.make(&OverlayEditorDialog::onCmdSaveAs)),
      help(&buttons, "Help...\tLaunch the user manual", callbacks.make(&OverlayEditorDialog::onCmdHelp)),
      close(&buttons, "Close\tClose this dialog", callbacks.make(&OverlayEditorDialog::onCmdDismiss)) {
    list.mapFunction(callbacks.make(&OverlayEditorDialog::onCmdCurrentShapeSelection));
    autoDelete.setCheck(preferences.autoDelete());
    shape.appendOption(0, "Add");
    std::int32_t index = 0;
    for (const Shape* prototype : prototypes) shape.appendOption(++index, prototype->name());
    shape.setValue(0);
    index = 0;
    for (const char* choice : {"...", "of its kind", "shapes"}) style.appendOption(index++, choice);
    style.setValue(0);
    style.disable();
    digits.show(preferences.precision());
    for (const auto choice : {Preferences::LLA, Preferences::MGRS})
        system.appendOption(choice, preferences.getStringFromSystem(choice));
    system.setValue(preferences.coordinateSystem());
    // Widest of what can stand there, so that nothing moves from shape to shape.
    shapeCaption.setRoom(kCaptionLetters, 1);
    panelArea.setRoom(kPanelLetters, kPanelRows);
    file.setRoom(kFileLetters, 1);
    changes.setRoom(0, 2);
    name.disable();
    next.setEnabled(false);
    // The first uncheck makes a button a toggle button.
    for (PIGUI::PIButton* toggle : {&edit, &stop}) {
        toggle->uncheck();
        toggle->disable();
    }
    for (PIGUI::PIButton* button : {&center, &remove, &removeAll, &duplicate, &undo, &redo, &fresh, &save})
        button->disable();
}

}  // namespace OverlayEditor
