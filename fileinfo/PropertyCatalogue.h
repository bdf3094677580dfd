// The property catalogue of a reader: which member function computes or
// stores each property, with the types it is asked for, and the display
// groups. Keys order as their 20 bytes in memory (FMTID as stored, then the
// PID little-endian), so PID 256 sorts before PID 100: the enumerations show
// this order and callers rely on it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "platform/PropIdl.h"
#include "utils/props/PropertyKeyOrder.h"

class WFileBase;

// A getter fills `value` in `requestedType`; with no value it sets VT_EMPTY and
// answers S_FALSE. A setter stores `value`, given in the primary type, in the
// reader's model (never in the file). Readers register their own member
// functions; WFileBase::AddProperty converts them to these.
using PropertyGetter = HRESULT (WFileBase::*)(VARTYPE requestedType, PROPVARIANT* value);
using PropertySetter = HRESULT (WFileBase::*)(VARTYPE primaryType, const PROPVARIANT* value);

struct PropertyRecord {
    PROPERTYKEY key;
    VARTYPE primaryType;    // asked for by GetValue and SetValue
    VARTYPE secondaryType;  // asked for by ReadValue, reported by EnumProperties
    PropertyGetter getter;  // null: the property reads as empty
    PropertySetter setter;  // null: the property is read-only
};

// The records in key order, in one block. A reader registers a few dozen at
// most and a scan builds one catalogue per document, so a sorted vector is
// cheaper than a tree to build, search, walk by index and free.
class PropertyCatalogue {
public:
    using const_iterator = std::vector<PropertyRecord>::const_iterator;

    // The record of `key`, or null.
    const PropertyRecord* Find(const PROPERTYKEY& key) const {
        auto it = LowerBound(key);
        return it != records_.end() && Same(it->key, key) ? &*it : nullptr;
    }
    bool Contains(const PROPERTYKEY& key) const { return Find(key) != nullptr; }
    // Adds `record` unless its key has one already: the first record stays.
    void Add(const PropertyRecord& record) {
        if (records_.empty()) records_.reserve(kTypicalSize);
        auto it = LowerBound(record.key);
        if (it == records_.end() || !Same(it->key, record.key)) records_.insert(it, record);
    }
    size_t size() const { return records_.size(); }
    const PropertyRecord& operator[](size_t index) const { return records_[index]; }
    const_iterator begin() const { return records_.begin(); }
    const_iterator end() const { return records_.end(); }
    void clear() { records_.clear(); }

private:
    // Room for the catalogue of most readers in the first allocation.
    static constexpr size_t kTypicalSize = 32;

    const_iterator LowerBound(const PROPERTYKEY& key) const {
        return std::lower_bound(records_.begin(), records_.end(), key,
                                [](const PropertyRecord& r, const PROPERTYKEY& k) { return BrmUtils::PropertyKeyLess()(r.key, k); });
    }
    static bool Same(const PROPERTYKEY& a, const PROPERTYKEY& b) { return a == b; }

    std::vector<PropertyRecord> records_;
};

// A list of keys shown together; it need not match records of the catalogue.
struct PropertyGroup {
    PROPERTYKEY key;
    std::vector<PROPERTYKEY> members;
};

// The two types of a property in one constant: primary in the low half,
// secondary (display form) in the high half.
constexpr uint32_t PropTypesText = 0x001F001F;        // VT_LPWSTR
constexpr uint32_t PropTypesList = 0x001F101F;        // VT_VECTOR|VT_LPWSTR, or joined VT_LPWSTR
constexpr uint32_t PropTypesNumberText = 0x001F0013;  // VT_UI4, or its localised VT_LPWSTR
constexpr uint32_t PropTypesI4 = 0x00030003;
constexpr uint32_t PropTypesUI4 = 0x00130013;
constexpr uint32_t PropTypesR8 = 0x00050005;
constexpr uint32_t PropTypesI2 = 0x00020002;
constexpr uint32_t PropTypesBool = 0x000B000B;

constexpr VARTYPE PrimaryType(uint32_t types) { return VARTYPE(types & 0xFFFF); }
constexpr VARTYPE SecondaryType(uint32_t types) { return VARTYPE(types >> 16); }

// The keys naming the display groups of the platform's property system.
constexpr PROPERTYKEY kGroupDescription = {
    {0x8969B275, 0x9475, 0x4E00, {0xA8, 0x87, 0xFF, 0x93, 0xB8, 0xB4, 0x1E, 0x44}}, 100};
constexpr PROPERTYKEY kGroupOrigin = {
    {0x2598D2FB, 0x5569, 0x4367, {0x95, 0xDF, 0x5C, 0xD3, 0xA1, 0x77, 0xE1, 0xA5}}, 100};
constexpr PROPERTYKEY kGroupGeneral = {
    {0xCC301630, 0xB192, 0x4C22, {0xB3, 0x72, 0x9F, 0x4C, 0x6D, 0x33, 0x8E, 0x07}}, 100};
// Contents of the document (objects, pages, layers), this system's own group.
constexpr PROPERTYKEY kGroupContents = {
    {0x01C02975, 0x0DB2, 0x4DFE, {0x80, 0xA1, 0x32, 0x45, 0x91, 0xD2, 0xEC, 0xBC}}, 100};
// Fonts and colours of the document, this system's own group.
constexpr PROPERTYKEY kGroupFontsColours = {
    {0x2E04E82D, 0x46A7, 0x404A, {0x40, 0x41, 0xF6, 0x6C, 0x3A, 0x0A, 0xE5, 0x01}}, 100};
// Properties that are not shown.
constexpr PROPERTYKEY kGroupHidden = {{0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}}, 0};
