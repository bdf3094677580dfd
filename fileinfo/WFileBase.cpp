// The property operations, reference counting and source handling of
// WFileBase. The bitmap operations are in WFileBaseBitmaps.cpp.
#include "fileinfo/WFileBase.h"

#include <cstdlib>
#include <new>
#include <set>

#include "platform/CodePage.h"
#include "platform/Files.h"
#include "utils/streams/FileStream.h"

namespace {

// The locale number answered for PID_LOCALE: the user's default locale.
constexpr ULONG kLocaleUserDefault = 1024;

bool IsReservedPid(PROPID pid) { return pid == PID_CODEPAGE || pid == PID_LOCALE; }

PROPERTYKEY MakeKey(const FMTID& fmtid, PROPID pid) {
    PROPERTYKEY key;
    key.fmtid = fmtid;
    key.pid = pid;
    return key;
}

void SetEmpty(PROPVARIANT* value) {
    PropVariantInit(value);
    value->vt = VT_EMPTY;
}

}  // namespace

WFileBase::WFileBase() = default;

WFileBase::~WFileBase() {
    ForgetLastRead();
    // The source goes last: a catalogue entry may still refer to what was read.
    catalogue.clear();
    groups.clear();
    path.Empty();
    std::free(preview.data);
    preview = DibBlock{};
    SafeRelease(stream);
}

void WFileBase::AddRef() { refCount.fetch_add(1, std::memory_order_relaxed); }

ULONG WFileBase::Release() {
    const int32_t previous = refCount.fetch_sub(1, std::memory_order_acq_rel);
    if (previous == 1) {
        delete this;
    }
    return ULONG(previous);
}

// ---- Registration -------------------------------------------------------

void WFileBase::AddRecord(const PROPERTYKEY& key, uint32_t types, PropertyGetter getter, PropertySetter setter) {
    PropertyRecord record;
    record.key = key;
    record.primaryType = PrimaryType(types);
    record.secondaryType = SecondaryType(types);
    record.getter = getter;
    record.setter = setter;
    catalogue.Add(record);  // a key registered before keeps its first record
    if (groupOpen) {
        groups.back().members.push_back(key);
    }
}

void WFileBase::OpenGroup(const PROPERTYKEY& groupKey) {
    if (groups.empty()) {
        groups.reserve(8);  // the readers have at most six
    }
    groups.push_back(PropertyGroup{groupKey, {}});
    groups.back().members.reserve(16);
    groupOpen = true;
}

void WFileBase::CloseGroup() { groupOpen = false; }

// ---- Reading and writing values -----------------------------------------

void WFileBase::ForgetLastRead() {
    if (lastRead.valid) {
        PropVariantClear(&lastRead.value);
        SetEmpty(&lastRead.value);
        lastRead.valid = false;
    }
}

HRESULT WFileBase::ReadProperty(const PROPERTYKEY& key, PROPVARIANT* value, bool primary) {
    SetEmpty(value);
    try {
        const PropertyRecord* record = catalogue.Find(key);
        if (!record || !record->getter) {
            ForgetLastRead();
            if (!record && HasOpenProperties()) {
                return GetOpenValue(&key, value);
            }
            return S_FALSE;
        }
        if (!primary && lastRead.valid && lastRead.key == key) {
            // Only this read may use the kept value: it is handed over as it is.
            *value = lastRead.value;
            SetEmpty(&lastRead.value);
            lastRead.valid = false;
            return lastRead.hr;
        }
        ForgetLastRead();
        const HRESULT hr = (this->*record->getter)(primary ? record->primaryType : record->secondaryType, value);
        if (primary && record->primaryType == record->secondaryType && !record->setter && !HasOpenProperties()) {
            if (SUCCEEDED(PropVariantCopy(&lastRead.value, value))) {
                lastRead.key = key;
                lastRead.hr = hr;
                lastRead.valid = true;
            } else {
                SetEmpty(&lastRead.value);
            }
        }
        return hr;
    } catch (...) {
        // A getter that fails half-way may have filled the variant.
        PropVariantClear(value);
        SetEmpty(value);
        return S_FALSE;
    }
}

HRESULT WFileBase::WriteProperty(const PROPERTYKEY& key, const PROPVARIANT* value) {
    ForgetLastRead();
    HRESULT result = STG_E_ACCESSDENIED;
    try {
        const PropertyRecord* record = catalogue.Find(key);
        if (!record) {
            if (HasOpenProperties()) {
                result = SetOpenValue(&key, value);
            }
        } else if (record->setter) {
            result = (this->*record->setter)(record->primaryType, value);
        }
    } catch (...) {
        result = STG_E_ACCESSDENIED;
    }
    return result;
}

HRESULT WFileBase::GetValue(const PROPERTYKEY* key, PROPVARIANT* value) {
    if (!key || !value) {
        return E_POINTER;
    }
    return ReadProperty(*key, value, true);
}

HRESULT WFileBase::ReadValue(const FMTID* fmtid, const PROPSPEC* spec, PROPVARIANT* value) {
    if (!fmtid || !spec || !value) {
        return E_POINTER;
    }
    if (spec->ulKind != PRSPEC_PROPID) {
        return E_UNEXPECTED;
    }
    if (spec->propid == PID_CODEPAGE) {
        SetEmpty(value);
        value->vt = VT_I2;
        value->iVal = SHORT(GetACP());
        return S_OK;
    }
    if (spec->propid == PID_LOCALE) {
        SetEmpty(value);
        value->vt = VT_UI4;
        value->ulVal = kLocaleUserDefault;
        return S_OK;
    }
    return ReadProperty(MakeKey(*fmtid, spec->propid), value, false);
}

HRESULT WFileBase::SetValue(const PROPERTYKEY* key, const PROPVARIANT* value) {
    if (!key || !value) {
        return E_POINTER;
    }
    return WriteProperty(*key, value);
}

HRESULT WFileBase::WriteValue(const FMTID* fmtid, const PROPSPEC* spec, const PROPVARIANT* value) {
    if (!fmtid || !spec || !value) {
        return E_POINTER;
    }
    if (spec->ulKind != PRSPEC_PROPID) {
        return E_UNEXPECTED;
    }
    if (IsReservedPid(spec->propid)) {
        return S_OK;  // the code page and locale are the machine's, not the document's
    }
    return WriteProperty(MakeKey(*fmtid, spec->propid), value);
}

// ---- Questions about keys -----------------------------------------------

bool WFileBase::IsReadOnly(const PROPERTYKEY* key) {
    if (!key) {
        return true;
    }
    if (const PropertyRecord* record = catalogue.Find(*key)) {
        return !record->setter;
    }
    return !HasOpenProperties();
}

bool WFileBase::IsReadOnlySpec(const FMTID* fmtid, const PROPSPEC* spec) {
    if (!fmtid || !spec || spec->ulKind != PRSPEC_PROPID || IsReservedPid(spec->propid)) {
        return true;
    }
    const PROPERTYKEY key = MakeKey(*fmtid, spec->propid);
    return IsReadOnly(&key);
}

bool WFileBase::HasProperty(const PROPERTYKEY* key) {
    if (!key) {
        return false;
    }
    return catalogue.Contains(*key) || HasOpenProperties();
}

bool WFileBase::HasPropertySpec(const FMTID* fmtid, const PROPSPEC* spec) {
    if (!fmtid || !spec || spec->ulKind != PRSPEC_PROPID) {
        return false;
    }
    if (IsReservedPid(spec->propid)) {
        return true;
    }
    const PROPERTYKEY key = MakeKey(*fmtid, spec->propid);
    return HasProperty(&key);
}

// ---- Enumerations --------------------------------------------------------

std::vector<PROPERTYKEY> WFileBase::OpenKeys() {
    std::vector<PROPERTYKEY> keys;
    try {
        GetOpenKeys(keys);
    } catch (...) {
        keys.clear();
    }
    return keys;
}

HRESULT WFileBase::EnumFormatIds(PropertyVisitor& visitor) {
    std::set<FMTID, BrmUtils::FmtidLess> ids;
    for (const PropertyRecord& record : catalogue) {
        ids.insert(record.key.fmtid);
    }
    for (const PROPERTYKEY& key : OpenKeys()) {
        ids.insert(key.fmtid);
    }
    for (const FMTID& id : ids) {
        visitor.Visit(&id);
    }
    return S_OK;
}

HRESULT WFileBase::EnumProperties(const FMTID* fmtid, PropertyVisitor& visitor) {
    if (!fmtid) {
        return E_POINTER;
    }
    for (const PropertyRecord& record : catalogue) {
        if (record.key.fmtid == *fmtid) {
            STATPROPSTG stat{nullptr, record.key.pid, record.secondaryType};
            visitor.Visit(&stat);
        }
    }
    // Open keys are reported whatever FMTID was asked for: hosts list them
    // under every set, and the behaviour is kept as they know it.
    for (const PROPERTYKEY& key : OpenKeys()) {
        PROPVARIANT value;
        SetEmpty(&value);
        HRESULT hr;
        try {
            hr = GetOpenValue(&key, &value);
        } catch (...) {
            hr = E_FAIL;
        }
        if (SUCCEEDED(hr)) {
            STATPROPSTG stat{nullptr, key.pid, value.vt};
            visitor.Visit(&stat);
        }
        PropVariantClear(&value);
    }
    return S_OK;
}

uint32_t WFileBase::GetCount() { return uint32_t(catalogue.size() + OpenKeys().size()); }

HRESULT WFileBase::GetAt(uint32_t index, PROPERTYKEY* key) {
    if (!key) {
        return E_POINTER;
    }
    if (index < catalogue.size()) {
        const PROPERTYKEY& found = catalogue[index].key;
        std::memcpy(&key->fmtid, &found.fmtid, sizeof(FMTID));
        key->pid = found.pid;
        return S_OK;
    }
    const std::vector<PROPERTYKEY> open = OpenKeys();
    const size_t openIndex = index - catalogue.size();
    if (openIndex >= open.size()) {
        return E_INVALIDARG;
    }
    std::memcpy(&key->fmtid, &open[openIndex].fmtid, sizeof(FMTID));
    key->pid = open[openIndex].pid;
    return S_OK;
}

void WFileBase::EnumGroups(PropertyVisitor& visitor) {
    for (const PropertyGroup& group : groups) {
        visitor.Visit(&group);
    }
}

void WFileBase::EnumGroupMembers(const PROPERTYKEY* groupKey, PropertyVisitor& visitor) {
    if (!groupKey) {
        return;
    }
    for (const PropertyGroup& group : groups) {
        if (group.key.pid == groupKey->pid && group.key.fmtid == groupKey->fmtid) {
            for (const PROPERTYKEY& member : group.members) {
                visitor.Visit(&member);
            }
            return;
        }
    }
}

// ---- Defaults of the hooks -----------------------------------------------

uint32_t WFileBase::GetPageCount() { return 1; }

HRESULT WFileBase::Commit() {
    ForgetLastRead();
    return CommitDocument();
}

HRESULT WFileBase::CommitDocument() { return STG_E_ACCESSDENIED; }

bool WFileBase::HasOpenProperties() { return false; }

HRESULT WFileBase::EnumTextChunks(PropertyVisitor&) { return S_OK; }

std::vector<PROPERTYKEY>& WFileBase::GetOpenKeys(std::vector<PROPERTYKEY>& keys) { return keys; }

HRESULT WFileBase::GetOpenValue(const PROPERTYKEY*, PROPVARIANT* value) {
    if (value) {
        SetEmpty(value);
    }
    return S_FALSE;
}

HRESULT WFileBase::SetOpenValue(const PROPERTYKEY*, const PROPVARIANT*) { return STG_E_ACCESSDENIED; }

// ---- The source -----------------------------------------------------------

bool WFileBase::OpenFile(const wchar_t* newPath) {
    ForgetLastRead();
    IStream* opened = nullptr;
    if (newPath) {
        HANDLE handle = CreateFileW(newPath, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, INVALID_HANDLE_VALUE);
        if (handle != INVALID_HANDLE_VALUE) {
            opened = new (std::nothrow) BrmUtils::FileStream(handle, newPath);
            if (!opened) {
                CloseHandle(handle);
            }
        }
    }
    // The stream held so far goes in any case.
    SafeRelease(stream);
    stream = opened;
    if (!opened) {
        return false;
    }
    path = newPath;
    return true;
}

bool WFileBase::OpenStream(IStream* newStream) {
    ForgetLastRead();
    if (newStream) {
        newStream->AddRef();
    }
    SafeRelease(stream);
    stream = newStream;
    return stream != nullptr;
}

void WFileBase::CloseFile() {
    ForgetLastRead();
    SafeRelease(stream);
    std::free(preview.data);
    preview = DibBlock{};
}
