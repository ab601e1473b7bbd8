#include "sandbox/Host.h"
#include "sandbox/services/Services.h"
#include "sandbox/widgets/ListWidget.h"

namespace sandbox {

namespace {

using Selector = PISelector::ListItems;

/// An operation on a list whose handle is the first pointer; it is false when nothing could be done.
template <typename Operation>
void add(ServiceTable& table, Selector selector, const char* name, Signature signature, Operation operation) {
    table.addSelected(PIServerFunctions_t::ListItems, selector, name, signature,
                      [operation](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* list = call.object<ListWidget>(arguments.pointer(0), "list");
                          return list && operation(call, *list, arguments) ? 1 : 0;
                      });
}

/// The same on one item, whose index is the first integer.
template <typename Operation>
void addForItem(ServiceTable& table, Selector selector, const char* name, Signature signature,
                Operation operation) {
    add(table, selector, name, signature,
        [operation](const ServiceCall& call, ListWidget& list, Arguments& arguments) {
            const std::int64_t index = arguments.integer(0);
            if (!list.isIndex(index)) {
                call.misuse(QString("the list has no item %1").arg(index));
                return false;
            }
            operation(list, static_cast<int>(index), arguments);
            return true;
        });
}

}  // namespace

void addListServices(Host& host) {
    ServiceTable& table = host.services();
    add(table, Selector::Append, "append item", {.texts = 1, .pointers = 2},
        [](const ServiceCall&, ListWidget& list, Arguments& arguments) {
            arguments.give(std::int64_t{list.append(arguments.string(0), arguments.pointer(1))});
            return true;
        });
    add(table, Selector::AppendHeader, "append header", {.texts = 1, .pointers = 1},
        [](const ServiceCall&, ListWidget& list, Arguments& arguments) {
            list.appendHeader(arguments.string(0));
            return true;
        });
    add(table, Selector::Clear, "clear list", {.pointers = 1},
        [](const ServiceCall&, ListWidget& list, Arguments&) { return list.clear(), true; });
    add(table, Selector::Count, "item count", {.pointers = 1},
        [](const ServiceCall&, ListWidget& list, Arguments& arguments) {
            arguments.give(std::int64_t{list.count()});
            return true;
        });
    add(table, Selector::Selected, "selected item", {.pointers = 1},
        [](const ServiceCall&, ListWidget& list, Arguments& arguments) {
            arguments.give(std::int64_t{list.selected()});
            return true;
        });
    add(table, Selector::DeselectAll, "deselect all", {.pointers = 1},
        [](const ServiceCall&, ListWidget& list, Arguments&) { return list.deselectAll(), true; });

    addForItem(table, Selector::Remove, "remove item", {.integers = 1, .pointers = 1},
               [](ListWidget& list, int index, Arguments&) { list.remove(index); });
    addForItem(table, Selector::Select, "select item", {.integers = 1, .pointers = 1},
               [](ListWidget& list, int index, Arguments&) { list.select(index); });
    addForItem(table, Selector::GetText, "item text", {.integers = 1, .pointers = 1},
               [](ListWidget& list, int index, Arguments& arguments) {
                   arguments.give(list.itemText(index).toStdString());
               });
    addForItem(table, Selector::SetText, "set item text", {.integers = 1, .texts = 1, .pointers = 1},
               [](ListWidget& list, int index, Arguments& arguments) {
                   list.setItemText(index, arguments.string(0));
               });
    addForItem(
        table, Selector::GetData, "item data", {.integers = 1, .pointers = 1},
        [](ListWidget& list, int index, Arguments& arguments) { arguments.give(list.itemData(index)); });
}

}  // namespace sandbox
