// The property operations of WFileBase, driven through IFileInfo on the
// test reader: reading and writing, reserved numbers, read-only rules,
// enumerations and their order, open properties.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "tests/fileinfo/TestReader.h"

using namespace fitest;

namespace {

PROPSPEC ById(PROPID pid) {
    PROPSPEC spec;
    spec.ulKind = PRSPEC_PROPID;
    spec.propid = pid;
    return spec;
}

PROPSPEC ByName(const wchar_t* name) {
    PROPSPEC spec;
    spec.ulKind = PRSPEC_LPWSTR;
    spec.lpwstr = const_cast<wchar_t*>(name);
    return spec;
}

struct Variant {
    Variant() { PropVariantInit(&v); }
    ~Variant() { PropVariantClear(&v); }
    PROPVARIANT v;
};

PROPVARIANT Text(const wchar_t* s) {
    PROPVARIANT v;
    PropVariantInit(&v);
    v.vt = VT_LPWSTR;
    v.pwszVal = const_cast<wchar_t*>(s);
    return v;
}

PROPVARIANT Int(LONG n) {
    PROPVARIANT v;
    PropVariantInit(&v);
    v.vt = VT_I4;
    v.lVal = n;
    return v;
}

std::vector<PROPERTYKEY> AllKeys(IFileInfo& info) {
    std::vector<PROPERTYKEY> keys;
    PROPERTYKEY key;
    for (uint32_t i = 0; info.GetAt(i, &key) == S_OK; ++i) {
        keys.push_back(key);
    }
    return keys;
}

std::vector<STATPROPSTG> Properties(IFileInfo& info, const FMTID& fmtid) {
    std::vector<STATPROPSTG> out;
    FnVisitor visitor([&](const void* r) { out.push_back(*static_cast<const STATPROPSTG*>(r)); });
    EXPECT_EQ(info.EnumProperties(&fmtid, visitor), S_OK);
    return out;
}

std::vector<FMTID> FormatIds(IFileInfo& info) {
    std::vector<FMTID> out;
    FnVisitor visitor([&](const void* r) { out.push_back(*static_cast<const FMTID*>(r)); });
    EXPECT_EQ(info.EnumFormatIds(visitor), S_OK);
    return out;
}

// A reader whose catalogue stays empty.
class EmptyReader : public WFileBase {
public:
    void BuildCatalogue() override {}
    DibBlock ReadPreviewDib() override { return {}; }
};

}  // namespace

TEST(WFileBaseRead, ValuesInPrimaryAndSecondaryType) {
    ReaderPtr reader(TestReader::Make());
    struct Case {
        PROPERTYKEY key;
        bool byGetValue;
        HRESULT hr;
        VARTYPE vt;
        VARTYPE requested;
    };
    const Case cases[] = {
        {kTitle, true, S_OK, VT_LPWSTR, VT_LPWSTR},
        {kKeywords, true, S_OK, VT_VECTOR | VT_LPWSTR, VT_VECTOR | VT_LPWSTR},
        {kKeywords, false, S_OK, VT_LPWSTR, VT_LPWSTR},
        {kPages, true, S_OK, VT_UI4, VT_UI4},
        {kPages, false, S_OK, VT_LPWSTR, VT_LPWSTR},
        {kFlag, true, S_FALSE, VT_EMPTY, VT_BOOL},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "pid " << c.key.pid << (c.byGetValue ? " GetValue" : " ReadValue"));
        Variant value;
        reader->lastRequested = VT_EMPTY;
        PROPSPEC spec = ById(c.key.pid);
        const HRESULT hr =
            c.byGetValue ? reader->GetValue(&c.key, &value.v) : reader->ReadValue(&c.key.fmtid, &spec, &value.v);
        EXPECT_EQ(hr, c.hr);
        EXPECT_EQ(value.v.vt, c.vt);
        EXPECT_EQ(reader->lastRequested, c.requested);
    }
    Variant keywords;
    reader->GetValue(&kKeywords, &keywords.v);
    ASSERT_EQ(keywords.v.calpwstr.cElems, 3u);
    EXPECT_STREQ(keywords.v.calpwstr.pElems[2], L"blue");
    PROPSPEC spec = ById(kKeywords.pid);
    Variant joined;
    reader->ReadValue(&kSetA, &spec, &joined.v);
    EXPECT_STREQ(joined.v.pwszVal, L"red; green; blue");
}

TEST(WFileBaseRead, EmptyAnswers) {
    ReaderPtr reader(TestReader::Make());
    const PROPERTYKEY unknown = Key(kSetB, 99);
    for (const PROPERTYKEY& key : {kNoGetter, unknown, kThrowing}) {
        SCOPED_TRACE(key.pid);
        Variant value;
        value.v.vt = VT_I4;  // an output: whatever it held is overwritten
        EXPECT_EQ(reader->GetValue(&key, &value.v), S_FALSE);
        EXPECT_EQ(value.v.vt, VT_EMPTY);
    }
    // The throwing getter was reached, and what it allocated was released.
    EXPECT_EQ(reader->lastRequested, VT_LPWSTR);
}

TEST(WFileBaseRead, ReservedNumbersAndNames) {
    ReaderPtr reader(TestReader::Make());
    EmptyReader* empty = new EmptyReader();
    FileInfoPtr emptyHolder(empty);
    for (IFileInfo* info : {static_cast<IFileInfo*>(reader.get()), static_cast<IFileInfo*>(empty)}) {
        Variant codePage, locale, byName;
        PROPSPEC one = ById(PID_CODEPAGE), localeSpec = ById(PID_LOCALE), name = ByName(L"Title");
        EXPECT_EQ(info->ReadValue(&kSetA, &one, &codePage.v), S_OK);
        EXPECT_EQ(codePage.v.vt, VT_I2);
        EXPECT_EQ(codePage.v.iVal, SHORT(GetACP()));
        EXPECT_EQ(info->ReadValue(&kSetA, &localeSpec, &locale.v), S_OK);
        EXPECT_EQ(locale.v.vt, VT_UI4);
        EXPECT_EQ(locale.v.ulVal, 1024u);
        EXPECT_EQ(info->ReadValue(&kSetA, &name, &byName.v), E_UNEXPECTED);
        EXPECT_FALSE(info->HasPropertySpec(&kSetA, &name));
        EXPECT_TRUE(info->IsReadOnlySpec(&kSetA, &name));
        EXPECT_TRUE(info->HasPropertySpec(&kSetB, &one));
        EXPECT_TRUE(info->IsReadOnlySpec(&kSetB, &localeSpec));
        PROPVARIANT text = Text(L"x");
        EXPECT_EQ(info->WriteValue(&kSetA, &name, &text), E_UNEXPECTED);
        EXPECT_EQ(info->WriteValue(&kSetA, &one, &text), S_OK);
        EXPECT_EQ(info->WriteValue(&kSetA, &localeSpec, &text), S_OK);
    }
}

TEST(WFileBaseWrite, SettersAndReadOnlyRules) {
    ReaderPtr reader(TestReader::Make());
    PROPVARIANT text = Text(L"New title");
    EXPECT_EQ(reader->SetValue(&kTitle, &text), S_OK);
    EXPECT_EQ(reader->title, L"New title");
    EXPECT_EQ(reader->lastSetType, VT_LPWSTR);
    PROPSPEC spec = ById(kTitle.pid);
    PROPVARIANT other = Text(L"By spec");
    EXPECT_EQ(reader->WriteValue(&kSetA, &spec, &other), S_OK);
    EXPECT_EQ(reader->title, L"By spec");
    PROPVARIANT number = Int(5);
    EXPECT_EQ(reader->SetValue(&kTitle, &number), E_INVALIDARG);  // the setter's own answer

    struct Case {
        PROPERTYKEY key;
        HRESULT setResult;
        bool readOnly;
    };
    const Case cases[] = {
        {kTitle, E_INVALIDARG, false},
        {kPages, STG_E_ACCESSDENIED, true},      // no setter
        {kNoGetter, STG_E_ACCESSDENIED, true},   // neither
        {kThrowing, STG_E_ACCESSDENIED, false},  // the setter throws
        {Key(kSetB, 42), STG_E_ACCESSDENIED, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key.pid);
        EXPECT_EQ(reader->SetValue(&c.key, &number), c.setResult);
        EXPECT_EQ(reader->IsReadOnly(&c.key), c.readOnly);
        PROPSPEC byId = ById(c.key.pid);
        EXPECT_EQ(reader->IsReadOnlySpec(&c.key.fmtid, &byId), c.readOnly);
    }
}

TEST(WFileBaseEnum, EmptyCatalogue) {
    FileInfoPtr info(new EmptyReader());
    PROPERTYKEY key;
    EXPECT_EQ(info->GetCount(), 0u);
    EXPECT_EQ(info->GetAt(0, &key), E_INVALIDARG);
    EXPECT_TRUE(FormatIds(*info).empty());
    EXPECT_TRUE(info->IsReadOnly(&kTitle));
    EXPECT_FALSE(info->HasProperty(&kTitle));
    EXPECT_TRUE(Properties(*info, kSetA).empty());
    EXPECT_EQ(info->GetPageCount(), 1u);
    EXPECT_EQ(info->Commit(), STG_E_ACCESSDENIED);
    EXPECT_FALSE(info->HasOpenProperties());
}

TEST(WFileBaseEnum, ByteOrderOfKeys) {
    ReaderPtr reader(TestReader::Make());
    // The duplicate registration is counted once; PID 256 (first byte 0) leads.
    ASSERT_EQ(reader->GetCount(), 7u);
    const std::vector<PROPERTYKEY> expected = {kBig, kTitle, kKeywords, kNoGetter, kThrowing, kPages, kFlag};
    const std::vector<PROPERTYKEY> keys = AllKeys(*reader);
    ASSERT_EQ(keys.size(), expected.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        EXPECT_TRUE(keys[i] == expected[i]) << "index " << i << " pid " << keys[i].pid;
    }
    PROPERTYKEY key;
    EXPECT_EQ(reader->GetAt(7, &key), E_INVALIDARG);
    EXPECT_EQ(reader->GetAt(0xFFFFFFFF, &key), E_INVALIDARG);

    const std::vector<STATPROPSTG> props = Properties(*reader, kSetA);
    const std::vector<std::pair<PROPID, VARTYPE>> expectedProps = {
        {256, VT_I4}, {2, VT_LPWSTR}, {5, VT_LPWSTR}, {7, VT_LPWSTR}, {9, VT_LPWSTR}, {100, VT_LPWSTR}};
    ASSERT_EQ(props.size(), expectedProps.size());
    for (size_t i = 0; i < props.size(); ++i) {
        EXPECT_EQ(props[i].propid, expectedProps[i].first);
        EXPECT_EQ(props[i].vt, expectedProps[i].second);
        EXPECT_EQ(props[i].lpwstrName, nullptr);
    }
    const std::vector<FMTID> ids = FormatIds(*reader);
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_TRUE(ids[0] == kSetA && ids[1] == kSetB);
}

TEST(WFileBaseEnum, GroupsInRegistrationOrder) {
    ReaderPtr reader(TestReader::Make());
    std::vector<PROPERTYKEY> groupKeys;
    FnVisitor groups([&](const void* r) { groupKeys.push_back(static_cast<const PropertyGroup*>(r)->key); });
    reader->EnumGroups(groups);
    ASSERT_EQ(groupKeys.size(), 3u);
    EXPECT_TRUE(groupKeys[0] == kGroupDescription);
    EXPECT_TRUE(groupKeys[1] == kGroupGeneral);
    EXPECT_TRUE(groupKeys[2] == kGroupHidden);

    struct Case {
        PROPERTYKEY group;
        std::vector<PROPERTYKEY> members;
    };
    const Case cases[] = {
        {kGroupDescription, {kTitle, kKeywords, kTitle}},  // listed twice, held once
        {kGroupGeneral, {kPages, kBig, kThrowing}},
        {kGroupHidden, {kNoGetter}},
        {kGroupOrigin, {}},
        {PROPERTYKEY{kGroupGeneral.fmtid, 101}, {}},  // PID differs
    };
    for (const Case& c : cases) {
        std::vector<PROPERTYKEY> members;
        FnVisitor visitor([&](const void* r) { members.push_back(*static_cast<const PROPERTYKEY*>(r)); });
        reader->EnumGroupMembers(&c.group, visitor);
        ASSERT_EQ(members.size(), c.members.size());
        for (size_t i = 0; i < members.size(); ++i) {
            EXPECT_TRUE(members[i] == c.members[i]);
        }
    }
}

TEST(WFileBaseOpen, OpenPropertiesJoinTheCatalogue) {
    ReaderPtr reader(TestReader::Make());
    reader->openEnabled = true;
    const PROPERTYKEY openA = Key(kSetOpen, 300);
    const PROPERTYKEY openB = Key(kSetOpen, 4);
    reader->open = {{openA, 30}, {openB, 4}};

    EXPECT_EQ(reader->GetCount(), 9u);
    PROPERTYKEY key;
    ASSERT_EQ(reader->GetAt(7, &key), S_OK);  // after the catalogue, in list order
    EXPECT_TRUE(key == openA);
    ASSERT_EQ(reader->GetAt(8, &key), S_OK);
    EXPECT_TRUE(key == openB);
    EXPECT_EQ(reader->GetAt(9, &key), E_INVALIDARG);

    Variant value;
    EXPECT_EQ(reader->GetValue(&openA, &value.v), S_OK);
    EXPECT_EQ(value.v.lVal, 30);
    const PROPERTYKEY missing = Key(kSetOpen, 5);
    EXPECT_EQ(reader->GetValue(&missing, &value.v), S_FALSE);  // what the store answers
    // Unknown keys become writable and present; catalogue rules stay.
    EXPECT_TRUE(reader->HasProperty(&missing));
    EXPECT_FALSE(reader->IsReadOnly(&missing));
    EXPECT_TRUE(reader->IsReadOnly(&kPages));
    PROPVARIANT seven = Int(7);
    EXPECT_EQ(reader->SetValue(&missing, &seven), S_OK);
    EXPECT_EQ(reader->open.size(), 3u);
    PROPVARIANT text = Text(L"x");
    EXPECT_EQ(reader->SetValue(&openA, &text), E_INVALIDARG);
    EXPECT_EQ(reader->SetValue(&kPages, &seven), STG_E_ACCESSDENIED);  // the catalogue wins

    // The open set shows in the FMTIDs, in byte order before the others.
    const std::vector<FMTID> ids = FormatIds(*reader);
    ASSERT_EQ(ids.size(), 3u);
    EXPECT_TRUE(ids[0] == kSetOpen);
}

TEST(WFileBaseOpen, EnumPropertiesReportsOpenKeysForEveryFmtid) {
    ReaderPtr reader(TestReader::Make());
    reader->openEnabled = true;
    reader->open = {{Key(kSetOpen, 300), 1}, {Key(kSetOpen, 4), 2}};
    struct Case {
        FMTID fmtid;
        size_t count;
    };
    // The catalogue's own records of the set, then both open keys, each time.
    const Case cases[] = {{kSetA, 6 + 2}, {kSetB, 1 + 2}, {kSetOpen, 0 + 2}, {GUID_NULL, 0 + 2}};
    for (const Case& c : cases) {
        const std::vector<STATPROPSTG> props = Properties(*reader, c.fmtid);
        ASSERT_EQ(props.size(), c.count);
        EXPECT_EQ(props[c.count - 2].propid, 300u);
        EXPECT_EQ(props[c.count - 1].propid, 4u);
        EXPECT_EQ(props[c.count - 1].vt, VT_I4);  // the value's actual type
    }
}

TEST(WFileBaseOpen, KeysWithoutOpenPropertiesStayUnknown) {
    ReaderPtr reader(TestReader::Make());
    reader->open = {{Key(kSetOpen, 4), 2}};  // listed, but the reader says it has none
    const PROPERTYKEY missing = Key(kSetOpen, 5);
    Variant value;
    EXPECT_EQ(reader->GetValue(&missing, &value.v), S_FALSE);
    EXPECT_FALSE(reader->HasProperty(&missing));
    PROPVARIANT seven = Int(7);
    EXPECT_EQ(reader->SetValue(&missing, &seven), STG_E_ACCESSDENIED);
}

TEST(WFileBaseLife, ReferenceCount) {
    TestReader* reader = TestReader::Make();
    reader->AddRef();
    reader->AddRef();
    EXPECT_EQ(reader->Release(), 3u);
    EXPECT_EQ(reader->Release(), 2u);
    EXPECT_EQ(reader->Release(), 1u);  // gone: LeakSanitizer would see it otherwise
}
