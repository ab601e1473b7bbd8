#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <variant>

#include "pi/PIFunctionParams.h"
#include "pi/PIServiceTable.h"

namespace sandbox {

/// The nine exports of a plug-in.
struct PluginExports {
    double (*versionInfo)() = nullptr;
    std::int32_t (*versionInfoEx)(std::int32_t selector) = nullptr;
    std::int32_t (*minimumVersion)() = nullptr;
    std::int32_t (*compilerVersion)() = nullptr;
    std::int32_t (*bitWidth)() = nullptr;
    std::int32_t (*isDebugMode)() = nullptr;
    void (*initializeFunctionMap)(PIServiceTable*, void* instance) = nullptr;
    std::int32_t (*dispatch)(std::int32_t number, void*, void*, void*, void*, void*) = nullptr;
    void (*cleanUp)() = nullptr;
};

/// A plug-in's shared library, loaded.
class PluginLibrary {
  public:
    /// Loads a library and finds its exports.
    /// \return the library, or why it is refused; it is not in the process then
    static std::variant<PluginLibrary, QString> open(const std::filesystem::path& path,
                                                     std::int32_t hostBuildNumber);

    PluginLibrary(PluginLibrary&& other) noexcept;
    PluginLibrary& operator=(PluginLibrary&&) = delete;
    /// Unloads.
    ~PluginLibrary();

    const PluginExports& exports() const { return exports_; }
    const std::filesystem::path& path() const { return path_; }
    /// Whether both are one library in the process, by whatever names.
    bool isSame(const PluginLibrary& other) const { return library_ && library_ == other.library_; }

    /// Unloads the library, once. \return whether it is really gone from the process
    bool unload();

  private:
    PluginLibrary() = default;

    std::filesystem::path path_;
    void* library_ = nullptr;
    PluginExports exports_;
};

}  // namespace sandbox
