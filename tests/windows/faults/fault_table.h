#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Makes calls of the Windows API fail in the program that this is linked to. The program is not asked: the
/// entries of the API's functions in the table of what it imports lead to routines here, which fail as they
/// are told or carry the call out. What the environment names in QXTERM_FAULT ("FUNCTION AFTER TIMES") fails
/// from the start; the file that it names in QXTERM_FAULTS_TOLD gets a line when a function fails for the
/// first time.
namespace qxterm::faults {

/// So many calls succeed, so many fail then. std::invalid_argument for a function that the program does not
/// call.
void plan(const std::string& name, std::uint32_t after, std::uint32_t times);

/// Nothing fails any more, and nothing has been counted.
void forgetPlans();

struct Counts {
    const char* name;
    std::uint32_t calls;
    std::uint32_t failed;
};

/// Of the functions that were called since the plans were forgotten.
[[nodiscard]] std::vector<Counts> counted();

/// The calls of this thread, the one that the program began with, succeed, and are not counted, for as long
/// as this lives.
class OwnCalls {
public:
    OwnCalls();
    ~OwnCalls();
    OwnCalls(const OwnCalls&) = delete;
    OwnCalls& operator=(const OwnCalls&) = delete;
};

}  // namespace qxterm::faults
