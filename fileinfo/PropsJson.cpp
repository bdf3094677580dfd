// The JSON form of a document's properties (see PropsJson.h).
#include "fileinfo/PropsJson.h"

#include <cstdio>

#include "fileinfo/FormatDetection.h"
#include "fileinfo/PropertyCatalogue.h"
#include "fileinfo/PropertyNames.h"
#include "fileinfo/Variants.h"

namespace fi {
namespace {

struct GroupCollector : PropertyVisitor {
    std::vector<std::pair<PROPERTYKEY, std::vector<PROPERTYKEY>>> list;
    void Visit(const void* record) override {
        const auto* group = static_cast<const PropertyGroup*>(record);
        list.emplace_back(group->key, group->members);
    }
};

nlohmann::ordered_json PropertyJson(IFileInfo* info, const PROPERTYKEY& key) {
    Variant value;
    HRESULT hr = info->GetValue(&key, &value.pv);
    Variant display;
    PROPSPEC spec{};
    spec.ulKind = PRSPEC_PROPID;
    spec.propid = key.pid;
    HRESULT displayHr = info->ReadValue(&key.fmtid, &spec, &display.pv);
    return {{"key", KeyText(key)},
            {"name", KeyName(key)},
            {"hr", HexHresult(hr)},
            {"vt", VtName(value.pv.vt)},
            {"value", VariantToJson(value.pv)},
            {"display_hr", HexHresult(displayHr)},
            {"display_vt", VtName(display.pv.vt)},
            {"display", VariantToText(display.pv)},
            {"readonly", info->IsReadOnly(&key)}};
}

}  // namespace

std::vector<std::pair<PROPERTYKEY, std::vector<PROPERTYKEY>>> PropertyGroups(IFileInfo* info) {
    GroupCollector groups;
    info->EnumGroups(groups);
    return std::move(groups.list);
}

nlohmann::ordered_json PropsJson(IFileInfo* info, const std::string& file, EFileFormat format) {
    nlohmann::ordered_json properties = nlohmann::ordered_json::array();
    for (uint32_t i = 0, n = info->GetCount(); i < n; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        properties.push_back(PropertyJson(info, key));
    }
    nlohmann::ordered_json groups = nlohmann::ordered_json::array();
    for (const auto& [key, members] : PropertyGroups(info)) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto& k : members) list.push_back(KeyText(k));
        groups.push_back({{"key", KeyText(key)}, {"members", list}});
    }
    return {{"file", file}, {"type", FormatName(format)}, {"properties", properties}, {"groups", groups}};
}

std::string DumpJson(const nlohmann::ordered_json& j, int indent) {
    return j.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string HexHresult(HRESULT hr) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "0x%08X", static_cast<uint32_t>(hr));
    return buf;
}

}  // namespace fi
