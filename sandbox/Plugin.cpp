#include "sandbox/Plugin.h"

#include <QCoreApplication>
#include <QStringList>
#include <string>
#include <vector>

#include "pi/HostObservers.h"
#include "sandbox/CallTrace.h"
#include "sandbox/Log.h"

namespace sandbox {

namespace {

class CommandLine final : public PIApp::CommandLineArgumentsProvider {
  public:
    std::vector<std::string> arguments() const override {
        std::vector<std::string> result;
        for (const QString& argument : QCoreApplication::arguments())
            result.push_back(argument.toStdString());
        return result;
    }
};

}  // namespace

Plugin::Plugin(PluginLibrary library, Log& log, CallTrace& trace)
    : library_(std::move(library)),
      log_(log),
      trace_(trace),
      name_(QString::fromStdString(library_.path().filename().string())) {}

void Plugin::guard(const QString& what, const std::function<void()>& call) {
    try {
        call();
    } catch (...) {
        log_.misuse(name_, "an exception left " + what);
    }
}

void Plugin::enter(const QString& what, const std::function<void()>& call) {
    CallTrace::Scope scope(trace_, trace_.isOpen() ? QString("host -> %1 %2").arg(name_, what) : QString());
    guard(what, call);
}

void Plugin::dispatch(PIClientFunctions_t number, PIFunctionParams_t& params) {
    const QString what = QString("event %1").arg(static_cast<int>(number));
    const auto call = [&] {
        library_.exports().dispatch(static_cast<std::int32_t>(number), &params, nullptr, nullptr, nullptr,
                                    nullptr);
    };
    if (!trace_.isOpen()) return guard(what, call);
    const QString arguments = CallTrace::parametersText(params);
    CallTrace::Scope scope(trace_, QString("host -> %1 %2%3").arg(name_, what, arguments));
    guard(what, call);
    if (const QString results = CallTrace::parametersText(params); results != arguments)
        scope.setResult(results.trimmed());
}

void Plugin::initialize(PIServiceTable& services) {
    library_.exports().initializeFunctionMap(&services, this);
    state_ = State::Initialized;
    if (const QString name = text(PIClientFunctions_t::Name); !name.isEmpty()) name_ = name;
}

int Plugin::startUp() {
    CommandLine commandLine;
    PIFunctionParams_t params;
    params.pointers[PIParameterName_t::CommandLineArguments] =
        static_cast<PIApp::CommandLineArgumentsProvider*>(&commandLine);
    state_ = State::Started;
    dispatch(PIClientFunctions_t::StartUp, params);
    return params.integer(PIParameterName_t::Status);
}

int Plugin::close() {
    PIFunctionParams_t params;
    state_ = State::Closing;
    dispatch(PIClientFunctions_t::Close, params);
    state_ = State::Closed;
    return params.integer(PIParameterName_t::Status);
}

void Plugin::cleanUp() {
    library_.exports().cleanUp();
    state_ = State::CleanedUp;
}

QString Plugin::text(PIClientFunctions_t event) {
    PIFunctionParams_t params;
    dispatch(event, params);
    const auto slot =
        event == PIClientFunctions_t::Name ? PIParameterName_t::NameText : PIParameterName_t::InfoText;
    return QString::fromStdString(params.string(slot));
}

void Plugin::event(PIApplicationEvents_t code, const void* data) {
    if (!isRunning()) return;
    PIFunctionParams_t params;
    params.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(code);
    params.pointers[PIParameterName_t::EventData] = const_cast<void*>(data);
    dispatch(PIClientFunctions_t::ListenToEvents, params);
}

bool Plugin::mouse(PIGUI::PIMouseEventType_t type, PIGUI::PIMouseEvent event) {
    if (state_ != State::Started) return false;
    PIFunctionParams_t params;
    params.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
    params.pointers[PIParameterName_t::EventData] = &event;
    dispatch(PIClientFunctions_t::HandleMouseEvent, params);
    return params.integer(PIParameterName_t::Status) != 0;
}

void Plugin::preDraw(int width, int height) {
    if (state_ != State::Started) return;
    PIFunctionParams_t params;
    params.integers[PIParameterName_t::Width] = width;
    params.integers[PIParameterName_t::Height] = height;
    dispatch(PIClientFunctions_t::PreDrawOnRefresh, params);
}

}  // namespace sandbox
