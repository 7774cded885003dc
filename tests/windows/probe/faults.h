#pragma once

#include "output.h"

/// Makes calls of the Windows API fail. The program is not asked: the entries of the API's functions in the
/// table of what it imports lead to routines here, which fail as they are told or carry the call out.
namespace qxterm::probe {

using scenario::Json;

/// {FUNCTION: [AFTER, TIMES] ...}: so many calls succeed, so many fail then. Forgets earlier plans.
void planFaults(const Json& plans);

/// {FUNCTION: [CALLS, FAILED] ...} since the plans were made, of those that were called.
[[nodiscard]] Json faults();

/// The probe's own calls succeed, and are not counted, for as long as this lives.
class OwnCalls {
public:
    OwnCalls();
    ~OwnCalls();
    OwnCalls(const OwnCalls&) = delete;
    OwnCalls& operator=(const OwnCalls&) = delete;
};

}  // namespace qxterm::probe
