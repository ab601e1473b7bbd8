#include "sandbox/CallTrace.h"

#include <QStringList>
#include <cstdio>

#include "pi/PIDataRecords.h"
#include "pi/PIFunctionParams.h"
#include "sandbox/HandleRegistry.h"

namespace sandbox {

namespace {

constexpr qsizetype kLongestText = 120;
constexpr std::size_t kMostValues = 16;

QString quoted(const std::string& text) {
    QString shown = QString::fromStdString(text);
    const qsizetype length = shown.size();
    if (length > kLongestText) shown.truncate(kLongestText);
    shown.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n").replace('\t', "\\t");
    return length > kLongestText ? QString("\"%1\"... (%2)").arg(shown).arg(length) : '"' + shown + '"';
}

/// " integers 1 2 3" of the values from `first` on; empty when there is none.
template <typename Value, typename Text>
QString listText(const char* name, const std::vector<Value>& values, std::size_t first, Text text) {
    if (first >= values.size()) return {};
    QStringList shown;
    for (std::size_t i = first; i < values.size() && shown.size() < static_cast<qsizetype>(kMostValues); ++i)
        shown << text(values[i]);
    if (values.size() - first > kMostValues) shown << QString("... (%1)").arg(values.size() - first);
    return QString(" %1 %2").arg(name, shown.join(' '));
}

template <typename Value, typename Text>
QString slotsText(const char* name, const PIParameterMap<Value>& values, Text text) {
    QString shown;
    for (const auto& [slot, value] : values)
        shown += QString(" %1:%2").arg(static_cast<int>(slot)).arg(text(value));
    return shown.isEmpty() ? shown : QString(" %1%2").arg(name, shown);
}

QString pointerText(const void* pointer) {
    return pointer ? QString("0x%1").arg(reinterpret_cast<quintptr>(pointer), 0, 16) : QString("null");
}

}  // namespace

QString CallTrace::open(const QString& path) {
    file_.setFileName(path);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate)) return file_.errorString();
    clock_.start();
    return {};
}

void CallTrace::write(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    if ((file_.write(bytes) == bytes.size() && file_.flush()) || reported_) return;
    reported_ = true;
    std::fprintf(stderr, "--trace %s: %s\n", qPrintable(file_.fileName()), qPrintable(file_.errorString()));
}

void CallTrace::begin(const QString& head) {
    const QString time = QString::number(static_cast<double>(clock_.nsecsElapsed()) / 1e9, 'f', 6);
    write((lineIsOpen_ ? "\n" : "") + time + ' ' + QString(2 * depth_, ' ') + head);
    lineIsOpen_ = true;
    ++lines_;
}

void CallTrace::note(const QString& text) {
    if (!isOpen()) return;
    begin(text);
    write("\n");
    lineIsOpen_ = false;
}

CallTrace::Scope::Scope(CallTrace& trace, const QString& head) {
    if (!trace.isOpen()) return;
    trace_ = &trace;
    trace.begin(head);
    line_ = trace.lines_;
    ++trace.depth_;
    began_ = trace.clock_.nsecsElapsed();
}

CallTrace::Scope::~Scope() {
    if (!trace_) return;
    const qint64 microseconds = (trace_->clock_.nsecsElapsed() - began_) / 1000;
    --trace_->depth_;
    const QString end = QString("= %1%2 us\n").arg(result_.isEmpty() ? "" : result_ + ", ").arg(microseconds);
    if (line_ == trace_->lines_) {
        trace_->write(' ' + end);
    } else {
        trace_->begin({});
        trace_->write(end);
    }
    trace_->lineIsOpen_ = false;
}

PI_DATA_BASE_CLASS* CallTrace::record(void* args) const {
    return handles_.wasGivenOut(args) ? nullptr : static_cast<PI_DATA_BASE_CLASS*>(args);
}

QString CallTrace::handleText(const void* handle) const {
    auto* key = const_cast<void*>(handle);
    if (const HostObject* object = handles_.find(key)) return object->describe();
    return (handles_.wasGivenOut(key) ? "gone " : "") + pointerText(handle);
}

QString CallTrace::argumentsText(void* args) const {
    if (!args) return " null";
    PI_DATA_BASE_CLASS* base = record(args);
    if (!base) return ' ' + handleText(args);
    const auto handle = [this](const auto& record) { return ' ' + handleText(record.pointer); };
    const auto pointer = [this](const void* value) { return handleText(value); };
    if (const auto* all = dynamic_cast<PI_DATA_CATCHALL*>(base)) {
        const Counts none;
        return listText("integers", all->integers, none.integers,
                        [](std::int64_t value) { return QString::number(value); }) +
               listText("reals", all->doubles, none.doubles,
                        [](double value) { return QString::number(value, 'g', 17); }) +
               listText("texts", all->strings, none.strings, quoted) +
               listText("pointers", all->pointers, none.pointers, pointer);
    }
    if (const auto* flag = dynamic_cast<PI_DATA_POINTER_AND_BOOL*>(base))
        return handle(*flag) + (flag->flag ? " true" : " false");
    if (const auto* integer = dynamic_cast<PI_DATA_POINTER_AND_INT*>(base))
        return handle(*integer) + ' ' + QString::number(integer->integer);
    if (const auto* real = dynamic_cast<PI_DATA_POINTER_AND_DOUBLE*>(base))
        return handle(*real) + ' ' + QString::number(real->real, 'g', 17);
    if (const auto* text = dynamic_cast<PI_DATA_POINTER_AND_STRING*>(base))
        return handle(*text) + ' ' + quoted(text->text);
    if (const auto* two = dynamic_cast<PI_DATA_POINTER_AND_POINTER*>(base))
        return handle(*two) + ' ' + handleText(two->second);
    if (const auto* function = dynamic_cast<PI_DATA_POINTER_AND_FUNCTION*>(base))
        return handle(*function) + " callback " + pointerText(function->function);
    if (const auto* options = dynamic_cast<PI_DATA_POINTER_AND_OPTS*>(base))
        return handle(*options) + QString(" options 0x%1").arg(options->options, 0, 16);
    if (const auto* flagged = dynamic_cast<PI_DATA_POINTER_INT_AND_BOOL*>(base))
        return handle(*flagged) +
               QString(" %1 %2").arg(flagged->integer).arg(flagged->flag ? "true" : "false");
    if (const auto* numbered = dynamic_cast<PI_DATA_POINTER_INT_AND_STRING*>(base))
        return handle(*numbered) + QString(" %1 ").arg(numbered->integer) + quoted(numbered->text);
    if (const auto* called = dynamic_cast<PI_DATA_POINTER_INT_AND_FUNCTION*>(base))
        return handle(*called) + QString(" %1 callback ").arg(called->integer) +
               pointerText(called->function);
    if (const auto* texts = dynamic_cast<PI_DATA_POINTER_STRING_AND_STRING*>(base))
        return handle(*texts) + ' ' + quoted(texts->text) + ' ' + quoted(texts->second);
    if (const auto* labelled = dynamic_cast<PI_DATA_POINTER_STRING_AND_FUNCTION*>(base))
        return handle(*labelled) + ' ' + quoted(labelled->text) + " callback " +
               pointerText(labelled->function);
    if (const auto* structure = dynamic_cast<PI_DATA_STRUCT*>(base))
        return " structure " + pointerText(structure->pointer);
    return " unknown record";
}

CallTrace::Counts CallTrace::countArguments(void* args) const {
    const auto* all = dynamic_cast<PI_DATA_CATCHALL*>(record(args));
    if (!all) return {};
    return {all->integers.size(), all->doubles.size(), all->strings.size(), all->pointers.size()};
}

QString CallTrace::resultText(std::intptr_t value, void* args, const Counts& counts) const {
    auto* handle = reinterpret_cast<void*>(value);
    const QString text = handles_.wasGivenOut(handle) ? handleText(handle) : QString::number(value);
    // A service may have destroyed the object that a bare handle named, but a record is the caller's.
    const auto* all = dynamic_cast<PI_DATA_CATCHALL*>(record(args));
    if (!all) return text;
    return text +
           listText("integers", all->integers, counts.integers,
                    [](std::int64_t number) { return QString::number(number); }) +
           listText("reals", all->doubles, counts.doubles,
                    [](double number) { return QString::number(number, 'g', 17); }) +
           listText("texts", all->strings, counts.strings, quoted) +
           listText("pointers", all->pointers, counts.pointers,
                    [this](const void* pointer) { return handleText(pointer); });
}

QString CallTrace::parametersText(const PIFunctionParams_t& params) {
    return slotsText("integers", params.integers, [](std::int32_t value) { return QString::number(value); }) +
           slotsText("texts", params.strings, quoted) + slotsText("pointers", params.pointers, pointerText);
}

}  // namespace sandbox
