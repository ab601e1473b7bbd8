#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

class PI_DATA_BASE_CLASS;
class PIFunctionParams_t;

namespace sandbox {

class HandleRegistry;

/// Writes down what crosses the boundary between the host and its plug-ins: a line for every service call,
/// every dispatched event and every callback, in the order of their beginning and indented by their nesting.
///
///     0.104213 OverlayEditor -> 206 (reference year) = 1 integers 2026, 3 us
///     0.250012 host -> OverlayEditor event 9 integers 11:3
///     0.250030   OverlayEditor -> 207 (platforms) = 1 integers 1 2, 4 us
///     0.250101 = integers 11:3, 71 us
///
/// The first number is seconds since the trace began. A call that has others inside ends in a line of its
/// own. Each line reaches the file before the call begins its work: the last one tells where a program ended.
class CallTrace {
  public:
    explicit CallTrace(const HandleRegistry& handles) : handles_(handles) {}

    /// \return what went wrong, empty when the file is open
    QString open(const QString& path);
    bool isOpen() const { return file_.isOpen(); }

    /// A remark of the host's, such as a misuse.
    void note(const QString& text);

    /// One call while it lasts. Does nothing when no trace is open.
    class Scope {
      public:
        Scope(CallTrace& trace, const QString& head);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        void setResult(const QString& result) { result_ = result; }

      private:
        CallTrace* trace_ = nullptr;
        std::size_t line_ = 0;
        qint64 began_ = 0;
        QString result_;
    };

    /// The arguments of a service call: a record, or a bare handle.
    QString argumentsText(void* args) const;
    /// What the service gave: its value, and what it appended behind the `counts` of the arguments.
    struct Counts {
        std::size_t integers = 0, doubles = 0, strings = 0, pointers = 0;
    };
    Counts countArguments(void* args) const;
    QString resultText(std::intptr_t value, void* args, const Counts& counts) const;
    /// The slots of an event's parameters.
    static QString parametersText(const PIFunctionParams_t& params);

  private:
    PI_DATA_BASE_CLASS* record(void* args) const;
    QString handleText(const void* handle) const;
    void begin(const QString& head);
    void write(const QString& text);

    const HandleRegistry& handles_;
    QFile file_;
    /// Whether it could not be written.
    bool reported_ = false;
    QElapsedTimer clock_;
    int depth_ = 0;
    std::size_t lines_ = 0;
    bool lineIsOpen_ = false;
};

}  // namespace sandbox
