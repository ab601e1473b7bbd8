#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "common/Notify.h"
#include "sandbox/Host.h"
#include "sandbox/services/HostAction.h"
#include "sandbox/services/Services.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

class Timeout final : public HostObject {
  public:
    QString describe() const override { return "timeout"; }
    QTimer timer;
};

void addTimeouts(Host& host) {
    using Selector = PISelector::Timeout;
    host.services().addSelected(
        Id::Timeout, Selector::Create, "create timeout", {.integers = 1, .pointers = 2},
        [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto* callback = arguments.pointer<FunctorTwoParams__>(0);
            if (!callback) return call.misuse("a timeout needs a callback");
            const auto delay = std::clamp<std::int64_t>(arguments.integer(0), 0, 1 << 30);
            void* data = arguments.pointer(1);
            Timeout* timeout = call.keep(std::make_unique<Timeout>());
            void* handle = timeout->handle();
            Plugin* plugin = &call.plugin();
            timeout->timer.setSingleShot(true);
            // The host forgets the timeout first; the timer itself dies once its own signal is over.
            QObject::connect(
                &timeout->timer, &QTimer::timeout, &host, [&host, plugin, handle, callback, data] {
                    QMetaObject::invokeMethod(
                        &host,
                        [&host, plugin, handle, callback, data] {
                            if (!host.handles().find(handle)) return;
                            host.handles().remove(handle);
                            plugin->enter("timeout", [callback, data] { callback->Call(nullptr, data); });
                        },
                        Qt::QueuedConnection);
                });
            timeout->timer.start(static_cast<int>(delay));
            arguments.give(handle);
            return 1;
        });
    host.services().addSelected(Id::Timeout, Selector::Cancel, "cancel timeout", {.pointers = 1},
                                [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                                    if (!call.object<Timeout>(arguments.pointer(0), "timeout")) return 0;
                                    call.handles().remove(arguments.pointer(0));
                                    return 1;
                                });
}

HostAction* findAction(Host& host, const Plugin& plugin, const QString& owner, const QString& label) {
    for (HostAction* action : host.handles().all<HostAction>())
        if (action->owner() == &plugin && action->ownerName() == owner && action->label() == label)
            return action;
    return nullptr;
}

void addActions(Host& host) {
    using Selector = PISelector::Action;
    ServiceTable& table = host.services();
    table.addSelected(
        Id::Action, Selector::Create, "create action", {.texts = 2, .pointers = 1},
        [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto* callback = arguments.pointer<FunctorTwoParams__>(0);
            if (!callback) return call.misuse("an action needs a callback");
            if (findAction(host, call.plugin(), arguments.string(0), arguments.string(1)))
                return call.misuse(QString("action \"%1\" exists already").arg(arguments.string(1)));
            auto* action = call.keep(std::make_unique<HostAction>(
                host.window().actionsMenu(), arguments.string(0), arguments.string(1), callback));
            host.actions().admit(*action->action(), action->ownerName(), action->label());
            arguments.give(action->handle());
            return 1;
        });
    table.addSelected(Id::Action, Selector::SetChecked, "check action", {.integers = 1, .texts = 2},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          HostAction* action =
                              findAction(host, call.plugin(), arguments.string(0), arguments.string(1));
                          if (!action) return 0;
                          action->setChecked(arguments.integer(0) != 0);
                          return 1;
                      });
    table.addSelected(Id::Action, Selector::Destroy, "destroy action", {.pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!call.object<HostAction>(arguments.pointer(0), "action")) return 0;
                          call.handles().remove(arguments.pointer(0));
                          return 1;
                      });
}

void addPublishedServices(Host& host) {
    using Selector = PISelector::Service;
    ServiceTable& table = host.services();
    table.addSelected(
        Id::Service, Selector::Register, "publish service", {.texts = 1, .pointers = 1},
        [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            if (!arguments.pointer(0)) return call.misuse("no interface");
            const PluginRegistrations::PublishedService service{arguments.pointer(0), &call.plugin()};
            return host.registrations().services.emplace(arguments.text(0), service).second;
        });
    table.addSelected(
        Id::Service, Selector::Unregister, "withdraw service", {.texts = 1, .pointers = 1},
        [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto& services = host.registrations().services;
            const auto at = services.find(arguments.text(0));
            if (at == services.end() || at->second.interface != arguments.pointer(0) ||
                at->second.owner != &call.plugin()) {
                return call.misuse(QString("service \"%1\" is not published").arg(arguments.string(0)));
            }
            services.erase(at);
            return 1;
        });
    table.addSelected(Id::Service, Selector::Find, "find service", {.texts = 1},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          const auto& services = host.registrations().services;
                          const auto at = services.find(arguments.text(0));
                          if (at == services.end()) return 0;
                          arguments.give(at->second.interface);
                          return 1;
                      });
}

void addNotifications(Host& host) {
    using Selector = PISelector::Notify;
    host.services().addSelected(
        Id::Notify, Selector::Message, "notify", {.integers = 1, .texts = 2},
        [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            const std::int64_t severity = arguments.integer(0);
            if (severity < halNotify::Always || severity > halNotify::Debug)
                return call.misuse(QString("unknown severity %1").arg(severity));
            host.log().add(static_cast<int>(severity), arguments.string(0), arguments.string(1));
            return 1;
        },
        ServiceTable::When::AfterInit);
    host.services().addSelected(
        Id::Notify, Selector::Debug, "debug output", {.integers = 1, .texts = 2},
        [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
            host.log().add(halNotify::Debug, arguments.string(0), arguments.string(1));
            return 1;
        },
        ServiceTable::When::AfterInit);
}

}  // namespace

void addApplicationServices(Host& host) {
    addTimeouts(host);
    addActions(host);
    addPublishedServices(host);
    addNotifications(host);
}

}  // namespace sandbox
