#include "kit/probe/Trials.h"

namespace probe {

namespace {

using Op = PISelector::ListItems;

class Items {
  public:
    explicit Items(void* list) : list_(list) {}
    Answer operator()(Op operation, std::vector<std::int64_t> integers = {},
                      std::vector<std::string> texts = {}, std::vector<void*> data = {}) const {
        data.insert(data.begin(), list_);
        return ask(Id::ListItems, operation, {std::move(integers), {}, std::move(texts), std::move(data)});
    }

  private:
    void* list_;
};

/// Neither the index behind the last item nor one before the first is an item's.
void refusesBeside(Trial& trial, const Items& item, Op op, const char* what, std::int64_t count) {
    for (const std::int64_t index : {count, std::int64_t{-1}})
        trial.refuses(
            Id::ListItems, std::string(what) + " " + std::to_string(index) + " of " + std::to_string(count),
            item(op, {index}, op == Op::SetText ? std::vector<std::string>{"e"} : std::vector<std::string>{})
                .result);
}
/// The answer is one integer, that one.
void answers(Trial& trial, const char* expectation, std::int64_t number, const Answer& answer) {
    trial.expect(Id::ListItems, expectation, answer.integers == std::vector<std::int64_t>{number}, answer);
}

void trySelection(Trial& trial, const Items& item, void* list) {
    answers(trial, "nothing is selected at first", -1, item(Op::Selected));
    if (!trial.serves(Id::ListItems, "selects an item", item(Op::Select, {0}).result != 0)) return;
    answers(trial, "what was selected is", 0, item(Op::Selected));
    item(Op::Select, {1});
    answers(trial, "a list for one has one selected, the last", 1, item(Op::Selected));
    refusesBeside(trial, item, Op::Select, "to select item", 2);
    if (trial.serves(Id::ListItems, "deselects all", item(Op::DeselectAll).result != 0))
        answers(trial, "nothing is selected then", -1, item(Op::Selected));
    if (call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, list, 1))
        answers(trial, "a list's number is what is selected", 1, item(Op::Selected));
}

void tryItems(Trial& trial, void* list) {
    const Items item(list);
    int data = 0, other = 0;
    const Answer first = item(Op::Append, {}, {"b\tx"}, {&data});
    if (!trial.serves(Id::ListItems, "appends an item", !first.isRefused())) return;
    answers(trial, "the first item's index is 0", 0, first);
    answers(trial, "the second one's is 1", 1, item(Op::Append, {}, {"a\ty"}, {&other}));
    trySelection(trial, item, list);
    const auto has = [&](const char* expectation, std::int64_t index, const char* text, const void* pointer) {
        const Answer read = item(Op::GetText, {index}), held = item(Op::GetData, {index});
        trial.expect(Id::ListItems, std::string(expectation) + " has its text, with its tabs",
                     read.strings == std::vector<std::string>{text}, read);
        trial.expect(Id::ListItems, std::string(expectation) + " has its data", held.handle() == pointer,
                     held);
    };
    has("an item", 0, "b\tx", &data);
    const bool changes =
        trial.serves(Id::ListItems, "changes an item's text", item(Op::SetText, {1}, {"c\tz"}).result != 0);
    const char* const text = changes ? "c\tz" : "a\ty";
    if (changes) has("the changed one", 1, text, &other);
    trial.serves(Id::ListItems, "appends a header", item(Op::AppendHeader, {}, {"More"}).result != 0);
    refusesBeside(trial, item, Op::GetText, "the text of item", 2);
    refusesBeside(trial, item, Op::GetData, "the data of item", 2);
    refusesBeside(trial, item, Op::SetText, "another text for item", 2);
    refusesBeside(trial, item, Op::Remove, "to remove item", 2);
    item(Op::Select, {1});
    if (trial.serves(Id::ListItems, "removes an item", item(Op::Remove, {0}).result != 0)) {
        answers(trial, "one of two stays", 1, item(Op::Count));
        has("what stays", 0, text, &other);
        const Answer selected = item(Op::Selected);
        trial.expect(Id::ListItems, "what is selected is there",
                     selected.integers.size() == 1 && selected.integers[0] < 1, selected);
    }
    if (trial.serves(Id::ListItems, "clears a list", item(Op::Clear).result != 0)) {
        answers(trial, "it is empty", 0, item(Op::Count));
        item(Op::Append, {}, {"d"}, {nullptr});
        answers(trial, "of what comes anew nothing is selected", -1, item(Op::Selected));
    }
}

}  // namespace

void tryLists(Trial& trial, void* dialog) {
    static int called;
    called = 0;
    void* const list =
        made(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateList, dialog, PIGUI::PIListSingle, "Name\tKind"));
    if (!trial.serves(Id::CreateList, "creates a list", list != nullptr)) return;
    auto* const counter = callback([](PIObject*, void*) { ++called; });
    call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, list, counter);
    tryItems(trial, list);
    trial.expect(Id::ListItems, "no service has called its callback", called == 0,
                 std::to_string(called) + " calls");
    destroyWidget(list);
    trial.refuses(Id::ListItems, "a list that is none",
                  ask(Id::ListItems, Op::Count, {.pointers = {strange()}}).result);
}

}  // namespace probe
