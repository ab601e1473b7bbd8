#include "pi/HostStructures.h"
#include "sandbox/Host.h"
#include "sandbox/services/Services.h"
#include "sandbox/widgets/Containers.h"
#include "sandbox/widgets/Controls.h"
#include "sandbox/widgets/DialogBox.h"
#include "sandbox/widgets/ListWidget.h"
#include "sandbox/widgets/MenuItem.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

/// Puts a new widget into its parent, binds its callback and hands it to the registry.
PIServiceResult place(const ServiceCall& call, void* parentHandle, std::unique_ptr<HostWidget> widget,
                      FunctorTwoParams__* callback = nullptr) {
    auto* parent = call.object<ContainerWidget>(parentHandle, "container");
    if (!parent) return 0;
    widget->setCallback(callback);
    HostWidget* kept = call.keep(std::move(widget));
    parent->adopt(*kept);
    return asResult(kept);
}

/// What goes with a dialog or a menu item although it stands beside it: dialogs over it, items of its
/// submenu.
std::vector<HostWidget*> dependantsOf(const HandleRegistry& handles, const HostWidget& widget) {
    std::vector<HostWidget*> found;
    if (const auto* dialog = dynamic_cast<const DialogBox*>(&widget)) {
        for (DialogBox* other : handles.all<DialogBox>())
            if (other->widget() && other->widget()->parentWidget() == dialog->widget())
                found.push_back(other);
    } else if (const auto* menu = dynamic_cast<const MenuItem*>(&widget)) {
        for (MenuItem* item : handles.all<MenuItem>())
            if (menu->holds(*item)) found.push_back(item);
    }
    return found;
}

/// Destroys a widget with everything in it, innermost first.
void destroy(HandleRegistry& handles, HostWidget& widget) {
    for (HostWidget* dependant : dependantsOf(handles, widget)) destroy(handles, *dependant);
    if (auto* container = dynamic_cast<ContainerWidget*>(&widget))
        while (!container->children().empty()) destroy(handles, *container->children().back());
    handles.remove(widget.handle());
}

void addContainers(ServiceTable& table) {
    const auto box = [&table](Id service, const char* name, BoxWidget::Direction direction) {
        table.add<PI_DATA_POINTER_AND_OPTS>(
            service, name, [name, direction](ServiceCall& call, PI_DATA_POINTER_AND_OPTS& record) {
                return place(call, record.pointer,
                             std::make_unique<BoxWidget>(name, direction, record.options));
            });
    };
    box(Id::CreateCanvas, "canvas", BoxWidget::Direction::Column);
    box(Id::CreateHorizontalFrame, "horizontal frame", BoxWidget::Direction::Row);
    box(Id::CreateVerticalFrame, "vertical frame", BoxWidget::Direction::Column);

    const auto matrix = [&table](Id service, const char* name, MatrixWidget::Fill fill) {
        table.add<PI_DATA_POINTER_AND_INT>(
            service, name, [fill](ServiceCall& call, PI_DATA_POINTER_AND_INT& record) {
                if (record.integer < 1) return call.misuse("a matrix needs a row and a column");
                return place(call, record.pointer, std::make_unique<MatrixWidget>(fill, record.integer));
            });
    };
    matrix(Id::CreateHorizontalMatrix, "horizontal matrix", MatrixWidget::Fill::ByRow);
    matrix(Id::CreateVerticalMatrix, "vertical matrix", MatrixWidget::Fill::ByColumn);

    table.add<PI_DATA_POINTER_INT_AND_STRING>(
        Id::CreateGroupBox, "group box", [](ServiceCall& call, PI_DATA_POINTER_INT_AND_STRING& record) {
            return place(call, record.pointer,
                         std::make_unique<GroupBox>(QString::fromStdString(record.text),
                                                    static_cast<std::uint32_t>(record.integer)));
        });
    table.add<PI_DATA_POINTER_AND_OPTS>(
        Id::CreateSwitcher, "switcher", [](ServiceCall& call, PI_DATA_POINTER_AND_OPTS& record) {
            return place(call, record.pointer, std::make_unique<SwitcherWidget>(record.options));
        });
    table.addCatchall(
        Id::SwitcherSetCurrent, "switcher's child", {.integers = 1, .pointers = 2},
        [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto* switcher = call.object<SwitcherWidget>(arguments.pointer(0), "switcher");
            if (!switcher) return 0;
            if (!arguments.pointer(1)) {
                if (switcher->setCurrent(arguments.integer(0))) return 1;
                return call.misuse(QString("the switcher has no child %1").arg(arguments.integer(0)));
            }
            auto* child = call.object<HostWidget>(arguments.pointer(1), "widget");
            if (!child) return 0;
            if (switcher->setCurrent(child)) return 1;
            return call.misuse(child->describe() + " is no child of the switcher");
        });
}

void addControls(ServiceTable& table) {
    using Text = PI_DATA_POINTER_STRING_AND_FUNCTION;
    using Style = PI_DATA_POINTER_INT_AND_FUNCTION;

    const auto button = [&table](Id service, const char* name, ButtonWidget::Style style) {
        table.add<Text>(service, name, [style](ServiceCall& call, Text& record) {
            return place(call, record.pointer, std::make_unique<ButtonWidget>(style, record.text),
                         record.function);
        });
    };
    button(Id::CreateButton, "button", ButtonWidget::Style::Push);
    button(Id::CreateRadioButton, "radio button", ButtonWidget::Style::Radio);
    button(Id::CreateCheckButton, "check button", ButtonWidget::Style::Check);

    table.add<Text>(Id::CreateOptionMenu, "option menu", [](ServiceCall& call, Text& record) {
        return place(call, record.pointer, std::make_unique<OptionMenuWidget>(record.text), record.function);
    });
    table.add<Style>(Id::CreateTextField, "text field", [](ServiceCall& call, Style& record) {
        return place(call, record.pointer, std::make_unique<TextFieldWidget>(record.integer),
                     record.function);
    });
    table.add<Style>(Id::CreateColorWell, "colour well", [](ServiceCall& call, Style& record) {
        return place(call, record.pointer, std::make_unique<ColorWellWidget>(record.integer),
                     record.function);
    });
    table.add<Style>(Id::CreateSpinner, "spinner", [](ServiceCall& call, Style& record) {
        return place(call, record.pointer, std::make_unique<SpinnerWidget>(record.integer), record.function);
    });
    table.add<PI_DATA_POINTER_INT_AND_STRING>(
        Id::CreateList, "list", [](ServiceCall& call, PI_DATA_POINTER_INT_AND_STRING& record) {
            return place(call, record.pointer,
                         std::make_unique<ListWidget>(record.integer, QString::fromStdString(record.text)));
        });
    table.add<PI_DATA_POINTER_AND_STRING>(
        Id::CreateLabel, "label", [](ServiceCall& call, PI_DATA_POINTER_AND_STRING& record) {
            return place(call, record.pointer, std::make_unique<LabelWidget>(record.text));
        });
}

void addMenuItem(Host& host) {
    host.services().add<PI_DATA_POINTER_STRING_AND_FUNCTION>(
        Id::CreateMenuItem, "menu item",
        [&host](ServiceCall& call, PI_DATA_POINTER_STRING_AND_FUNCTION& record) -> PIServiceResult {
            QMenu* menu = &host.window().pluginMenu();
            if (record.pointer) {
                auto* parent = call.object<MenuItem>(record.pointer, "menu item");
                if (!parent) return 0;
                menu = &parent->submenu();
            }
            auto* item = call.keep(std::make_unique<MenuItem>(*menu, record.text));
            item->setCallback(record.function);
            return asResult(item);
        });
}

void addBinding(ServiceTable& table) {
    table.add<PI_DATA_POINTER_AND_POINTER>(
        Id::BindWidget, "bind",
        [](ServiceCall& call, PI_DATA_POINTER_AND_POINTER& record) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(record.pointer, "widget");
            if (!widget) return 0;
            if (record.second)
                widget->setWrapper(static_cast<PIObject*>(record.second));
            else
                destroy(call.handles(), *widget);
            return 1;
        });
    table.add<PI_DATA_POINTER_AND_FUNCTION>(
        Id::WindowMapFunction, "map callback",
        [](ServiceCall& call, PI_DATA_POINTER_AND_FUNCTION& record) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(record.pointer, "widget");
            if (!widget) return 0;
            widget->setCallback(record.function);
            return 1;
        });
}

}  // namespace

void addWidgetServices(Host& host) {
    addContainers(host.services());
    addControls(host.services());
    addMenuItem(host);
    addBinding(host.services());
}

}  // namespace sandbox
