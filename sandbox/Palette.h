#pragma once

#include <QString>

namespace sandbox {

/// Gives the application a "dark" or a "light" palette; any other name leaves it the desktop's own, which is
/// light where the desktop has no preference. \return false for a name that is none of "dark", "light"
/// and "system"
bool choosePalette(const QString& name);

}  // namespace sandbox
