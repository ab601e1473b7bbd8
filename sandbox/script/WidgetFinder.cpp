#include "sandbox/script/WidgetFinder.h"

#include <algorithm>
#include <map>

#include "sandbox/script/ScriptError.h"
#include "sandbox/widgets/Containers.h"
#include "sandbox/widgets/Controls.h"

namespace sandbox {

namespace {

using Widgets = std::vector<HostWidget*>;

QString plain(const QString& caption) {
    QString text = caption.simplified();
    if (text.size() > 1 && text.endsWith(':')) text.chop(1);
    return text;
}

bool matches(const HostWidget& widget, const QString& caption) {
    return !widget.caption().isEmpty() && plain(widget.caption()) == plain(caption);
}

bool isShown(const HostWidget& widget) {
    return widget.widget() && widget.widget()->isVisible();
}

const ContainerWidget* asContainer(const HostWidget& widget) {
    return dynamic_cast<const ContainerWidget*>(&widget);
}

/// Calls `visit` for the shown widgets of a tree, each before those in it.
template <typename Visit>
void walk(HostWidget& widget, const Visit& visit) {
    if (!isShown(widget)) return;
    visit(widget);
    if (const auto* container = asContainer(widget))
        for (HostWidget* child : container->children()) walk(*child, visit);
}

template <typename Visit>
void walk(const Widgets& scope, const Visit& visit) {
    for (HostWidget* root : scope) walk(*root, visit);
}

HostWidget* firstIn(const Widgets& scope, const WidgetFinder::Filter& wanted) {
    HostWidget* found = nullptr;
    walk(scope, [&](HostWidget& widget) {
        if (!found && wanted(widget)) found = &widget;
    });
    return found;
}

/// What stands behind a widget, in reading order: in a table the cell to the right, then the one below.
Widgets behind(const HostWidget& widget) {
    const ContainerWidget* parent = widget.parent();
    if (!parent) return {};
    if (const auto* matrix = dynamic_cast<const MatrixWidget*>(parent)) {
        Widgets found;
        if (const auto cell = matrix->cellOf(widget)) {
            if (auto* right = matrix->at({cell->row, cell->column + 1})) found.push_back(right);
            if (auto* below = matrix->at({cell->row + 1, cell->column})) found.push_back(below);
        }
        return found;
    }
    const auto& children = parent->children();
    const auto at = std::ranges::find(children, &widget);
    Widgets found(at + 1, children.end());
    // A frame that holds nothing but the label: what it labels stands behind the frame.
    if (found.empty() && children.size() == 1) return behind(*parent);
    return found;
}

/// What a label speaks of: what stands behind it, up to the next label.
Widgets labelled(const HostWidget& label) {
    Widgets found;
    for (HostWidget* next : behind(label)) {
        if (!isShown(*next)) continue;
        if (dynamic_cast<const LabelWidget*>(next)) {
            // A unit or a note may stand between; a caption ends the reach.
            if (next->caption().trimmed().endsWith(':') || !found.empty()) break;
            continue;
        }
        found.push_back(next);
    }
    return found;
}

/// The rows of a table below a label's, up to the next heading: a row with a label and nothing else.
Widgets below(const HostWidget& label) {
    const auto* matrix = dynamic_cast<const MatrixWidget*>(label.parent());
    if (!matrix) return {};
    struct Row {
        Widgets shown;
        bool heading = true;
    };
    std::map<int, Row> rows;
    const auto own = matrix->cellOf(label);
    for (HostWidget* child : matrix->children()) {
        const auto cell = matrix->cellOf(*child);
        const bool isLabel = dynamic_cast<const LabelWidget*>(child) != nullptr;
        if (!own || !cell || cell->row <= own->row || !isShown(*child) ||
            (isLabel && child->caption().trimmed().isEmpty()))
            continue;
        Row& row = rows[cell->row];
        row.shown.push_back(child);
        if (!isLabel || cell->column > 0) row.heading = false;
    }
    Widgets found;
    for (const auto& [number, row] : rows) {
        if (row.heading) break;
        found.insert(found.end(), row.shown.begin(), row.shown.end());
    }
    return found;
}

QString quotedCaptions(const QStringList& captions) {
    QStringList quoted;
    for (const QString& caption : captions) quoted << '"' + caption + '"';
    return quoted.isEmpty() ? QString("nothing") : quoted.join(", ");
}

}  // namespace

std::vector<DialogBox*> WidgetFinder::dialogs() const {
    auto found = handles_.all<DialogBox>();
    std::erase_if(found, [this](const DialogBox* dialog) {
        return !isShown(*dialog) || (!title_.isEmpty() && dialog->caption() != title_);
    });
    return found;
}

DialogBox& WidgetFinder::dialog() const {
    const auto found = dialogs();
    if (found.size() == 1) return *found.front();
    QStringList titles;
    for (const DialogBox* dialog : handles_.all<DialogBox>())
        if (isShown(*dialog)) titles << dialog->caption();
    throw ScriptError{QString(found.empty() ? "no dialog \"%1\" is shown; there is %2"
                                            : "several dialogs \"%1\" are shown: %2")
                          .arg(title_, quotedCaptions(titles))};
}

Widgets WidgetFinder::roots() const {
    if (!title_.isEmpty()) return {&dialog()};
    Widgets found;
    for (DialogBox* dialog : dialogs()) found.push_back(dialog);
    return found;
}

QStringList WidgetFinder::captions() const {
    QStringList found;
    walk(roots(), [&](const HostWidget& widget) {
        if (const QString caption = widget.caption().trimmed(); !caption.isEmpty()) found << caption;
    });
    return found;
}

Widgets WidgetFinder::candidates(const Widgets& scope, const QString& caption, const Filter& wanted) const {
    Widgets found;
    const auto add = [&found](HostWidget* widget) {
        if (widget && std::ranges::find(found, widget) == found.end()) found.push_back(widget);
    };
    walk(scope, [&](HostWidget& widget) {
        if (!matches(widget, caption)) return;
        if (wanted(widget))
            add(&widget);
        else if (const auto* container = asContainer(widget))
            add(firstIn(container->children(), wanted));
        else if (dynamic_cast<const LabelWidget*>(&widget))
            add(firstIn(labelled(widget), wanted));
    });
    return found;
}

WidgetFinder::Titled WidgetFinder::titled(const Widgets& scope, const QString& caption) const {
    Titled found;
    int matching = 0;
    walk(scope, [&](HostWidget& widget) {
        if (!matches(widget, caption)) return;
        if (asContainer(widget)) {
            ++matching;
            found = {{&widget}, {}};
        } else if (dynamic_cast<const LabelWidget*>(&widget)) {
            ++matching;
            found = {labelled(widget), below(widget)};
        }
    });
    if (matching == 1) return found;
    throw ScriptError{QString(matching == 0 ? "nothing is titled \"%1\"; shown: %2"
                                            : "several things are titled \"%1\"; shown: %2")
                          .arg(caption, quotedCaptions(captions()))};
}

Widgets WidgetFinder::within(const Widgets& scope, const QStringList& parts, const QString& last,
                             const Filter& wanted) const {
    if (parts.isEmpty()) return candidates(scope, last, wanted);
    const Titled title = titled(scope, parts.first());
    const Widgets found = within(title.own, parts.mid(1), last, wanted);
    return found.empty() ? within(title.below, parts.mid(1), last, wanted) : found;
}

QString WidgetFinder::namesOf(const Widgets& found, const QString& last, const Filter& wanted) const {
    QStringList paths;
    for (std::size_t i = 0; i < found.size(); ++i) {
        QString path = QString("%1#%2").arg(last).arg(i + 1);
        // The nearest title before it that leads to it alone.
        bool before = true;
        walk(roots(), [&](HostWidget& widget) {
            if (&widget == found[i]) before = false;
            const bool isTitle = asContainer(widget) || dynamic_cast<const LabelWidget*>(&widget);
            if (!before || !isTitle || widget.caption().trimmed().isEmpty()) return;
            try {
                if (within(roots(), {widget.caption()}, last, wanted) == Widgets{found[i]})
                    path = widget.caption().trimmed() + " > " + last;
            } catch (const ScriptError&) {
                // A title that stands there twice tells nothing apart.
            }
        });
        paths << path;
    }
    return quotedCaptions(paths);
}

HostWidget* WidgetFinder::findOptional(const QString& path, const Filter& wanted, const char* kind) const {
    QStringList parts = path.split(" > ");
    QString last = parts.takeLast();
    std::size_t number = 0;
    if (const auto mark = last.lastIndexOf('#'); mark > 0) {
        bool isNumber = false;
        number = last.mid(mark + 1).toUInt(&isNumber);
        if (isNumber)
            last.truncate(mark);
        else
            number = 0;
    }
    const Widgets found = within(roots(), parts, last, wanted);
    if (number > 0) return number <= found.size() ? found[number - 1] : nullptr;
    if (found.size() <= 1) return found.empty() ? nullptr : found.front();
    throw ScriptError{QString("there are %1 shown %2s \"%3\"; name the one that is meant: %4")
                          .arg(found.size())
                          .arg(kind, path, namesOf(found, last, wanted))};
}

HostWidget& WidgetFinder::find(const QString& path, const Filter& wanted, const char* kind) const {
    if (HostWidget* found = findOptional(path, wanted, kind)) return *found;
    throw ScriptError{
        QString("no %1 \"%2\" is shown; shown: %3").arg(kind, path, quotedCaptions(captions()))};
}

HostWidget& WidgetFinder::findOnly(const Filter& wanted, const char* kind) const {
    if (HostWidget* found = firstIn(roots(), wanted)) return *found;
    throw ScriptError{QString("no %1 is shown").arg(kind)};
}

}  // namespace sandbox
