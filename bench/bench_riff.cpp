// RIFF input: the cost of a scan over a document's top level, plain and with
// its pages in a compressed section, and the inflate rate of reading and of
// skipping (which the walk inside a section uses to step over chunks).
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstring>
#include <vector>

#include "riff/CprExports.h"
#include "riff/DecompressorDeflate.h"
#include "riff/FourCC.h"
#include "riff/RiffReader.h"
#include "utils/streams/MemStream.h"

namespace {

using Bytes = std::vector<uint8_t>;
using KvdFileIO::FourCC;

void U32(Bytes& out, uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8) out.push_back(uint8_t(v >> shift));
}

Bytes Deflate(const Bytes& plain) {
    z_stream z{};
    CPR_deflateInit_(&z, 6, ZLIB_VERSION, int(sizeof z));
    Bytes out(plain.size() + plain.size() / 8 + 64);
    z.next_in = const_cast<Bytef*>(plain.data());
    z.avail_in = uInt(plain.size());
    z.next_out = out.data();
    z.avail_out = uInt(out.size());
    CPR_deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    CPR_deflateEnd(&z);
    return out;
}

// Page data that compress about as drawings do: repeated records with
// some variation.
Bytes PageData(size_t size, uint32_t seed) {
    Bytes out(size);
    for (size_t i = 0; i < size; ++i) out[i] = uint8_t(i % 16 < 12 ? i % 16 : (seed * 2654435761u + i) >> 24);
    return out;
}

// Pages of 16 KiB each, then a thumbnail chunk; in a compressed section
// (with its block table) if compressed is set.
Bytes Document(int pages, bool compressed) {
    Bytes chunks;
    std::vector<uint32_t> table;
    for (int i = 0; i <= pages; ++i) {
        Bytes data = PageData(16384, uint32_t(i));
        U32(chunks, i < pages ? FourCC("page") : FourCC("DISP"));
        if (compressed) {
            table.push_back(uint32_t(data.size()));
            U32(chunks, uint32_t(table.size() - 1));
        } else {
            U32(chunks, uint32_t(data.size()));
        }
        chunks.insert(chunks.end(), data.begin(), data.end());
    }
    Bytes body;
    if (compressed) {
        Bytes tableBytes;
        for (uint32_t entry : table) U32(tableBytes, entry);
        auto block = [](const Bytes& plain) {
            Bytes out;
            U32(out, FourCC("CPng"));
            U32(out, 1 | 4u << 16);
            Bytes packed = Deflate(plain);
            out.insert(out.end(), packed.begin(), packed.end());
            return out;
        };
        Bytes dataBlock = block(chunks), tableBlock = block(tableBytes);
        Bytes section;
        U32(section, uint32_t(dataBlock.size()));
        U32(section, uint32_t(chunks.size()));
        U32(section, uint32_t(tableBlock.size()));
        U32(section, uint32_t(tableBytes.size()));
        section.insert(section.end(), dataBlock.begin(), dataBlock.end());
        section.insert(section.end(), tableBlock.begin(), tableBlock.end());
        if (section.size() & 1) section.push_back(0);
        U32(body, FourCC("LIST"));
        U32(body, uint32_t(section.size() + 4));
        U32(body, FourCC("cmpr"));
        body.insert(body.end(), section.begin(), section.end());
    } else {
        body = chunks;
    }
    Bytes file;
    U32(file, FourCC("RIFF"));
    U32(file, uint32_t(body.size() + 4));
    U32(file, FourCC("KVDC"));
    file.insert(file.end(), body.begin(), body.end());
    return file;
}

// What the drawing reader's scan does: step through the top level, open
// sections, read the thumbnail.
void Scan(benchmark::State& state, bool compressed) {
    Bytes file = Document(int(state.range(0)), compressed);
    Bytes thumbnail(16384);
    for (auto _ : state) {
        IStream* stream = BrmUtils::CreateMemStreamOnBytes(file.data(), file.size());
        KvdFileIO::RiffReader reader(stream);
        stream->Release();
        uint32_t form = 0;
        reader.Open(form);
        while (reader.Next()) {
            if (reader.GetChunkId() == FourCC("cmpr")) reader.OpenCompressed();
            if (reader.GetChunkId() == FourCC("DISP")) reader.ReadChunkData(thumbnail.data(), thumbnail.size());
        }
        reader.Close();
        benchmark::DoNotOptimize(thumbnail.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(state.range(0) + 1) * 16384);
}

void BM_ScanPlain(benchmark::State& state) {
    Scan(state, false);
}
void BM_ScanCompressed(benchmark::State& state) {
    Scan(state, true);
}

// Plain bytes delivered by the inflater, read in blocks or skipped.
void Inflate(benchmark::State& state, bool skip) {
    Bytes plain = PageData(size_t(4) << 20, 7);
    Bytes packed = Deflate(plain);
    Bytes buffer(65536);
    for (auto _ : state) {
        KvdCpr::DecompressorDeflate d;
        d.Open(BrmUtils::CreateMemStreamOnBytes(packed.data(), packed.size()), BrmUtils::Any());
        if (skip) {
            d.Skip(plain.size());
        } else {
            uint64_t got = 0;
            while (d.Read(buffer.data(), buffer.size(), got) && got > 0) {
            }
        }
        d.Close();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(plain.size()));
}

void BM_InflateRead(benchmark::State& state) {
    Inflate(state, false);
}
void BM_InflateSkip(benchmark::State& state) {
    Inflate(state, true);
}

}  // namespace

BENCHMARK(BM_ScanPlain)->Arg(10)->Arg(1000);
BENCHMARK(BM_ScanCompressed)->Arg(10)->Arg(1000);
BENCHMARK(BM_InflateRead);
BENCHMARK(BM_InflateSkip);
