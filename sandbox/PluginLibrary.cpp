#include "sandbox/PluginLibrary.h"

#include <utility>

#include <dlfcn.h>

namespace sandbox {

namespace {

/// False when the library lacks the export.
template <typename Function>
bool find(void* library, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

/// The name of the first export that is missing, or null.
const char* findExports(void* library, PluginExports& exports) {
    if (!find(library, "HPI_VersionInfo", exports.versionInfo)) return "HPI_VersionInfo";
    if (!find(library, "HPI_VersionInfoEx", exports.versionInfoEx)) return "HPI_VersionInfoEx";
    if (!find(library, "HPI_MinimumVersion", exports.minimumVersion)) return "HPI_MinimumVersion";
    if (!find(library, "HPI_GetCompilerVersion", exports.compilerVersion)) return "HPI_GetCompilerVersion";
    if (!find(library, "HPI_GetBitWidth", exports.bitWidth)) return "HPI_GetBitWidth";
    if (!find(library, "HPI_IsDebugMode", exports.isDebugMode)) return "HPI_IsDebugMode";
    if (!find(library, "HPI_InitializeFunctionMap", exports.initializeFunctionMap))
        return "HPI_InitializeFunctionMap";
    if (!find(library, "HPI_PluginDispatchFunction", exports.dispatch)) return "HPI_PluginDispatchFunction";
    if (!find(library, "HPI_CleanUpPlugin", exports.cleanUp)) return "HPI_CleanUpPlugin";
    return nullptr;
}

}  // namespace

std::variant<PluginLibrary, QString> PluginLibrary::open(const std::filesystem::path& path,
                                                         std::int32_t hostBuildNumber) {
    const QString name = QString::fromStdString(path.filename().string());
    std::error_code error;
    PluginLibrary result;
    // An absolute path: dlopen would look for a bare name in the system's directories.
    result.path_ = std::filesystem::absolute(path, error).lexically_normal();
    result.library_ = dlopen(result.path_.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!result.library_) return QString("%1 is refused: %2").arg(name, dlerror());
    if (const char* missing = findExports(result.library_, result.exports_))
        return QString("%1 is refused: it does not export %2").arg(name, missing);
    constexpr std::int32_t kInterface = 1;
    if (const std::int32_t major = result.exports_.versionInfoEx(0); major != kInterface) {
        return QString("%1 is refused: it is written for interface %2, this host has %3")
            .arg(name)
            .arg(major)
            .arg(kInterface);
    }
    const std::int32_t minimum = result.exports_.minimumVersion();
    if (minimum > hostBuildNumber) {
        return QString("%1 is refused: it needs host build %2, this is build %3")
            .arg(name)
            .arg(minimum)
            .arg(hostBuildNumber);
    }
    if (const std::int32_t bits = result.exports_.bitWidth(); bits != 64)
        return QString("%1 is refused: it is a %2-bit plug-in").arg(name).arg(bits);
    return result;
}

PluginLibrary::PluginLibrary(PluginLibrary&& other) noexcept
    : path_(std::move(other.path_)),
      library_(std::exchange(other.library_, nullptr)),
      exports_(other.exports_) {}

PluginLibrary::~PluginLibrary() {
    unload();
}

bool PluginLibrary::unload() {
    if (!library_) return true;
    dlclose(std::exchange(library_, nullptr));
    void* still = dlopen(path_.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!still) return true;
    dlclose(still);
    return false;
}

}  // namespace sandbox
