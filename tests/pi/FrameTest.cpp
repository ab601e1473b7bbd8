// The frame: adapters, dispatch, the funnel, callbacks and clean-up.
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "common/Notify.h"
#include "pi/ClientFunctionMap.h"
#include "pi/EntryScope.h"
#include "pi/FunctorTwoParams.h"
#include "pi/HostFaults.h"
#include "pi/PIApplication.h"
#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"
#include "pi/PIHALVIS.h"
#include "pi/PIObject.h"
#include "support/FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using Slot = PIParameterName_t;
using Event = PIClientFunctions_t;

/// What happened, in order; outlives the objects that write to it.
std::vector<std::string> g_log;

class BarePlugin : public PIApp::PIApplication_v1_24 {
  public:
    ~BarePlugin() override { g_log.push_back("destroyed"); }
};

class FullPlugin final : public BarePlugin {
  public:
    int StartUp(const PIApp::CommandLineArguments& line) override {
        return static_cast<int>(line.arguments().size());
    }
    int Close() override { return g_log.push_back("Close"), 5; }
    std::string Name() const override { return "Full"; }
    std::string Author() const override { return "somebody"; }
    void listenToEvents(PIApplicationEvents_t event, void* data) override {
        const bool removed = event == PIApplicationEvents_t::EntityRemoved;
        g_log.push_back("event " + std::to_string(static_cast<int>(event)) +
                        (removed ? " of " + std::to_string(*static_cast<std::uint64_t*>(data))
                         : data  ? " with data"
                                 : ""));
    }
    void preDrawOnRefresh(int width, int height) override {
        g_log.push_back("refresh " + std::to_string(width) + "x" + std::to_string(height));
    }
    int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override {
        g_log.push_back("mouse " + std::to_string(static_cast<int>(type)));
        return static_cast<int>(type) * 1000 + event.x;
    }
    int Callback() override { throw std::runtime_error("deliberate"); }
};

class VectorPlugin final : public BarePlugin {
  public:
    int StartUp(const std::vector<std::string>& arguments) override {
        return 100 + static_cast<int>(arguments.size());
    }
};

class PlainPlugin final : public BarePlugin {
  public:
    int StartUp() override { return 7; }
};

class TwoArguments final : public PIApp::CommandLineArgumentsProvider {
  public:
    std::vector<std::string> arguments() const override { return {"host", "--flag"}; }
};

class FrameTest : public testing::Test {
  protected:
    void SetUp() override {
        g_log.clear();
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages_.push_back(text); });
    }
    void TearDown() override {
        dispatch(Event::Close);
        g_ClientMessageMap.clear();
        halNotify::setNotifyHandler({});
    }
    std::int32_t dispatch(Event event) {
        return ClientFunctionMap::dispatch(static_cast<std::int32_t>(event), &record_);
    }
    template <typename Plugin>
    void load() {
        ClientFunctionMap::replaceApplication(std::make_unique<Plugin>());
    }

    PIFunctionParams_t record_;
    std::vector<std::string> messages_;
};

TEST_F(FrameTest, OperationsThatAreNotOverriddenYieldTheirDefaults) {
    load<BarePlugin>();
    record_.strings[Slot::InfoText] = "left over";
    for (const Event event :
         {Event::Name, Event::Description, Event::Author, Event::Version, Event::URL, Event::ContactInfo})
        EXPECT_EQ(dispatch(event), 0);
    EXPECT_EQ(record_.string(Slot::NameText), "Unknown");
    EXPECT_EQ(record_.string(Slot::InfoText), "");
    EXPECT_EQ(dispatch(Event::ConfigureCommandLine), 0);
    EXPECT_NE(record_.pointers.find(Slot::CommandLineConfiguration), nullptr);
    EXPECT_EQ(record_.pointer(Slot::CommandLineConfiguration), nullptr);
}

TEST_F(FrameTest, ArgumentsComeFromTheirSlotsAndResultsGoBack) {
    load<FullPlugin>();
    PIGUI::PIMouseEvent mouse;
    mouse.x = 42;
    record_.integers[Slot::EventCode] = 6;
    record_.pointers[Slot::EventData] = &mouse;
    EXPECT_EQ(dispatch(Event::HandleMouseEvent), 0);
    EXPECT_EQ(record_.integer(Slot::Status), 6042);
    dispatch(Event::ListenToEvents);
    record_.integers[Slot::Width] = 800;
    dispatch(Event::PreDrawOnRefresh);  // an absent height reads as 0
    dispatch(Event::Name);
    dispatch(Event::Author);
    EXPECT_EQ(record_.string(Slot::NameText), "Full");
    EXPECT_EQ(record_.string(Slot::InfoText), "somebody");
    EXPECT_THAT(g_log, ElementsAre("mouse 6", "event 6 with data", "refresh 800x0"));
}

TEST_F(FrameTest, StartUpTakesTheNewestFormThatIsOverridden) {
    TwoArguments line;
    const auto startUp = [&](bool offered) {
        record_ = {};
        if (offered) record_.pointers[Slot::CommandLineArguments] = &line;
        EXPECT_EQ(dispatch(Event::StartUp), 0);
        return record_.integer(Slot::Status);
    };
    load<FullPlugin>();
    EXPECT_EQ(startUp(true), 2);
    EXPECT_EQ(startUp(false), 0);  // the older adapter knows only the older forms
    load<VectorPlugin>();
    EXPECT_EQ(startUp(true), 102);
    EXPECT_EQ(startUp(false), 100);
    load<PlainPlugin>();
    EXPECT_EQ(startUp(true), 7);
    EXPECT_EQ(startUp(false), 7);
}

TEST_F(FrameTest, CloseWithoutARecordDestroysWithoutCallingClose) {
    load<FullPlugin>();
    EXPECT_EQ(ClientFunctionMap::dispatch(static_cast<std::int32_t>(Event::Close), nullptr), 0);
    EXPECT_THAT(g_log, ElementsAre("destroyed"));
}

/// Its host dispatches while it closes, as hosts do that serve a call with a loop of their own.
class ReentrantPlugin final : public BarePlugin {
  public:
    int Close() override {
        g_log.push_back("Close");
        PIFunctionParams_t record;
        for (const Event event : {Event::Close, Event::ListenToEvents})
            ClientFunctionMap::dispatch(static_cast<std::int32_t>(event), &record);
        return 3;
    }
    void listenToEvents(PIApplicationEvents_t, void*) override { g_log.push_back("event"); }
};

TEST_F(FrameTest, NoEventReachesAnObjectThatIsClosing) {
    load<ReentrantPlugin>();
    EXPECT_EQ(dispatch(Event::Close), 0);
    EXPECT_EQ(record_.integer(Slot::Status), 3);
    EXPECT_THAT(g_log, ElementsAre("Close", "destroyed"));
}

TEST_F(FrameTest, AMouseEventThatIsMissingIsNotConsumed) {
    load<FullPlugin>();
    record_.integers[Slot::Status] = 1;  // left over from the event before
    EXPECT_EQ(dispatch(Event::HandleMouseEvent), 0);
    EXPECT_EQ(record_.integer(Slot::Status), 0);
}

/// A host that does something once from inside its next service.
class BusyHost final : public PIServiceTable {
  public:
    BusyHost() { g_FunctionMap = this; }
    ~BusyHost() { g_FunctionMap = nullptr; }
    std::int32_t hostBuildNumber() override { return 13000; }
    PIServiceResult handle(void*, PIServerFunctions_t service, void*) override {
        if (service == PIServerFunctions_t::IdentityOverride) return 0;
        if (service == PIServerFunctions_t::ForceRedraw) g_log.push_back("redraw");
        if (inside) std::exchange(inside, {})();
        return 0;
    }
    std::function<void()> inside;
};

class Commander {
  public:
    int onAsk(PIObject*, void*) {
        g_log.push_back("asks");
        handle(service, nullptr);
        g_log.push_back("has asked");
        return 1;
    }
    int onCmd(PIObject* sender, void* data) {
        g_log.push_back(sender ? "sender" : "command");
        if (data) g_log.back() += " " + std::to_string(*static_cast<std::int32_t*>(data));
        return 1;
    }
    PIServerFunctions_t service = PIServerFunctions_t::Camera;
    CallbackList<Commander> callbacks{this};
    FunctorTwoParams__* const ask = callbacks.make(&Commander::onAsk);
    FunctorTwoParams__* const command = callbacks.make(&Commander::onCmd);
    FunctorTwoParams__* const atOnce = callbacks.make(&Commander::onCmd, Arrival::AtOnce);
};

class OneEntryTest : public FrameTest {
  protected:
    ~OneEntryTest() override { freeFunctors(); }
    void event(PIApplicationEvents_t code, std::uint64_t id) {
        record_.integers[Slot::EventCode] = static_cast<std::int32_t>(code);
        record_.pointers[Slot::EventData] = &id;
        dispatch(Event::ListenToEvents);
    }
    void ask() { EXPECT_EQ(commander->ask->Call(nullptr, nullptr), 1); }

    BusyHost host;
    std::unique_ptr<Commander> commander = std::make_unique<Commander>();
};

TEST_F(OneEntryTest, WhatComesWhileTheHostServesUsWaitsOrIsNotConsumed) {
    load<FullPlugin>();
    host.inside = [&] {
        PIObject sender;
        std::int32_t state = 1;
        EXPECT_EQ(commander->command->Call(&sender, nullptr), 1);
        EXPECT_EQ(commander->command->Call(&sender, &state), 1);
        event(PIApplicationEvents_t::EntityRemoved, 7);
        event(PIApplicationEvents_t::EntityRemoved, 8);
        event(PIApplicationEvents_t::EntityRemoved, 7);
        state = 0;
        commander->command->Call(&sender, &state);
        commander->command->Call(&sender, nullptr);
        PIGUI::PIMouseEvent mouse;
        record_.pointers[Slot::EventData] = &mouse;
        for (const int type : {0, 1, 6}) {
            record_.integers[Slot::EventCode] = type;
            record_.integers[Slot::Status] = 1;
            dispatch(Event::HandleMouseEvent);
            EXPECT_EQ(record_.integer(Slot::Status), 0);
        }
        for (int i = 0; i < 2; ++i) dispatch(Event::PreDrawOnRefresh);
        commander->atOnce->Call(nullptr, nullptr);
        dispatch(Event::Name);
        EXPECT_EQ(record_.string(Slot::NameText), "Full");
    };
    ask();
    EXPECT_THAT(g_log, ElementsAre("asks", "command", "has asked", "command 1", "event 4 of 8",
                                   "event 4 of 7", "command 0", "command", "mouse 1", "redraw"));
}

TEST_F(OneEntryTest, FramesGoOnWhileTheUserLooksForAFile) {
    load<FullPlugin>();
    commander->service = PIServerFunctions_t::FileDialog;
    host.inside = [&] {
        dispatch(Event::PreDrawOnRefresh);
        EXPECT_EQ(commander->command->Call(nullptr, nullptr), 1);
    };
    ask();
    EXPECT_THAT(g_log, ElementsAre("asks", "refresh 0x0", "has asked", "command"));

    // A frame inside a frame is not made up for: it is being drawn.
    g_log.clear();
    g_ClientMessageMap[Event::PreDrawOnRefresh].first = [](void*, PIFunctionParams_t*) {
        return static_cast<std::int32_t>(handle(PIServerFunctions_t::Camera, nullptr));
    };
    host.inside = [&] { dispatch(Event::PreDrawOnRefresh); };
    dispatch(Event::PreDrawOnRefresh);
    EXPECT_TRUE(g_log.empty());
}

TEST_F(OneEntryTest, WhatWaitsForSomethingThatIsGoneIsForgotten) {
    load<FullPlugin>();
    Commander other;
    host.inside = [&] {
        commander->command->Call(nullptr, nullptr);
        dispatch(Event::Close);
        event(PIApplicationEvents_t::ScenarioCleared, 0);
        other.ask->Call(nullptr, nullptr);
    };
    ask();
    EXPECT_THAT(g_log, ElementsAre("asks", "has asked", "command", "asks", "has asked", "Close", "destroyed"))
        << "Close comes last";
    g_log.clear();
    host.inside = [&] { commander->command->Call(nullptr, nullptr); };
    {
        const EntryScope scope;
        ask();
        commander.reset();
    }
    EXPECT_THAT(g_log, ElementsAre("asks", "has asked"));
}

TEST_F(OneEntryTest, AHostThatAnswersEachCallIsPutOffToTheNextEntry) {
    const std::function<void()> endless = [&] {
        commander->ask->Call(nullptr, nullptr);
        host.inside = endless;
    };
    host.inside = endless;
    ask();
    EXPECT_EQ(g_log.size(), 2u * (1 + 8));
    host.inside = {};
    { const EntryScope scope; }
    EXPECT_EQ(g_log.size(), 2u * (2 + 8)) << "the last one was only put off";
}

TEST_F(OneEntryTest, CleanUpInTheMidstWaitsAndFindsNobody) {
    load<FullPlugin>();
    host.inside = [&] {
        ClientFunctionMap::cleanUp();
        event(PIApplicationEvents_t::ScenarioCleared, 0);
    };
    ask();
    EXPECT_THAT(g_log, ElementsAre("asks", "has asked", "destroyed"));
    EXPECT_TRUE(g_FunctorList.empty());
}

/// A service that throws has refused; degrees are no place. Both are told once, when the entry is over.
TEST_F(OneEntryTest, FaultsOfTheHostAreTold) {
    HostFaults::forget();
    for (int i = 0; i < 2; ++i) {
        host.inside = [] { throw std::runtime_error("deliberate"); };
        ask();
    }
    host.inside = [] { throw 5; };
    EXPECT_EQ(handle(PIServerFunctions_t::Clock, nullptr), 0);
    EXPECT_THAT(g_log, ElementsAre("asks", "has asked", "asks", "has asked"));

    FakeHost fake;
    double lat = 5.0;
    for (const double answer : {21.3, 21.3, std::acos(-1.0) / 2.0}) {
        fake.cursor = halCore::Vec3(answer, -1.0, 0.0);
        const bool place =
            PIHALVIS::getMouseCursorLLA(1, 2, &lat, nullptr, nullptr, PIData::PIVerticalDatum_t::WGS84) == 0;
        EXPECT_EQ(lat, place ? answer : 5.0);
        EXPECT_EQ(place, answer < 2.0) << "a pole is one";
    }
    EXPECT_THAT(messages_,
                ElementsAre("A fault in the host: service 418: it threw \"deliberate\"",
                            "A fault in the host: service 246: it threw something",
                            testing::StartsWith("A fault in the host: service 424: latitude 21.3")));
}

class Thrower {
  public:
    int onCmd(PIObject*, void*) { throw std::runtime_error("deliberate"); }
    CallbackList<Thrower> callbacks{this};
};

TEST_F(FrameTest, AnExceptionBecomesAMessage) {
    load<FullPlugin>();
    EXPECT_EQ(dispatch(Event::Callback), 0);
    EXPECT_EQ(record_.integer(Slot::Status), kStatusFailed);
    Thrower thrower;
    EXPECT_EQ(thrower.callbacks.make(&Thrower::onCmd)->Call(nullptr, nullptr), 0);
    freeFunctors();
    EXPECT_THAT(messages_, ElementsAre(EndsWith("Callback: deliberate"), EndsWith(": deliberate")));
}

TEST(ParameterMapTest, ZeroFilledMemoryIsAnEmptyRecord) {
    alignas(PIFunctionParams_t) unsigned char block[sizeof(PIFunctionParams_t)] = {};
    static_assert(sizeof(block) <= 256, "hosts written in C reserve 256 bytes");
    auto& record = *reinterpret_cast<PIFunctionParams_t*>(block);
    EXPECT_EQ(record.integer(Slot::EventCode), 0);
    record.strings[Slot::InfoText] = "text";
    record.strings[Slot::NameText] = "name";
    record.strings[Slot::InfoText] += "!";
    EXPECT_EQ(record.strings.begin()->second, "name");  // ordered by slot
    EXPECT_EQ(record.string(Slot::InfoText), "text!");
    std::destroy_at(&record);
}

TEST(VersionTest, LegacyEncoding) {
    const struct {
        int major, minor, revision;
        double expected;
    } cases[] = {{0, 57, 0, 0.57},  {1, 7, 2, 1.702},     {1, 9, 0, 1.9},   {1, 10, 0, 1.901},
                 {1, 20, 0, 1.902}, {1, 30, 4, 1.903004}, {2, 3, 4, 2.0304}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(PIBase::legacyApiVersion(c.major, c.minor, c.revision), c.expected);
    EXPECT_EQ(PIBase::legacyApiVersion(1, 20, 0), 1.902);  // compared exactly by hosts
    EXPECT_EQ(PIBase::versionString(), "1.30.0");
}

TEST(FunnelTest, CallsCarryThePluginsIdentityOrTheOnePushedLast) {
    FakeHost host;
    int own = 0, first = 0, second = 0;
    std::vector<void*> callers;
    const auto call = [&] {
        EXPECT_EQ(handle(PIServerFunctions_t::ForceRedraw, nullptr), 1);
        callers.push_back(host.caller);
    };
    g_This = &own;
    call();
    PIBase::pushOverrideThisPointer(&first);
    PIBase::pushOverrideThisPointer(&second);
    call();
    PIBase::popOverrideThisPointer();
    call();
    PIBase::popOverrideThisPointer();
    call();
    g_This = nullptr;
    EXPECT_THAT(callers, ElementsAre(&own, &second, &first, &own));
}

/// A host that takes its table back when it is asked for an identity.
class LeavingHost final : public PIServiceTable {
  public:
    std::int32_t hostBuildNumber() override { return 13000; }
    PIServiceResult handle(void*, PIServerFunctions_t, void*) override {
        g_FunctionMap = nullptr;
        return 0;
    }
};

TEST(FunnelTest, WithoutAHostTwoLinesAreWritten) {
    LeavingHost leaving;
    for (PIServiceTable* const table :
         {static_cast<PIServiceTable*>(nullptr), static_cast<PIServiceTable*>(&leaving)}) {
        g_FunctionMap = table;
        testing::internal::CaptureStderr();
        EXPECT_EQ(handle(PIServerFunctions_t::ForceRedraw, nullptr), 0);
        EXPECT_EQ(
            testing::internal::GetCapturedStderr(),
            "Invalid Plug-in API Support Function Map.  Plug-in API calls are being made outside of the "
            "context of a loaded plug-in.\nAPI service request has not been processed.\n");
    }
}

class Target {
  public:
    int onCmd(PIObject*, void* data) { return *static_cast<int*>(data) + 1; }
    CallbackList<Target> callbacks{this};
};

TEST(FunctorTest, CallbacksOutliveTheirObjectAndDoNothingThen) {
    auto target = std::make_unique<Target>();
    FunctorTwoParams__* functor = target->callbacks.make(&Target::onCmd);
    int data = 3;
    EXPECT_EQ(functor->Call(nullptr, &data), 4);
    EXPECT_EQ((*functor)(nullptr, &data), 4);
    EXPECT_THAT(g_FunctorList, ElementsAre(functor));
    target.reset();
    EXPECT_EQ(functor->Call(nullptr, &data), 0);
    freeFunctors();
    EXPECT_TRUE(g_FunctorList.empty());
    freeFunctors();
}

class Collected : public PIObject {
  public:
    explicit Collected(std::string name, PIObject* takesAlong = nullptr)
        : name_(std::move(name)), takesAlong_(takesAlong) {}
    ~Collected() override {
        g_log.push_back(name_ + (collector() ? " linked" : ""));
        delete takesAlong_;
    }

  private:
    std::string name_;
    PIObject* takesAlong_;
};

TEST(GarbageCollectorTest, DeletesFromTheLastToTheFirstWithoutBackLinks) {
    g_log.clear();
    auto collector = std::make_unique<PIGarbageCollector>();
    auto* first = new Collected("first");
    auto* second = new Collected("second");
    auto* fourth = new Collected("fourth", second);  // deletes another object of the collector's
    collector->add(first);
    collector->add(second);
    auto* third = new Collected("third");
    collector->add(third);
    collector->add(fourth);
    delete third;  // leaves the collector by itself
    collector.reset();
    EXPECT_THAT(g_log, ElementsAre("third linked", "fourth", "second linked", "first"));
}

}  // namespace
