// A byte-vector IStream for the codec tests, with a reference count the
// tests can watch and a switch that makes writes fail.
#pragma once

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/ObjIdl.h"

namespace imaging_test {

class FakeStream final : public IStream {
public:
    explicit FakeStream(std::vector<uint8_t> bytes = {}) : bytes_(std::move(bytes)) {}

    std::vector<uint8_t> bytes_;
    uint64_t pos_ = 0;
    ULONG refs_ = 1;
    bool failWrites_ = false;

    HRESULT QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++refs_; }
    ULONG Release() override { return --refs_; }  // owned by the test, never deleted here

    HRESULT Read(void* pv, ULONG cb, ULONG* read) override {
        const uint64_t n = pos_ >= bytes_.size() ? 0 : std::min<uint64_t>(cb, bytes_.size() - pos_);
        if (n) std::memcpy(pv, bytes_.data() + pos_, size_t(n));
        pos_ += n;
        if (read) *read = ULONG(n);
        return n == cb ? S_OK : S_FALSE;
    }
    HRESULT Write(const void* pv, ULONG cb, ULONG* written) override {
        if (failWrites_) return STG_E_WRITEFAULT;
        if (pos_ + cb > bytes_.size()) bytes_.resize(size_t(pos_ + cb));
        std::memcpy(bytes_.data() + pos_, pv, cb);
        pos_ += cb;
        if (written) *written = cb;
        return S_OK;
    }
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPos) override {
        int64_t base = origin == STREAM_SEEK_CUR ? int64_t(pos_) : origin == STREAM_SEEK_END ? int64_t(bytes_.size()) : 0;
        if (base + move.QuadPart < 0) return STG_E_INVALIDFUNCTION;
        pos_ = uint64_t(base + move.QuadPart);
        if (newPos) newPos->QuadPart = pos_;
        return S_OK;
    }
    HRESULT Stat(STATSTG* stat, DWORD) override {
        *stat = STATSTG{};
        stat->type = STGTY_STREAM;
        stat->cbSize.QuadPart = bytes_.size();
        return S_OK;
    }
    HRESULT SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT Commit(DWORD) override { return S_OK; }
    HRESULT Revert() override { return E_NOTIMPL; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT Clone(IStream**) override { return E_NOTIMPL; }
};

}  // namespace imaging_test
