/* Preloaded into `fileinfo set` by crash_test.py to stop a commit at the
 * moments a random kill rarely hits: FI_PAUSE_AT=before-rename stops after
 * the new content was synced and before its name replaces the old one,
 * after-rename once the rename is done. Only a rename onto a file named
 * FI_PAUSE_NAME counts (a commit may rename its own temporaries first). The shim creates the file named by
 * FI_PAUSE_MARK and sleeps, and the test kills the process there. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void Pause(const char* moment, const char* to) {
    const char* at = getenv("FI_PAUSE_AT");
    const char* mark = getenv("FI_PAUSE_MARK");
    const char* name = getenv("FI_PAUSE_NAME");
    const char* base = strrchr(to, '/');
    base = base ? base + 1 : to;
    if (!at || !mark || !name || strcmp(at, moment) != 0 || strcmp(base, name) != 0) return;
    int fd = open(mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (fd >= 0) close(fd);
    for (;;) pause();
}

int rename(const char* from, const char* to) {
    static int (*real)(const char*, const char*);
    if (!real) real = (int (*)(const char*, const char*))dlsym(RTLD_NEXT, "rename");
    Pause("before-rename", to);
    int result = real(from, to);
    Pause("after-rename", to);
    return result;
}
