#include "sandbox/script/ScriptObject.h"

#include "sandbox/script/ScriptRun.h"

namespace sandbox {

Host& ScriptObject::host() const {
    return run_.host();
}

void ScriptObject::check() {
    run_.settle();
    if (const QString problem = run_.takeProblem(); !problem.isEmpty()) throw ScriptError{problem};
}

void ScriptObject::raise(const QString& text) {
    if (auto* engine = qjsEngine(this)) engine->throwError(QJSValue::GenericError, text);
}

}  // namespace sandbox
