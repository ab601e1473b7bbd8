// The example host, probed: it loads HostProbe.so, presses "Run", and lets it go. The environment's BROKEN
// names a service that it falsifies meanwhile.
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

#include "samples/host/Host.h"
#include "samples/host/Plugin.h"

namespace {

class BrokenHost final : public PIServiceTable {
  public:
    using Service = PIServerFunctions_t;

    Host host;

    std::int32_t hostBuildNumber() override { return host.hostBuildNumber(); }
    PIServiceResult handle(void* plugin, Service service, void* record) override {
        auto* const base = static_cast<PI_DATA_BASE_CLASS*>(record);
        auto* const values = hasRecord(service) ? dynamic_cast<PI_DATA_CATCHALL*>(base) : nullptr;
        if (has("throws") && service == Service::RegistryGetValue) throw std::runtime_error("lost settings");
        if (has("trusting") && service == Service::BindWidget) {
            host.handle(plugin, service, record);
            return 1;
        }
        const PIServiceResult result = host.handle(plugin, service, record);
        if (has("degrees") && service == Service::Cursor && values)
            for (double& real : values->doubles) real *= 180.0 / 3.14159265358979;
        if (has("in-front") && service == Service::OverlayFiles && values && values->pointers.size() > 1)
            std::swap(values->pointers.front(), values->pointers.back());
        if (has("forgetful") && service == Service::RegistryGetValue)
            static_cast<PI_DATA_POINTER_AND_STRING*>(base)->text.clear();
        if (has("echoes") && service == Service::CreateTextField)
            callback_ = static_cast<PI_DATA_POINTER_INT_AND_FUNCTION*>(base)->function;
        if (has("echoes") && service == Service::WindowSetString && callback_)
            callback_->Call(nullptr, nullptr);
        if (has("off-by-one") && service == Service::WidgetValue && values)
            for (std::size_t i = 1; i < values->integers.size(); ++i) ++values->integers[i];
        return result;
    }

  private:
    static bool has(const char* fault) {
        const char* const broken = std::getenv("BROKEN");
        return broken && std::string(broken) == fault;
    }
    static bool hasRecord(Service service) {
        return service != Service::DialogShow && service != Service::WindowShown &&
               service != Service::ForceRedraw;
    }

    FunctorTwoParams__* callback_ = nullptr;
};

}  // namespace

int main(int count, char** arguments) try {
    if (count != 2) throw std::runtime_error("usage: probed-host HostProbe.so");
    BrokenHost host;
    Plugin plugin(arguments[1], host.hostBuildNumber());
    plugin.start(host);
    host.host.press("Host Probe...");
    host.host.press("Run");
    plugin.close();
    if (host.host.leftovers() != 0) throw std::runtime_error("the probe left something behind");
    plugin.unload();
    return 0;
} catch (const std::exception& error) {
    std::cerr << "probed-host: " << error.what() << '\n';
    return 1;
}
