// The system's message text for an error number, as streams store it for
// IStreamInfo::GetLastErrorText.
#pragma once

#include "platform/LastError.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

// The text of `error` (by default the thread's last error) in the user's
// language; empty if the system knows no text for it.
BrmPlatform::BrmStringW FormatLastError(DWORD error = GetLastError());

}  // namespace BrmUtils
