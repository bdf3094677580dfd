// The form table. Rows are in the order the program has always searched
// them; the drawing, template, motion, technical and symbol series each count
// their letters in their own way, so only the numbers in a row mean anything.
#include "riff/FormTable.h"

#include "riff/FourCC.h"

namespace KvdFileIO {

namespace {
constexpr const wchar_t* kDocument = L"application/x-vnd.brimo.plotra.document";
constexpr const wchar_t* kDocumentZip = L"application/x-vnd.brimo.plotra.document+zip";
constexpr const wchar_t* kDocumentZcf = L"application/x-vnd.brimo.zcf.plotra.document+zip";
constexpr const wchar_t* kTemplatePlain = L"application/x-vnd.brimo.plotra.template";
constexpr const wchar_t* kTemplateZip = L"application/x-vnd.brimo.plotra.template+zip";
constexpr const wchar_t* kTemplateZcf = L"application/x-vnd.brimo.zcf.plotra.template+zip";
constexpr const wchar_t* kMotion = L"application/x-vnd.brimo.motiv.document";
constexpr const wchar_t* kTechnical = L"application/x-vnd.brimo.tecnia.document";
constexpr const wchar_t* kTechnicalZip = L"application/x-vnd.brimo.tecnia.document+zip";
constexpr const wchar_t* kTechnicalZcf = L"application/x-vnd.brimo.zcf.tecnia.document+zip";
constexpr const wchar_t* kSymbols = L"application/x-vnd.brimo.symbol.library";
constexpr const wchar_t* kSymbolsZip = L"application/x-vnd.brimo.symbol.library+zip";
constexpr const wchar_t* kSymbolsZcf = L"application/x-vnd.brimo.zcf.symbol.library+zip";
constexpr const wchar_t* kPatternZip = L"application/x-vnd.brimo.plotra.pattern+zip";
constexpr const wchar_t* kPatternZcf = L"application/x-vnd.brimo.zcf.pattern+zip";

constexpr const wchar_t* kNoLabel = L"";
constexpr const wchar_t* k19 = L"19.0 (2017)";
constexpr const wchar_t* k20 = L"20.0 (2018)";
constexpr const wchar_t* k21 = L"21.0 (2019)";
constexpr const wchar_t* k22 = L"22.0 (2020)";

constexpr uint16_t D = kDrawing, C = kTechnicalDrawing, M = kMotionDocument, T = kTemplate,
                   S = kSymbolLibrary, P = kPattern;
}  // namespace

const FormDescriptor kFormTable[kFormCount] = {
    {FourCC("KVD "), 300, D, 0x030000, kDocument, kNoLabel},
    {FourCC("KVD4"), 404, D, 0x040000, kDocument, kNoLabel},
    {FourCC("KVST"), 404, T, 0x040000, kTemplatePlain, kNoLabel},
    {FourCC("KVD5"), 501, D, 0x050001, kDocument, kNoLabel},
    {FourCC("KVT5"), 501, T, 0x050001, kTemplatePlain, kNoLabel},
    {FourCC("kvd6"), 600, D, 0x060000, kDocument, kNoLabel},
    {FourCC("kvt6"), 600, T, 0x060000, kTemplatePlain, kNoLabel},
    {FourCC("KVD6"), 600, D, 0x060000, kDocument, kNoLabel},
    {FourCC("KVT6"), 600, T, 0x060000, kTemplatePlain, kNoLabel},
    {FourCC("KVD7"), 700, D, 0x070000, kDocument, kNoLabel},
    {FourCC("KVT7"), 700, T, 0x070000, kTemplatePlain, kNoLabel},
    {FourCC("KVD8"), 800, D, 0x080000, kDocument, kNoLabel},
    {FourCC("KVT8"), 800, T, 0x080000, kTemplatePlain, kNoLabel},
    {FourCC("kvd8"), 801, D, 0x080001, kDocument, kNoLabel},
    {FourCC("kvt8"), 801, T, 0x080001, kTemplatePlain, kNoLabel},
    {FourCC("KVD9"), 900, D, 0x090000, kDocument, kNoLabel},
    {FourCC("KVT9"), 900, T, 0x090000, kTemplatePlain, kNoLabel},
    {FourCC("KVr9"), 900, D, 0x090000, kDocument, kNoLabel},
    // A drawing in spite of its name, and a file version ending in 1: kept
    // exactly as the program has always had it.
    {FourCC("kvt9"), 900, D, 0x090001, kDocument, kNoLabel},
    {FourCC("KVDA"), 1000, D, 0x0A0000, kDocument, kNoLabel},
    {FourCC("KVTA"), 1000, T, 0x0A0000, kTemplatePlain, kNoLabel},
    {FourCC("MTVA"), 1000, M, 0x010000, kMotion, kNoLabel},
    {FourCC("KVDB"), 1100, D, 0x0B0000, kDocument, kNoLabel},
    {FourCC("KVTB"), 1100, T, 0x0B0000, kTemplatePlain, kNoLabel},
    {FourCC("MTVB"), 1100, M, 0x020000, kMotion, kNoLabel},
    {FourCC("TCNA"), 1150, C, 0x0A0000, kTechnical, kNoLabel},
    {FourCC("SYL1"), 1100, S, 0x010000, kSymbols, kNoLabel},
    {FourCC("KVDC"), 1200, D, 0x0C0000, kDocument, kNoLabel},
    {FourCC("KVTC"), 1200, T, 0x0C0000, kTemplatePlain, kNoLabel},
    {FourCC("MTVC"), 1200, M, 0x030000, kMotion, kNoLabel},
    {FourCC("TCNB"), 1200, C, 0x0A0500, kTechnical, kNoLabel},
    {FourCC("SYL2"), 1200, S, 0x020000, kSymbols, kNoLabel},
    {FourCC("KVTD"), 1250, T, 0x0C0500, kTemplatePlain, kNoLabel},
    {FourCC("TCNC"), 1250, C, 0x0B0000, kTechnical, kNoLabel},
    {FourCC("SYL3"), 1250, S, 0x030000, kSymbols, kNoLabel},
    {FourCC("KVDD"), 1300, D, 0x0D0000, kDocument, kNoLabel},
    {FourCC("KVTE"), 1300, T, 0x0D0000, kTemplatePlain, kNoLabel},
    {FourCC("SYL4"), 1300, S, 0x040000, kSymbols, kNoLabel},
    {FourCC("KVDE"), 1400, D, 0x0E0000, kDocumentZip, kNoLabel},
    {FourCC("KVTF"), 1400, T, 0x0E0000, kTemplateZip, kNoLabel},
    {FourCC("SYL5"), 1400, S, 0x0E0000, kSymbolsZip, kNoLabel},
    {FourCC("KVTG"), 1410, T, 0x0E0100, kTemplateZip, kNoLabel},
    {FourCC("TCNE"), 1410, C, 0x0E0000, kTechnicalZip, kNoLabel},
    {FourCC("SYL6"), 1410, S, 0x0E0100, kSymbolsZip, kNoLabel},
    {FourCC("KVDF"), 1500, D, 0x0F0000, kDocumentZip, kNoLabel},
    {FourCC("KVTH"), 1500, T, 0x0F0000, kTemplateZip, kNoLabel},
    {FourCC("SYL7"), 1500, S, 0x0F0000, kSymbolsZip, kNoLabel},
    {FourCC("KVTI"), 1510, T, 0x0F0100, kTemplateZip, kNoLabel},
    {FourCC("TCNF"), 1510, C, 0x0F0000, kTechnicalZip, kNoLabel},
    {FourCC("PAT "), 1500, P, 0x0F0000, kPatternZip, kNoLabel},
    {FourCC("KVDG"), 1600, D, 0x100000, kDocumentZip, kNoLabel},
    {FourCC("KVTJ"), 1600, T, 0x100000, kTemplateZip, kNoLabel},
    {FourCC("SYL8"), 1600, S, 0x100000, kSymbolsZip, kNoLabel},
    {FourCC("KVTK"), 1630, T, 0x100300, kTemplateZip, kNoLabel},
    {FourCC("SYL9"), 1630, S, 0x100300, kSymbolsZip, kNoLabel},
    {FourCC("TCNG"), 1630, C, 0x100000, kTechnicalZip, kNoLabel},
    {FourCC("KVDH"), 1700, D, 0x110000, kDocumentZcf, kNoLabel},
    {FourCC("KVTL"), 1700, T, 0x110000, kTemplateZcf, kNoLabel},
    {FourCC("SYLA"), 1700, S, 0x110000, kSymbolsZcf, kNoLabel},
    {FourCC("KVDI"), 1740, D, 0x110400, kDocumentZcf, kNoLabel},
    {FourCC("KVTM"), 1740, T, 0x110400, kTemplateZcf, kNoLabel},
    {FourCC("SYLB"), 1740, S, 0x110400, kSymbolsZcf, kNoLabel},
    {FourCC("TCNH"), 1740, C, 0x110000, kTechnicalZcf, kNoLabel},
    {FourCC("KVDJ"), 1800, D, 0x120000, kDocumentZcf, kNoLabel},
    {FourCC("KVTN"), 1800, T, 0x120000, kTemplateZcf, kNoLabel},
    {FourCC("SYLC"), 1800, S, 0x120000, kSymbolsZcf, kNoLabel},
    {FourCC("KVDK"), 1900, D, 0x130000, kDocumentZcf, k19},
    {FourCC("KVTO"), 1900, T, 0x130000, kTemplateZcf, k19},
    {FourCC("SYLD"), 1900, S, 0x130000, kSymbolsZcf, k19},
    {FourCC("TCNI"), 1900, C, 0x130000, kTechnicalZcf, k19},
    {FourCC("KVDL"), 2000, D, 0x140000, kDocumentZcf, k20},
    {FourCC("KVTP"), 2000, T, 0x140000, kTemplateZcf, k20},
    {FourCC("SYLE"), 2000, S, 0x140000, kSymbolsZcf, k20},
    {FourCC("TCNJ"), 2000, C, 0x140000, kTechnicalZcf, k20},
    {FourCC("KVDM"), 2100, D, 0x150000, kDocumentZcf, k21},
    {FourCC("KVTQ"), 2100, T, 0x150000, kTemplateZcf, k21},
    {FourCC("SYLF"), 2100, S, 0x150000, kSymbolsZcf, k21},
    {FourCC("TCNK"), 2100, C, 0x150000, kTechnicalZcf, k21},
    {FourCC("KVDN"), 2200, D, 0x160000, kDocumentZcf, k22},
    {FourCC("KVTR"), 2200, T, 0x160000, kTemplateZcf, k22},
    {FourCC("SYLG"), 2200, S, 0x160000, kSymbolsZcf, k22},
    {FourCC("PATG"), 2200, P, 0x160000, kPatternZcf, k22},
};

const FormDescriptor* FindForm(uint32_t form) {
    for (const FormDescriptor& row : kFormTable)
        if (row.form == form) return &row;
    return nullptr;
}

}  // namespace KvdFileIO
