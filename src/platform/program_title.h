#ifndef QXTERM_PROGRAM_TITLE_H
#define QXTERM_PROGRAM_TITLE_H

/* For the resource script, too. */
#define QXTERM_PROGRAM_TITLE "Zentora Terminal Emulator"

#ifdef __cplusplus
namespace qxterm {

/// The title of the program's message boxes and the first words of its caption.
inline constexpr const char* programTitle = QXTERM_PROGRAM_TITLE;

}  // namespace qxterm
#endif

#endif
