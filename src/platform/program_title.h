#ifndef QXTERM_PROGRAM_TITLE_H
#define QXTERM_PROGRAM_TITLE_H

/* The program's title, for its windows and for the resource script. */

#define QXTERM_PROGRAM_TITLE "Zentora Terminal Emulator"

#endif
