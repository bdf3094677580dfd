// Numbers of the zip file format that the reader and the writer share:
// record signatures, flag bits, extra-field ids, the limits beyond which a
// value moves to a zip64 record, and little-endian access to record bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZipFormat {

constexpr uint32_t kLocalHeaderSignature = 0x04034B50;
constexpr uint32_t kCentralHeaderSignature = 0x02014B50;
constexpr uint32_t kEndRecordSignature = 0x06054B50;
constexpr uint32_t kZip64EndRecordSignature = 0x06064B50;
constexpr uint32_t kZip64LocatorSignature = 0x07064B50;
constexpr uint32_t kDataDescriptorSignature = 0x08074B50;

constexpr size_t kLocalHeaderSize = 30;
constexpr size_t kCentralHeaderSize = 46;
constexpr size_t kEndRecordSize = 22;
constexpr size_t kZip64LocatorSize = 20;
constexpr size_t kZip64EndRecordSize = 56;

// General purpose flags.
constexpr uint16_t kFlagEncrypted = 0x0001;
constexpr uint16_t kFlagDataDescriptor = 0x0008;
constexpr uint16_t kFlagPatchData = 0x0020;
constexpr uint16_t kFlagStrongEncryption = 0x0040;
constexpr uint16_t kFlagUtf8 = 0x0800;
constexpr uint16_t kFlagMaskedHeader = 0x2000;
// Members with any of these can't be read by this layer and are left out.
constexpr uint16_t kFlagsUnsupported = kFlagEncrypted | kFlagPatchData | kFlagStrongEncryption | kFlagMaskedHeader;

constexpr uint16_t kMethodStored = 0;
constexpr uint16_t kMethodDeflated = 8;

constexpr uint16_t kExtraZip64 = 0x0001;
constexpr uint16_t kExtraNtfs = 0x000A;
constexpr uint16_t kExtraUnicodePath = 0x7075;
constexpr uint16_t kExtraUnicodeComment = 0x6375;

constexpr uint16_t kVersionDefault = 20;
constexpr uint16_t kVersionZip64 = 45;

constexpr uint32_t kMax32 = 0xFFFFFFFFu;
constexpr uint16_t kMax16 = 0xFFFF;

inline uint16_t Get16(const uint8_t* p) { return uint16_t(p[0] | (p[1] << 8)); }
inline uint32_t Get32(const uint8_t* p) { return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24); }
inline uint64_t Get64(const uint8_t* p) { return uint64_t(Get32(p)) | (uint64_t(Get32(p + 4)) << 32); }

inline void Put16(std::vector<uint8_t>& out, uint32_t v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}
inline void Put32(std::vector<uint8_t>& out, uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}
inline void Put64(std::vector<uint8_t>& out, uint64_t v) {
    Put32(out, uint32_t(v));
    Put32(out, uint32_t(v >> 32));
}
inline void Set16(uint8_t* p, uint32_t v) {
    p[0] = uint8_t(v);
    p[1] = uint8_t(v >> 8);
}
inline void Set32(uint8_t* p, uint32_t v) {
    Set16(p, v & 0xFFFF);
    Set16(p + 2, v >> 16);
}

// A 64-bit value as a 32-bit header field: values that don't fit are cut to
// the marker that sends the reader to the zip64 record.
inline uint32_t Cut32(uint64_t v) { return v >= kMax32 ? kMax32 : uint32_t(v); }

}  // namespace ZipFormat
