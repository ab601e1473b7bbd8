#include "sandbox/Host.h"
#include "sandbox/services/Services.h"

namespace sandbox {

void addSettingsServices(Host& host) {
    using Id = PIServerFunctions_t;
    host.services().add<PI_DATA_POINTER_STRING_AND_STRING>(
        Id::RegistrySetValue, "store setting",
        [&host](ServiceCall& call, PI_DATA_POINTER_STRING_AND_STRING& record) -> PIServiceResult {
            if (record.text.empty()) return call.misuse("no key");
            host.settings().setValue(QString::fromStdString(record.text),
                                     QString::fromStdString(record.second));
            return 1;
        },
        ServiceTable::When::AfterInit);
    host.services().add<PI_DATA_POINTER_AND_STRING>(
        Id::RegistryGetValue, "read setting",
        [&host](ServiceCall& call, PI_DATA_POINTER_AND_STRING& record) -> PIServiceResult {
            if (record.text.empty()) return call.misuse("no key");
            record.text = host.settings().value(QString::fromStdString(record.text)).toStdString();
            return 1;
        },
        ServiceTable::When::AfterInit);
}

}  // namespace sandbox
