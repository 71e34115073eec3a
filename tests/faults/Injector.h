#pragma once

#include <cstddef>
#include <string>

/// What a call may be short of.
enum class Limit { None, Space, SpaceAndPart, Part };

/// What becomes of a call.
enum class Fault { None, NoSpace, Broken, Part, KillBefore, KillAfter, Gone };

/// A call to the file system.
struct Call {
    const char* name;
    std::string path;
    Limit limit = Limit::None;
    std::size_t size = 0; ///< asked for, where a part may be done
};

/// Decides what becomes of the call, by the environment (see fail_calls.cpp), and traces it. From any thread; `errno` stays.
[[nodiscard]] Fault faultFor(const Call& call);

/// An environment variable; empty when it is not set.
[[nodiscard]] std::string variable(const char* name);
