#pragma once

#include <QString>

namespace sandbox {

/// What went wrong in a script's step; it becomes an exception of the script.
struct ScriptError {
    QString text;
};

}  // namespace sandbox
