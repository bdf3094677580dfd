// The test reader's catalogue and functions.
#include "tests/fileinfo/TestReader.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "utils/props/PropVariantConvert.h"

namespace fitest {

TestReader* TestReader::Make() {
    auto* reader = new TestReader();
    reader->BuildCatalogue();
    return reader;
}

void TestReader::BuildCatalogue() {
    OpenGroup(kGroupDescription);
    AddProperty(kTitle, PropTypesText, &TestReader::GetTitle, &TestReader::SetTitle);
    AddProperty(kKeywords, PropTypesList, &TestReader::GetKeywords);
    AddProperty(kTitle, PropTypesI4, &TestReader::GetBig);  // again: the first record stays
    CloseGroup();
    OpenGroup(kGroupGeneral);
    AddProperty(kPages, PropTypesNumberText, &TestReader::GetPages);
    AddProperty(kBig, PropTypesI4, &TestReader::GetBig);
    AddProperty(kThrowing, PropTypesText, &TestReader::GetThrowing, &TestReader::SetThrowing);
    CloseGroup();
    AddProperty(kFlag, PropTypesBool, &TestReader::GetFlag);  // in no group
    OpenGroup(kGroupHidden);
    AddProperty(kNoGetter, PropTypesText);
    CloseGroup();
}

DibBlock TestReader::ReadPreviewDib() {
    ++previewReads;
    if (dib.empty()) return {};
    DibBlock block;
    block.data = std::memcpy(std::malloc(dib.size()), dib.data(), dib.size()), block.size = dib.size();
    return block;
}

std::vector<PROPERTYKEY>& TestReader::GetOpenKeys(std::vector<PROPERTYKEY>& keys) {
    for (const auto& entry : open) keys.push_back(entry.first);
    return keys;
}

HRESULT TestReader::GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) {
    for (const auto& entry : open) {
        if (entry.first == *key) {
            value->vt = VT_I4, value->lVal = entry.second;
            return S_OK;
        }
    }
    value->vt = VT_EMPTY;
    return S_FALSE;
}

HRESULT TestReader::SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) {
    if (value->vt != VT_I4) return E_INVALIDARG;
    for (auto& entry : open) {
        if (entry.first == *key) {
            entry.second = value->lVal;
            return S_OK;
        }
    }
    open.emplace_back(*key, value->lVal);
    return S_OK;
}

HRESULT TestReader::GetTitle(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    return BrmUtils::StringToPropVariant(title.c_str(), value);
}

HRESULT TestReader::SetTitle(VARTYPE, const PROPVARIANT* value) {
    if (value->vt != VT_LPWSTR) return E_INVALIDARG;
    title = value->pwszVal;
    return S_OK;
}

HRESULT TestReader::GetKeywords(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    return BrmUtils::SplitListToPropVariant(L"red, green;blue", requested, value);
}

HRESULT TestReader::GetPages(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    if (requested == VT_LPWSTR) return BrmUtils::StringToPropVariant(L"12 pages", value);
    value->vt = VT_UI4, value->ulVal = 12;
    return S_OK;
}

HRESULT TestReader::GetBig(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    value->vt = VT_I4, value->lVal = -256;
    return S_OK;
}

HRESULT TestReader::GetFlag(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    value->vt = VT_EMPTY;
    return S_FALSE;
}

HRESULT TestReader::GetThrowing(VARTYPE requested, PROPVARIANT* value) {
    lastRequested = requested;
    // Half-way through: the variant holds memory when the exception leaves.
    BrmUtils::StringToPropVariant(L"partial", value);
    throw std::runtime_error("damaged document");
}

HRESULT TestReader::SetThrowing(VARTYPE, const PROPVARIANT*) { throw std::bad_alloc(); }

}  // namespace fitest
