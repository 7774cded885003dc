/* Gives a pseudo-terminal the signals of a serial line. To be preloaded into the program under test.
 *
 * QXTERM_LINE names a folder. Its file "carrier" holds 1 while the carrier is there and 0 while it is not; while there is
 * a file "busy" the port cannot be opened; the file "breaks" gets a line for every begin and end of a break: seconds
 * since 1970, a blank, 1 or 0. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

enum { longestPath = 512, lookPeriod = 10000 /* microseconds */ };

typedef int (*OpenRoutine)(const char *, int, ...);

static int systemOpen(const char *path, int flags, int mode) {
    static OpenRoutine system;
    if (system == NULL) system = (OpenRoutine)dlsym(RTLD_NEXT, "open");
    return system(path, flags, mode);
}

static int openBeside(const char *name, int flags) {
    const char *folder = getenv("QXTERM_LINE");
    char path[longestPath];
    if (folder == NULL || snprintf(path, sizeof path, "%s/%s", folder, name) >= (int)sizeof path) return -1;
    return systemOpen(path, flags | O_CLOEXEC, 0600);
}

/* A port has one user at a time; root is let in all the same, so the system's own answer cannot be had everywhere. */
static int busy(const char *path) {
    const char *last = strrchr(path, '/');
    if (strcmp(last != NULL ? last + 1 : path, "com2") != 0) return 0;
    const int file = openBeside("busy", O_RDONLY);
    if (file != -1) close(file);
    return file != -1;
}

static int openUnlessBusy(const char *path, int flags, int mode) {
    if (!busy(path)) return systemOpen(path, flags, mode);
    errno = EBUSY;
    return -1;
}

int open(const char *path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    return openUnlessBusy(path, flags, mode);
}

int open64(const char *path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    return openUnlessBusy(path, flags | O_LARGEFILE, mode);
}

static int carrier(void) {
    char state = '0';
    const int file = openBeside("carrier", O_RDONLY);
    if (file == -1) return 0;
    if (read(file, &state, 1) != 1) state = '0';
    close(file);
    return state == '1';
}

static void noteBreak(int begins) {
    struct timespec now;
    const int file = openBeside("breaks", O_WRONLY | O_CREAT | O_APPEND);
    if (file == -1) return;
    clock_gettime(CLOCK_REALTIME, &now);
    dprintf(file, "%lld.%03ld %d\n", (long long)now.tv_sec, now.tv_nsec / 1000000, begins);
    close(file);
}

static void waitForChange(void) {
    const int before = carrier();
    while (carrier() == before) usleep(lookPeriod);
}

int ioctl(int file, unsigned long request, ...) {
    static int (*system)(int, unsigned long, ...);
    va_list rest;
    va_start(rest, request);
    void *argument = va_arg(rest, void *);
    va_end(rest);
    if (system == NULL) system = (int (*)(int, unsigned long, ...))dlsym(RTLD_NEXT, "ioctl");
    if (request == TIOCSBRK || request == TIOCCBRK) noteBreak(request == TIOCSBRK);

    const int result = system(file, request, argument);
    if (result == 0 || !isatty(file)) return result;
    switch (request) {
        case TIOCMGET: *(int *)argument = TIOCM_CTS | TIOCM_DSR | (carrier() ? TIOCM_CAR : 0); return 0;
        case TIOCGICOUNT:
            /* The counter of its changes need only change with it. */
            memset(argument, 0, sizeof(struct serial_icounter_struct));
            ((struct serial_icounter_struct *)argument)->dcd = carrier();
            return 0;
        case TIOCMIWAIT: waitForChange(); return 0;
        default: return result;
    }
}
