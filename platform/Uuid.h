// Creation and text forms of 16-byte identifiers.
#pragma once

#include "platform/WinTypes.h"

using RPC_STATUS = int32_t;
constexpr RPC_STATUS RPC_S_OK = 0;
constexpr RPC_STATUS RPC_S_INVALID_STRING_UUID = 1705;
constexpr RPC_STATUS RPC_S_OUT_OF_MEMORY = 14;

// A random (version 4) identifier.
RPC_STATUS UuidCreate(GUID* uuid);
// Lower-case, no braces: "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx". Free with RpcStringFreeW.
RPC_STATUS UuidToStringW(const GUID* uuid, wchar_t** text);
RPC_STATUS UuidFromStringW(const wchar_t* text, GUID* uuid);
RPC_STATUS RpcStringFreeW(wchar_t** text);
