#include "sandbox/ServiceTable.h"

#include <algorithm>

#include "sandbox/CallTrace.h"
#include "sandbox/Log.h"
#include "sandbox/Plugin.h"

namespace sandbox {

PIServiceResult ServiceCall::misuse(const QString& what) const {
    table_.misuse(plugin_, service_, operation_, what);
    return 0;
}

HandleRegistry& ServiceCall::handles() const {
    return table_.handles();
}

HostObject* ServiceCall::known(void* handle, const char*) const {
    HostObject* object = table_.handles().find(handle);
    return object && (object->owner() == &plugin_ || !object->owner()) ? object : nullptr;
}

void ServiceCall::reportKind(void* handle, const char* kind) const {
    const HandleRegistry& handles = table_.handles();
    const HostObject* object = handles.find(handle);
    if (!handle)
        misuse(QString("null handle instead of a %1").arg(kind));
    else if (object && object->owner() && object->owner() != &plugin_)
        misuse(QString("%1 belongs to %2").arg(object->describe(), object->owner()->name()));
    else if (object)
        misuse(QString("%1 is no %2").arg(object->describe(), kind));
    else if (handles.wasGivenOut(handle))
        misuse(QString("handle of a %1 that is gone").arg(kind));
    else
        misuse(QString("unknown handle instead of a %1").arg(kind));
}

void ServiceTable::insert(PIServerFunctions_t service, std::optional<std::int64_t> selector, const char* name,
                          When when, Handler handler) {
    if (selector) shared_.insert(service);
    rows_[{service, selector}] = {name, when, std::move(handler)};
}

void ServiceTable::misuse(const Plugin& plugin, PIServerFunctions_t service, const QString& operation,
                          const QString& what) {
    const QString number = QString("service %1").arg(static_cast<int>(service));
    log_.misuse(plugin.name(),
                (operation.isEmpty() ? number : number + " (" + operation + ")") + ": " + what);
}

void ServiceTable::expel(Plugin& plugin) {
    plugins_.erase(&plugin);
    if (std::erase(identities_, &plugin) > 0) log_.misuse(plugin.name(), "identity left pushed");
}

Plugin* ServiceTable::caller(void* identity, PIServerFunctions_t service) {
    const auto at = plugins_.find(static_cast<Plugin*>(identity));
    if (at != plugins_.end()) return *at;
    log_.misuse("unknown plug-in", QString("service %1: unknown identity").arg(static_cast<int>(service)));
    return nullptr;
}

bool ServiceTable::matches(const PI_DATA_CATCHALL& record, const Signature& signature, bool hasSelector) {
    const std::size_t texts = record.strings.size();
    return record.integers.size() == signature.integers + (hasSelector ? 1 : 0) &&
           record.doubles.size() == signature.reals && record.pointers.size() == signature.pointers &&
           (texts == signature.texts || (signature.moreTexts && texts > signature.texts));
}

PIServiceResult ServiceTable::handle(void* identity, PIServerFunctions_t service, void* args) {
    if (std::this_thread::get_id() != thread_) {
        // Nothing here may be touched from a foreign thread; the report is made on the host's own.
        const QString what =
            QString("service %1: called on another thread than the host's").arg(static_cast<int>(service));
        QMetaObject::invokeMethod(
            &log_, [log = &log_, what] { log->misuse("plug-in", what); }, Qt::QueuedConnection);
        return 0;
    }
    if (!trace_.isOpen()) return serve(identity, service, args);
    const auto caller = plugins_.find(static_cast<Plugin*>(identity));
    CallTrace::Scope scope(trace_, QString("%1 -> %2%3")
                                       .arg(caller == plugins_.end() ? "plug-in" : (*caller)->name())
                                       .arg(static_cast<int>(service))
                                       .arg(operationText(service, args) + trace_.argumentsText(args)));
    const CallTrace::Counts counts = trace_.countArguments(args);
    const PIServiceResult result = serve(identity, service, args);
    scope.setResult(trace_.resultText(result, args, counts));
    return result;
}

QString ServiceTable::operationText(PIServerFunctions_t service, void* args) const {
    std::optional<std::int64_t> selector;
    if (shared_.contains(service) && !handles_.wasGivenOut(args)) {
        const auto* record = dynamic_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        if (record && !record->integers.empty()) selector = record->integers.front();
    }
    if (service == PIServerFunctions_t::IdentityOverride) return " (identity)";
    const auto row = rows_.find({service, selector});
    return row == rows_.end() ? QString() : QString(" (%1)").arg(row->second.name);
}

PIServiceResult ServiceTable::serve(void* identity, PIServerFunctions_t service, void* args) {
    if (service == PIServerFunctions_t::IdentityOverride) return overrideIdentity(args);

    Plugin* plugin = caller(identity, service);
    if (!plugin) return 0;
    ServiceCall call(*this, *plugin, service);

    std::optional<std::int64_t> selector;
    if (shared_.contains(service)) {
        const auto* record = call.record<PI_DATA_CATCHALL>(args);
        if (!record) return call.misuse("wrong record");
        if (record->integers.empty()) return call.misuse("no selector");
        selector = record->integers.front();
    }
    const auto row = rows_.find({service, selector});
    if (row == rows_.end())
        return call.misuse(selector ? QString("unknown selector %1").arg(*selector) : "unknown service");
    call.setOperation(row->second.name);
    if (row->second.when == When::AfterStartUp ? !plugin->isRunning() : !plugin->isInitialized()) {
        return call.misuse(plugin->state() == Plugin::State::Initialized ? "called before start-up"
                                                                         : "called after close");
    }
    try {
        return row->second.handler(call, args);
    } catch (const std::exception& error) {
        log_.add(2, "host", QString("service %1 failed: %2").arg(row->second.name, error.what()));
        return 0;
    }
}

PIServiceResult ServiceTable::overrideIdentity(void* args) {
    using Selector = PISelector::IdentityOverride;
    const auto report = [this](const QString& what) {
        log_.misuse("plug-in", "service 16 (identity): " + what);
        return PIServiceResult{0};
    };
    auto* record = dynamic_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
    if (!record) return report("wrong record");
    if (record->integers.size() != 1) return report("wrong number of arguments");
    switch (static_cast<Selector>(record->integers.front())) {
        case Selector::Query:
            if (!identities_.empty()) record->pointers.push_back(identities_.back());
            return 1;
        case Selector::Push:
            if (record->pointers.size() != 1 ||
                !plugins_.contains(static_cast<Plugin*>(record->pointers.front())))
                return report("unknown identity pushed");
            identities_.push_back(record->pointers.front());
            return 1;
        case Selector::Pop:
            if (identities_.empty()) return report("popped without a push");
            identities_.pop_back();
            return 1;
    }
    return report("unknown selector");
}

}  // namespace sandbox
