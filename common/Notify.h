#pragma once

#include <functional>
#include <locale>
#include <sstream>
#include <string>

/// Logging. A message is built only when its severity is enabled, and goes to that severity's handler:
///
///     if (halNotify::isNotifyEnabled(halNotify::Error))
///         halNotify::notify(halNotify::Error) << "Invalid radius: " << text;
///
/// Until a handler is set, messages of severity Warning and worse go to standard error.
namespace halNotify {

/// Smaller is worse. The numbers are those that cross the host boundary.
enum Severity : int { Always = 0, Fatal = 1, Error = 2, Warning = 3, Notice = 4, Info = 5, Debug = 6 };

/// Receives one whole message, without an end of line. It must not throw.
using Handler = std::function<void(Severity, const std::string& message)>;

/// Sends messages up to `severity` (inclusive) and drops those that matter less. Default: Warning.
void setNotifyLevel(Severity severity);
bool isNotifyEnabled(Severity severity);

/// Replaces the handler of one severity or of all; an empty handler restores standard error.
void setNotifyHandler(Severity severity, Handler handler);
void setNotifyHandler(Handler handler);

/// While one lives nothing is logged: for what is tried only to see what would come of it.
class Silence {
  public:
    Silence();
    ~Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    int before_;
};

/// One message under construction; it is sent when the object dies.
class Message {
  public:
    explicit Message(Severity severity) : severity_(severity) { text_.imbue(std::locale::classic()); }
    ~Message();
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    template <typename T>
    Message& operator<<(const T& value) {
        text_ << value;
        return *this;
    }

  private:
    Severity severity_;
    std::ostringstream text_;
};

inline Message notify(Severity severity) {
    return Message(severity);
}

}  // namespace halNotify
