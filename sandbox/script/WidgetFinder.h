#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "sandbox/widgets/DialogBox.h"
#include "sandbox/widgets/HostWidget.h"

namespace sandbox {

/// Finds a plug-in's widgets the way a person does: in the dialogs that are shown, by what is written on
/// a widget, or on the label to its left or above it.
///
/// A path is a caption, or several with " > " between them: each names the group box, the label or the
/// heading behind which the next one is looked for. "#2" behind the last takes the second of several.
/// Captions are compared without blanks at their ends; a colon at the end may be left out.
class WidgetFinder {
  public:
    using Filter = std::function<bool(const HostWidget&)>;

    /// \param title of the dialog to search; empty for all of them
    WidgetFinder(const HandleRegistry& handles, const QString& title) : handles_(handles), title_(title) {}

    /// Throws ScriptError unless there is exactly one shown widget of the kind wanted.
    HostWidget& find(const QString& path, const Filter& wanted, const char* kind) const;
    /// The same; null when there is none.
    HostWidget* findOptional(const QString& path, const Filter& wanted, const char* kind) const;
    /// The first of the kind without a caption.
    HostWidget& findOnly(const Filter& wanted, const char* kind) const;

    std::vector<DialogBox*> dialogs() const;
    /// Throws ScriptError when it is not shown.
    DialogBox& dialog() const;
    /// All shown captions, top to bottom.
    QStringList captions() const;

  private:
    using Widgets = std::vector<HostWidget*>;

    Widgets roots() const;
    Widgets candidates(const Widgets& scope, const QString& caption, const Filter& wanted) const;
    /// What a caption titles: what is in the container or behind the label; and, for a label in a table, the
    /// rows below it, up to the next heading.
    struct Titled {
        Widgets own;
        Widgets below;
    };
    Titled titled(const Widgets& scope, const QString& caption) const;
    Widgets within(const Widgets& scope, const QStringList& parts, const QString& last,
                   const Filter& wanted) const;
    /// Paths that tell the found widgets of one caption apart, quoted.
    QString namesOf(const Widgets& found, const QString& last, const Filter& wanted) const;

    const HandleRegistry& handles_;
    QString title_;
};

}  // namespace sandbox
