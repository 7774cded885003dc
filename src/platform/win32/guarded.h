#pragma once

#include <new>

#include "platform/run_time_error.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// A procedure that the system calls, through which nothing that is raised passes: behind it stands code of
/// the system's, which would not survive that. A message for which there was no memory counts as carried out;
/// a paint comes again.
template <auto Procedure, class Type = decltype(Procedure)>
struct Guarded;

template <auto Procedure, class Result, class... Arguments>
struct Guarded<Procedure, Result(CALLBACK*)(Arguments...)> {
    static Result CALLBACK call(Arguments... arguments) noexcept {
        try {
            return Procedure(arguments...);
        } catch (const std::bad_alloc&) {
            return Result{};
        } catch (const RunTimeError&) {
            return Result{};
        }
    }
};

}  // namespace qxterm::win32
