// The registry of singleton data: one record per type name and flag.
#include "utils/Singleton.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace BrmUtils {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::unique_ptr<SingletonData>> entries;
};

// Never destroyed: finalizers registered at exit may still look up their data
// after the statics of this file would have ended.
Registry& GetRegistry() {
    static Registry* registry = new Registry();
    return *registry;
}

}  // namespace

SingletonData& SingletonLibrary::GetData(const std::type_info& type, int flag) {
    Registry& registry = GetRegistry();
    std::string key = type.name();
    key += '#';
    key += std::to_string(flag);
    std::lock_guard<std::mutex> guard(registry.mutex);
    std::unique_ptr<SingletonData>& entry = registry.entries[key];
    if (!entry) entry = std::make_unique<SingletonData>();
    return *entry;
}

}  // namespace BrmUtils
