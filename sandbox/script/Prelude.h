#pragma once

namespace sandbox {

/// The functions that a script sees, in JavaScript over the objects of C++.
extern const char* const kPrelude;

}  // namespace sandbox
