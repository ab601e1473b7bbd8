#pragma once

namespace sandbox {

/// Whether the processor plays the graphics card of the current context (Mesa's software renderer).
bool isSoftwareRenderer();

}  // namespace sandbox
