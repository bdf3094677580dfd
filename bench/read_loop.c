/* The floor a scan is measured against: walks the folder as the scan does,
 * and opens, reads whole and closes every regular file below it, on one
 * thread. Prints the files, the bytes and the seconds on standard output.
 * Usage: read_loop FOLDER */
#define _XOPEN_SOURCE 700
#include <fcntl.h>
#include <ftw.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

static char buffer[1 << 16];
static unsigned long long files, bytes;

static int ReadOne(const char* path, const struct stat* st, int kind, struct FTW* ftw) {
    (void)st;
    (void)ftw;
    if (kind != FTW_F) return 0;
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return 0;
    ssize_t n;
    while ((n = read(fd, buffer, sizeof buffer)) > 0) bytes += (unsigned long long)n;
    close(fd);
    ++files;
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: read_loop FOLDER\n");
        return 2;
    }
    struct timespec start, end;
    clock_gettime(CLOCK_MONOTONIC, &start);
    if (nftw(argv[1], ReadOne, 32, FTW_PHYS) != 0) {
        perror(argv[1]);
        return 1;
    }
    clock_gettime(CLOCK_MONOTONIC, &end);
    double seconds = (double)(end.tv_sec - start.tv_sec) + (double)(end.tv_nsec - start.tv_nsec) / 1e9;
    printf("%llu files %llu bytes %.4f s\n", files, bytes, seconds);
    return 0;
}
