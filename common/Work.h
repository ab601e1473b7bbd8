#pragma once

#include <algorithm>
#include <coroutine>
#include <cstddef>
#include <exception>
#include <utility>

#include "common/Slice.h"

/// Work that stops where a Slice says so, and is taken up again there: a coroutine. It tells what it has done
/// by `co_yield units`, and leaves a part of itself to other work by `co_await part(...)`. What it takes by
/// reference is to outlive it. To destroy it in the midst is to give it up.
class [[nodiscard]] Work {
  public:
    class promise_type;
    using Handle = std::coroutine_handle<promise_type>;

    Work(Work&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Work& operator=(Work&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Work() {
        if (handle_) handle_.destroy();
    }

    /// Goes on until it is done or the slice is over. What it throws comes out here, and ends it.
    /// \return whether it is done; not to be asked again then
    bool goOn(Slice& slice);
    void finish() {
        Slice endless;
        goOn(endless);
    }

    // For co_await.
    bool await_ready() const noexcept { return false; }
    void await_suspend(Handle whole) noexcept;
    void await_resume() const;

  private:
    explicit Work(Handle handle) : handle_(handle) {}

    Handle handle_;
};

class Work::promise_type {
  public:
    Work get_return_object() { return Work(Handle::from_promise(*this)); }
    std::suspend_always initial_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
    void unhandled_exception() noexcept { error_ = std::current_exception(); }

    struct Pause {
        bool over;
        bool await_ready() const noexcept { return !over; }
        void await_suspend(Handle) const noexcept {}
        void await_resume() const noexcept {}
    };
    Pause yield_value(std::size_t units) noexcept {
        first_->over_ = first_->slice_->isOver(units);
        return {first_->over_};
    }

    struct End {
        bool await_ready() const noexcept { return false; }
        void await_suspend(Handle part) const noexcept {
            promise_type& done = part.promise();
            done.first_->current_ = done.whole_;
        }
        void await_resume() const noexcept {}
    };
    End final_suspend() const noexcept { return {}; }

  private:
    friend class Work;

    promise_type* first_ = this;  ///< whose part this is, at last
    Handle whole_;                ///< that waits for this part
    std::exception_ptr error_;
    // Of the first one only.
    Handle current_ = Handle::from_promise(*this);
    Slice* slice_ = nullptr;
    bool over_ = false;
};

inline bool Work::goOn(Slice& slice) {
    promise_type& first = handle_.promise();
    first.slice_ = &slice;
    first.over_ = false;
    // What begins or ends comes back here: however many parts follow each other, the stack does not grow.
    while (!handle_.done() && !first.over_) first.current_.resume();
    await_resume();
    return handle_.done();
}

inline void Work::await_suspend(Handle whole) noexcept {
    promise_type& part = handle_.promise();
    part.first_ = whole.promise().first_;
    part.whole_ = whole;
    part.first_->current_ = handle_;
}

inline void Work::await_resume() const {
    if (handle_.promise().error_) std::rethrow_exception(handle_.promise().error_);
}

/// Cuts a long row of things, of which so many take a unit of work, into pieces:
///
///     for (Pieces some(count, inAUnit); some.next(); co_yield some.units())
///         for (std::size_t i = some.first; i < some.last; ++i) ...
struct Pieces {
    std::size_t first = 0;
    std::size_t last = 0;

    Pieces(std::size_t count, std::size_t inAUnit) : count_(count), inAUnit_(inAUnit) {}
    /// \return whether there is another piece
    bool next() {
        constexpr std::size_t kUnits = 100;
        first = last;
        last = std::min(count_, first + kUnits * inAUnit_);
        return first < last;
    }
    std::size_t units() const { return (last - first) / inAUnit_; }

  private:
    std::size_t count_;
    std::size_t inAUnit_;
};
