// Unique temporary file names and exclusively created temporary files.
//
// A name is prefix-pid-identifier.extension, the identifier being a new
// random UUID, so names cannot be guessed. MakeTempFileName only answers a
// name that does not exist yet; whoever then creates the file should prefer
// CreateTempFile, which creates it exclusively and cannot be raced.
#pragma once

#include "platform/Files.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

// The system's temporary folder ($TMPDIR or /tmp), with a trailing slash.
BrmPlatform::BrmStringW GetTempFolder();

// A path in directory (the temporary folder if empty) that does not exist
// now. An empty prefix is "brm", an empty extension "tmp". Empty on failure.
BrmPlatform::BrmStringW MakeTempFileName(const BrmPlatform::BrmStringW& directory = BrmPlatform::BrmStringW(),
                                         const BrmPlatform::BrmStringW& prefix = BrmPlatform::BrmStringW(),
                                         const BrmPlatform::BrmStringW& extension = BrmPlatform::BrmStringW());

// Creates a new file under such a name, exclusively (it never opens a file
// that was there before) and readable by the owner only, open for reading
// and writing. With unlinkNow the name is removed at once, so the file goes
// away with its last handle. Answers INVALID_HANDLE_VALUE on failure; path,
// if given, receives the name.
HANDLE CreateTempFile(const BrmPlatform::BrmStringW& directory, const BrmPlatform::BrmStringW& prefix,
                      const BrmPlatform::BrmStringW& extension, bool unlinkNow,
                      BrmPlatform::BrmStringW* path = nullptr);

}  // namespace BrmUtils
