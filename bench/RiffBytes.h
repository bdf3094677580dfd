// Little-endian numbers and RIFF chunks appended to a byte vector: the
// documents the benchmarks make for themselves (bench_kvd, thumb_time).
#pragma once

#include <cstdint>
#include <vector>

namespace riffbytes {

using Bytes = std::vector<uint8_t>;

inline void U16(Bytes& out, uint16_t v) { out.insert(out.end(), {uint8_t(v), uint8_t(v >> 8)}); }
inline void U32(Bytes& out, uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8) out.push_back(uint8_t(v >> shift));
}
// A chunk: tag, size, data, and the pad byte after odd data.
inline Bytes Chunk(const char* tag, const Bytes& data) {
    Bytes out(tag, tag + 4);
    U32(out, uint32_t(data.size()));
    out.insert(out.end(), data.begin(), data.end());
    if (data.size() % 2) out.push_back(0);
    return out;
}
inline Bytes List(const char* type, const Bytes& children) {
    Bytes body(type, type + 4);
    body.insert(body.end(), children.begin(), children.end());
    return Chunk("LIST", body);
}

}  // namespace riffbytes
