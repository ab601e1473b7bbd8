#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "pi/PIDataRecords.h"
#include "pi/PIServerFunctions.h"
#include "pi/PIServiceTable.h"
#include "sandbox/HandleRegistry.h"

namespace sandbox {

class CallTrace;
class Log;
class Plugin;
class ServiceTable;

/// One call of a service while it is served.
class ServiceCall {
  public:
    ServiceCall(ServiceTable& table, Plugin& plugin, PIServerFunctions_t service)
        : table_(table), plugin_(plugin), service_(service) {}

    Plugin& plugin() const { return plugin_; }

    /// Reports by name that the call breaks the contract. \return 0, the answer to such a call
    PIServiceResult misuse(const QString& what) const;

    /// The live object of a handle. Null, with a report, when the handle is unknown, its object gone, of
    /// another kind (`kind` names the one wanted) or another plug-in's.
    template <typename Object>
    Object* object(void* handle, const char* kind) const {
        auto* found = dynamic_cast<Object*>(known(handle, kind));
        if (!found) reportKind(handle, kind);
        return found;
    }

    /// Hands a new object to the registry for this plug-in. \return its handle as a result
    template <typename Object>
    Object* keep(std::unique_ptr<Object> object) const {
        return handles().add(std::move(object), &plugin_);
    }
    HandleRegistry& handles() const;

    /// The call's argument as the record it should be; null when it is another one, or a bare handle.
    template <typename Record>
    Record* record(void* args) const {
        if (handles().wasGivenOut(args)) return nullptr;
        return dynamic_cast<Record*>(static_cast<PI_DATA_BASE_CLASS*>(args));
    }

    /// Names the operation in messages; the service's name until then.
    void setOperation(const QString& name) { operation_ = name; }

  private:
    HostObject* known(void* handle, const char* kind) const;
    void reportKind(void* handle, const char* kind) const;

    ServiceTable& table_;
    Plugin& plugin_;
    PIServerFunctions_t service_;
    QString operation_;
};

/// How many arguments of each type an operation takes behind its selector.
struct Signature {
    std::size_t integers = 0;
    std::size_t reals = 0;
    std::size_t texts = 0;
    std::size_t pointers = 0;
    bool moreTexts = false;  ///< further texts may follow
};

/// The arguments of a catch-all record behind the selector, whose count has been checked, and the place
/// for the results.
class Arguments {
  public:
    Arguments(PI_DATA_CATCHALL& record, bool hasSelector)
        : record_(record), first_(hasSelector ? 1 : 0), textCount_(record.strings.size()) {}

    std::int64_t integer(std::size_t index) const { return record_.integers[first_ + index]; }
    double real(std::size_t index) const { return record_.doubles[index]; }
    const std::string& text(std::size_t index) const { return record_.strings[index]; }
    QString string(std::size_t index) const { return QString::fromStdString(text(index)); }
    std::size_t textCount() const { return textCount_; }
    void* pointer(std::size_t index) const { return record_.pointers[index]; }
    template <typename Type>
    Type* pointer(std::size_t index) const {
        return static_cast<Type*>(record_.pointers[index]);
    }

    void give(std::int64_t value) { record_.integers.push_back(value); }
    void give(double value) { record_.doubles.push_back(value); }
    void give(std::string value) { record_.strings.push_back(std::move(value)); }
    void give(void* value) { record_.pointers.push_back(value); }

  private:
    PI_DATA_CATCHALL& record_;
    std::size_t first_;
    std::size_t textCount_;
};

/// The host's service table: a row for every operation. It checks who calls, when, with which record and
/// how many arguments, reports every violation by name, and only then lets the operation work.
class ServiceTable final : public PIServiceTable {
  public:
    enum class When { AfterInit, AfterStartUp };

    static constexpr std::int32_t kHostBuildNumber = 13000;

    ServiceTable(Log& log, HandleRegistry& handles, CallTrace& trace)
        : log_(log), handles_(handles), trace_(trace), thread_(std::this_thread::get_id()) {}

    std::int32_t hostBuildNumber() override { return kHostBuildNumber; }
    PIServiceResult handle(void* identity, PIServerFunctions_t service, void* args) override;

    /// Whose calls are served.
    void admit(Plugin& plugin) { plugins_.insert(&plugin); }
    /// Forgets the plug-in; identities that it left pushed are reported.
    void expel(Plugin& plugin);

    /// A service with a record of its own.
    template <typename Record, typename Operation>
    void add(PIServerFunctions_t service, const char* name, Operation operation,
             When when = When::AfterStartUp) {
        insert(service, std::nullopt, name, when, [operation](ServiceCall& call, void* args) {
            auto* record = call.record<Record>(args);
            return record ? operation(call, *record) : call.misuse("wrong record");
        });
    }
    /// A service that takes a bare handle.
    template <typename Operation>
    void addBare(PIServerFunctions_t service, const char* name, Operation operation) {
        insert(service, std::nullopt, name, When::AfterStartUp, operation);
    }
    /// A service with a catch-all record and no selector.
    template <typename Operation>
    void addCatchall(PIServerFunctions_t service, const char* name, Signature signature,
                     Operation operation) {
        insert(service, std::nullopt, name, When::AfterStartUp,
               catchall(signature, false, std::move(operation)));
    }
    /// One operation of a number that several share.
    template <typename Selector, typename Operation>
    void addSelected(PIServerFunctions_t service, Selector selector, const char* name, Signature signature,
                     Operation operation, When when = When::AfterStartUp) {
        insert(service, static_cast<std::int64_t>(selector), name, when,
               catchall(signature, true, std::move(operation)));
    }

    HandleRegistry& handles() { return handles_; }
    void misuse(const Plugin& plugin, PIServerFunctions_t service, const QString& operation,
                const QString& what);

  private:
    using Handler = std::function<PIServiceResult(ServiceCall&, void*)>;
    struct Row {
        QString name;
        When when = When::AfterStartUp;
        Handler handler;
    };
    using Key = std::pair<PIServerFunctions_t, std::optional<std::int64_t>>;

    static bool matches(const PI_DATA_CATCHALL& record, const Signature& signature, bool hasSelector);

    template <typename Operation>
    static Handler catchall(Signature signature, bool hasSelector, Operation operation) {
        return [signature, hasSelector, operation](ServiceCall& call, void* args) {
            auto* record = call.record<PI_DATA_CATCHALL>(args);
            if (!record) return call.misuse("wrong record");
            if (!matches(*record, signature, hasSelector)) return call.misuse("wrong number of arguments");
            Arguments arguments(*record, hasSelector);
            return operation(call, arguments);
        };
    }

    void insert(PIServerFunctions_t service, std::optional<std::int64_t> selector, const char* name,
                When when, Handler handler);
    PIServiceResult serve(void* identity, PIServerFunctions_t service, void* args);
    /// " (name)" for the trace; empty for an unknown service.
    QString operationText(PIServerFunctions_t service, void* args) const;
    Plugin* caller(void* identity, PIServerFunctions_t service);
    PIServiceResult overrideIdentity(void* args);

    Log& log_;
    HandleRegistry& handles_;
    CallTrace& trace_;
    std::thread::id thread_;
    std::set<Plugin*> plugins_;
    std::map<Key, Row> rows_;
    std::set<PIServerFunctions_t> shared_;  ///< numbers with selectors
    std::vector<void*> identities_;
};

/// A handle as the result of a service.
inline PIServiceResult asResult(const HostObject* object) {
    return reinterpret_cast<PIServiceResult>(object->handle());
}

}  // namespace sandbox
