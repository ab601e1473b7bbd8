#pragma once

#include <cstdint>
#include <functional>

/// One entry at a time. An entry is a dispatch, a callback or an observer's call, from when it comes in until
/// it returns. The host may come in again from inside each service that it serves us. What does so waits
/// until the running entry is over, or is answered with nothing done; no entry finds the things of another
/// one half made, and nothing that one works on goes before it is over.
class EntryScope {
  public:
    EntryScope();
    /// That of the outermost entry does what waits.
    ~EntryScope();
    EntryScope(const EntryScope&) = delete;
    EntryScope& operator=(const EntryScope&) = delete;

    /// Who is at work. Others are, when our code has called them and they have not returned.
    enum class At { Us, Others, Dialog };

    /// Whether others are at work: what comes in now has to wait.
    static bool isNested() { return at_ != At::Us; }
    /// Whether they wait for the user in one of the host's file dialogs. A command asks for a file before it
    /// does anything else, so that frames may go on; they are all that a user sees for minutes.
    static bool isInDialog() { return at_ == At::Dialog; }

    /// Whether an entry is under way, so that what waits is done before the host goes on.
    static bool isOpen();

    /// Tells what waits from other things that do.
    struct Key {
        const void* who = nullptr;
        std::int64_t what = 0;
        std::uint64_t which = 0;
        bool operator==(const Key&) const = default;
    };
    /// Has something done when the running entry is over, in the order of the calls, as an entry of its own.
    /// What waits under the same key already is not done twice: it takes its new place.
    static void wait(const Key& key, std::function<void()> work);
    /// Has something done once all else is.
    static void atEnd(std::function<void()> last);
    /// Drops what waits.
    static void clear();

  private:
    friend class CallToOthers;
    static At at_;

    At before_;
};

/// A call of ours to others: into the host, or to another plug-in.
class CallToOthers {
  public:
    explicit CallToOthers(EntryScope::At at = EntryScope::At::Others) : before_(EntryScope::at_) {
        EntryScope::at_ = at;
    }
    ~CallToOthers() { EntryScope::at_ = before_; }
    CallToOthers(const CallToOthers&) = delete;
    CallToOthers& operator=(const CallToOthers&) = delete;

  private:
    EntryScope::At before_;
};
