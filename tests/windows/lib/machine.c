/* What a test changes about the machine of the programs that this is preloaded into. QXTERM_MACHINE names a folder, whose
 * files hold a number each:
 *
 *   clock     by how many seconds the clock is set forward, or back. The clocks that count from the machine's start are not
 *             set, as on Windows.
 *   largest   the largest block of address space that is still to be had, in bytes; 0: any. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

enum { longestPath = 512 };

static long setting(const char *name) {
    const char *folder = getenv("QXTERM_MACHINE");
    char path[longestPath];
    char text[32] = "";
    if (folder == NULL || snprintf(path, sizeof path, "%s/%s", folder, name) >= (int)sizeof path) return 0;
    const int file = (int)syscall(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC);
    if (file == -1) return 0;
    const ssize_t count = read(file, text, sizeof text - 1);
    close(file);
    return count > 0 ? atol(text) : 0;
}

void *mmap64(void *start, size_t size, int access, int flags, int file, off_t offset) {
    const int before = errno;
    const long largest = (flags & MAP_ANONYMOUS) != 0 ? setting("largest") : 0;
    errno = before;
    if (largest > 0 && size > (size_t)largest) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return (void *)syscall(SYS_mmap, start, size, access, flags, file, offset);
}

void *mmap(void *start, size_t size, int access, int flags, int file, off_t offset) {
    return mmap64(start, size, access, flags, file, offset);
}

int clock_gettime(clockid_t clock, struct timespec *now) {
    static int (*system)(clockid_t, struct timespec *);
    if (system == NULL) system = (int (*)(clockid_t, struct timespec *))dlsym(RTLD_NEXT, "clock_gettime");
    const int result = system(clock, now);
    const int isSet = clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
    if (result == 0 && isSet) now->tv_sec += setting("clock");
    return result;
}

int gettimeofday(struct timeval *restrict now, void *restrict zone) {
    struct timespec precise;
    (void)zone;
    const int result = clock_gettime(CLOCK_REALTIME, &precise);
    now->tv_sec = precise.tv_sec;
    now->tv_usec = precise.tv_nsec / 1000;
    return result;
}

time_t time(time_t *place) {
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (place != NULL) *place = now.tv_sec;
    return now.tv_sec;
}
