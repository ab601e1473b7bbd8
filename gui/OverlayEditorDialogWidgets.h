#pragma once

#include <span>

#include "gui/AttachedZelGui.h"
#include "gui/MessageBoard.h"
#include "gui/NextRow.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/WholeNumber.h"

namespace OverlayEditor {

/// One menu of the units group, with its label.
struct OverlayEditorDialog::UnitsMenu {
    UnitsMenu(PIGUI::PICanvas& table, const std::string& caption, std::span<const UTILS::UnitType_t> choices,
              UTILS::UnitType_t chosen, FunctorTwoParams__* callback);

    PIGUI::PILabel caption;
    PIGUI::PIOptionMenu menu;
};

/// The dialog's widgets, from top to bottom.
struct OverlayEditorDialog::Widgets {
    Widgets(PIGUI::PIDialogBox& box, CallbackList<OverlayEditorDialog>& callbacks, MouseManager* mouseManager,
            const Preferences& preferences, const std::vector<Shape*>& prototypes, NextTarget next);

    /// Two columns, so that the whole is seen on a laptop's screen, and the place of the panel is kept.
    PIGUI::PIHorizontalFrame columns;
    PIGUI::PICanvas left;
    PIGUI::PICanvas right;

    PIGUI::PIGroupBox listGroup;
    PIGUI::PIList list;
    PIGUI::PIHorizontalFrame listButtons;
    PIGUI::PIButton center;
    PIGUI::PIButton remove;
    PIGUI::PIButton removeAll;
    PIGUI::PIHorizontalFrame stepButtons;
    PIGUI::PIButton undo;
    PIGUI::PIButton redo;
    PIGUI::PIButton duplicate;
    PIGUI::PIHorizontalFrame styleRow;
    PIGUI::PIOptionMenu style;
    PIGUI::PIButton rings;

    PIGUI::PIGroupBox generalGroup;
    PIGUI::PIHorizontalMatrix general;
    PIGUI::PILabel fileCaption;
    PIGUI::PIHorizontalFrame fileRow;
    PIGUI::PITextField file;
    PIGUI::PIButton load;
    PIGUI::PIButton fresh;
    PIGUI::PILabel changesCaption;
    PIGUI::PILabel changes;
    AttachedZelGui attach;
    PIGUI::PILabel autoDeleteCaption;
    PIGUI::PICheckButton autoDelete;

    PIGUI::PIGroupBox shapeGroup;
    PIGUI::PIHorizontalMatrix shapeControls;
    PIGUI::PILabel shapeCaption;
    PIGUI::PIOptionMenu shape;
    PIGUI::PILabel mouseCaption;
    PIGUI::PIHorizontalFrame mouseButtons;
    PIGUI::PIButton edit;
    PIGUI::PIButton stop;
    PIGUI::PILabel nameCaption;
    PIGUI::PITextField name;
    NextRow next;
    /// Holds the panel of the current shape.
    PIGUI::PICanvas panelArea;

    PIGUI::PIGroupBox unitsGroup;
    PIGUI::PIHorizontalMatrix units;
    UnitsMenu lla;
    UnitsMenu altitude;
    UnitsMenu angle;
    UnitsMenu range;
    PIGUI::PILabel precisionCaption;
    PIGUI::PISpinner precision;
    WholeNumber digits;
    PIGUI::PILabel systemCaption;
    PIGUI::PIOptionMenu system;

    /// One row of a column, as hosts keep a row that comes last in sight.
    PIGUI::PIHorizontalFrame foot;
    PIGUI::PICanvas footColumn;
    MessageBoard messages;
    PIGUI::PIHorizontalFrame buttons;
    PIGUI::PIButton loadExisting;
    PIGUI::PIButton save;
    PIGUI::PIButton saveAs;
    PIGUI::PIButton help;
    PIGUI::PIButton close;
};

}  // namespace OverlayEditor
