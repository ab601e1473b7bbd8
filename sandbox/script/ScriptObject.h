#pragma once

#include <QJSEngine>
#include <QObject>
#include <utility>

#include "sandbox/script/ScriptError.h"

namespace sandbox {

class Host;
class ScriptRun;

/// Base of the objects that a script calls.
class ScriptObject : public QObject {
    Q_OBJECT

  public:
    explicit ScriptObject(ScriptRun& run) : run_(run) {}

  protected:
    ScriptRun& run() const { return run_; }
    Host& host() const;

    /// Runs one step of a script: a ScriptError becomes an exception of the script, and so does whatever
    /// went wrong behind the step's back (a misuse by a plug-in, a file dialog without an answer).
    template <typename Step>
    auto step(Step body) -> decltype(body()) {
        using Result = decltype(body());
        try {
            if constexpr (std::is_void_v<Result>) {
                body();
                check();
                return;
            } else {
                Result result = body();
                check();
                return result;
            }
        } catch (const ScriptError& error) {
            raise(error.text);
        }
        if constexpr (!std::is_void_v<Result>) return Result();
    }

  private:
    void check();
    void raise(const QString& text);

    ScriptRun& run_;
};

}  // namespace sandbox
