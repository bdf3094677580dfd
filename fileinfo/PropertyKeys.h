// The property sets and keys that the readers, the tool's name table and the
// tests share. Every FMTID is written out here once; a reader that gains a
// property names its key here and refers to it.
#pragma once

#include "platform/PropIdl.h"

namespace PropertyKeys {

// Property sets.
constexpr FMTID kSummary = {0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};     // SI
constexpr FMTID kDocSummary = {0xD5CDD502, 0x2E9C, 0x101B, {0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE}};  // DSI
constexpr FMTID kImage = {0x6444048F, 0x4C8B, 0x11D1, {0x8B, 0x70, 0x08, 0x00, 0x36, 0xB1, 0x1A, 0x03}};       // IMG
constexpr FMTID kVersion = {0x0CEF7D53, 0xFA64, 0x11D1, {0xA2, 0x03, 0x00, 0x00, 0xF8, 0x1F, 0xED, 0xEE}};     // VER
constexpr FMTID kApp = {0x64440492, 0x4C8B, 0x11D1, {0x8B, 0x70, 0x08, 0x00, 0x36, 0xB1, 0x1A, 0x03}};         // APP
constexpr FMTID kUnit = {0x19B51FA6, 0x1F92, 0x4A5C, {0xAB, 0x48, 0x7D, 0xF0, 0xAB, 0xD6, 0x74, 0x44}};        // UNIT
constexpr FMTID kDocument = {0x046359F1, 0x7266, 0x402E, {0xB1, 0xBA, 0x55, 0x58, 0xAF, 0xD5, 0x76, 0xCD}};    // DOC
constexpr FMTID kFile = {0x2B51404E, 0x62C1, 0x46B6, {0xA3, 0x19, 0x90, 0xB6, 0x34, 0x12, 0xD0, 0xEE}};        // FILE
constexpr FMTID kTemplate = {0x3964030C, 0x8E1B, 0x43A3, {0x4F, 0x9D, 0x17, 0x30, 0x87, 0x8F, 0x93, 0x75}};    // TPL
constexpr FMTID kColour = {0x060C0F4F, 0x0B9C, 0x442A, {0xBB, 0x9F, 0xD8, 0x4D, 0xB3, 0xAF, 0xCE, 0x17}};      // CLR

// Keys, named by what they hold. Add a key here before using it anywhere.
constexpr PROPERTYKEY kTitle = {kSummary, 2};
constexpr PROPERTYKEY kSubject = {kSummary, 3};
constexpr PROPERTYKEY kAuthor = {kSummary, 4};
constexpr PROPERTYKEY kKeywords = {kSummary, 5};
constexpr PROPERTYKEY kComments = {kSummary, 6};
constexpr PROPERTYKEY kLastAuthor = {kSummary, 8};
constexpr PROPERTYKEY kRevision = {kSummary, 9};
constexpr PROPERTYKEY kDateCreated = {kSummary, 12};
constexpr PROPERTYKEY kDateSaved = {kSummary, 13};
constexpr PROPERTYKEY kPageCount = {kSummary, 14};
constexpr PROPERTYKEY kWordCount = {kSummary, 15};
constexpr PROPERTYKEY kCharCount = {kSummary, 16};
constexpr PROPERTYKEY kApplication = {kSummary, 18};
constexpr PROPERTYKEY kCategory = {kDocSummary, 2};
constexpr PROPERTYKEY kLineCount = {kDocSummary, 5};
constexpr PROPERTYKEY kParagraphCount = {kDocSummary, 6};
constexpr PROPERTYKEY kCreatorTool = {kDocSummary, 18};
constexpr PROPERTYKEY kContentType = {kDocSummary, 26};
constexpr PROPERTYKEY kImageWidth = {kImage, 3};
constexpr PROPERTYKEY kImageHeight = {kImage, 4};
constexpr PROPERTYKEY kResolutionX = {kImage, 5};
constexpr PROPERTYKEY kResolutionY = {kImage, 6};
constexpr PROPERTYKEY kBitDepth = {kImage, 7};
constexpr PROPERTYKEY kDimensions = {kImage, 13};
constexpr PROPERTYKEY kFormatVersion = {kVersion, 4};
constexpr PROPERTYKEY kAppVersion = {kApp, 28};
constexpr PROPERTYKEY kResolutionUnit = {kUnit, 100};
constexpr PROPERTYKEY kFonts = {kDocument, 100};
constexpr PROPERTYKEY kOrientation = {kDocument, 102};
constexpr PROPERTYKEY kLinks = {kDocument, 103};
constexpr PROPERTYKEY kTextDefaults = {kDocument, 107};
constexpr PROPERTYKEY kRenderingIntent = {kDocument, 122};
constexpr PROPERTYKEY kImageFonts = {kDocument, 106};
constexpr PROPERTYKEY kColourMode = {kColour, 100};
constexpr PROPERTYKEY kColourProfile = {kColour, 101};
constexpr PROPERTYKEY kSecondFlag = {kFile, 100};
constexpr PROPERTYKEY kFirstFlag = {kFile, 101};
constexpr PROPERTYKEY kCompressionRatio = {kFile, 102};

// Keys of the container drawing reader.
constexpr PROPERTYKEY kCopyright = {kApp, 11};
constexpr PROPERTYKEY kPageSize = {kDocument, 101};
constexpr PROPERTYKEY kPageNames = {kDocument, 104};
constexpr PROPERTYKEY kLayerNames = {kDocument, 105};
constexpr PROPERTYKEY kObjectNames = {kDocument, 106};
constexpr PROPERTYKEY kFontsEmbedded = {kDocument, 107};  // the same slot as kTextDefaults of the RIFF reader
constexpr PROPERTYKEY kObjectCount = {kDocument, 108};
constexpr PROPERTYKEY kColours = {kDocument, 109};
constexpr PROPERTYKEY kObjectKinds = {kDocument, 110};
constexpr PROPERTYKEY kFills = {kDocument, 111};
constexpr PROPERTYKEY kOutlines = {kDocument, 112};
constexpr PROPERTYKEY kEffects = {kDocument, 113};
constexpr PROPERTYKEY kPalettes = {kDocument, 114};
constexpr PROPERTYKEY kStyles = {kDocument, 115};
constexpr PROPERTYKEY kLanguages = {kDocument, 116};
constexpr PROPERTYKEY kSpotColours = {kDocument, 117};
constexpr PROPERTYKEY kRgbProfile = {kDocument, 118};
constexpr PROPERTYKEY kCmykProfile = {kDocument, 119};
constexpr PROPERTYKEY kGreyProfile = {kDocument, 120};
constexpr PROPERTYKEY kDocumentColourMode = {kDocument, 121};
constexpr PROPERTYKEY kTemplateSides = {kTemplate, 100};
constexpr PROPERTYKEY kTemplateFolds = {kTemplate, 101};
constexpr PROPERTYKEY kTemplateType = {kTemplate, 102};
constexpr PROPERTYKEY kTemplateIndustry = {kTemplate, 103};

}  // namespace PropertyKeys
