#include "cli/Pieces.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "cli/TextView.h"

namespace cli {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

/// Whether the line that the "d" or "D" at a place belongs to is nothing but "end".
bool isEnd(std::string_view text, std::size_t at, bool beginsInLine) {
    const auto isLetter = [&](std::size_t before, char small) { return (text[at - before] | 0x20) == small; };
    if (at < 2 || !isLetter(1, 'n') || !isLetter(2, 'e')) return false;
    std::size_t begin = at - 2;
    while (begin > 0 && isBlank(text[begin - 1])) --begin;
    std::size_t end = at + 1;
    while (end < text.size() && isBlank(text[end])) ++end;
    return end < text.size() && text[end] == '\n' && (begin > 0 ? text[begin - 1] == '\n' : !beginsInLine);
}

/// The last place behind an "end" where a text may be cut; nothing where there is none that is certain. What
/// follows the place must be seen to be no byte order mark: a reader would pass over one.
std::optional<std::size_t> lastCut(std::string_view text, bool beginsInLine) {
    std::optional<std::size_t> cut;
    for (const char letter : {'d', 'D'}) {
        std::size_t size = text.size();
        while (size > cut.value_or(0)) {
            const void* const found = memrchr(text.data(), letter, size);
            if (found == nullptr) break;
            size = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
            if (!isEnd(text, size, beginsInLine)) continue;
            const std::size_t behind = text.find('\n', size) + 1;
            const std::string_view next = text.substr(behind, kByteOrderMark.size());
            if (next.size() < kByteOrderMark.size() || next == kByteOrderMark) continue;
            cut = std::max(behind, cut.value_or(0));
            break;
        }
    }
    return cut;
}

/// Text on its way to a reader, as a stream that waits for what has not come yet.
class Piece : public std::streambuf {
  public:
    std::size_t linesBefore = 0;
    /// Set once it is read.
    bool isRead = false;
    FinishPiece finish;
    std::exception_ptr failure;

  private:
    friend class Pieces;
    class Pieces* pieces_ = nullptr;
    std::deque<std::string> chunks_;
    bool isWhole_ = false;
    /// The chunk that is being read.
    std::string chunk_;

    int_type underflow() override;
};

/// Hands pieces to threads and gathers what they make, in order.
class Pieces {
  public:
    Pieces(const ReadPiece& read, const PieceLimits& limits) : read_(read), limits_(limits) {}
    ~Pieces() {
        {
            const std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        changed_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }
    Pieces(const Pieces&) = delete;
    Pieces& operator=(const Pieces&) = delete;

    /// More of the piece that comes last.
    void add(std::string chunk) {
        if (chunk.empty()) return;
        if (!last_) begin_();
        lines_ += static_cast<std::size_t>(std::count(chunk.begin(), chunk.end(), '\n'));
        std::unique_lock lock(mutex_);
        waiting_ += chunk.size();
        last_->chunks_.push_back(std::move(chunk));
        changed_.notify_all();
        if (threads_.empty()) return;
        finishSome_(lock);
        while (waiting_ > limits_.waiting) {
            changed_.wait(lock);
            finishSome_(lock);
        }
    }

    /// The last piece is whole.
    void cut() {
        if (!last_) return;
        std::unique_lock lock(mutex_);
        last_->isWhole_ = true;
        last_.reset();
        changed_.notify_all();
        // Where no thread could be had, there is this one.
        if (threads_.empty()) work_(lock);
    }

    /// Waits for all of them.
    void finish() {
        cut();
        std::unique_lock lock(mutex_);
        while (!inOrder_.empty()) {
            finishSome_(lock);
            if (!inOrder_.empty()) changed_.wait(lock);
        }
    }

  private:
    friend class Piece;

    void begin_() {
        if (threads_.empty()) makeThreads_();
        last_ = std::make_shared<Piece>();
        last_->pieces_ = this;
        last_->linesBefore = lines_;
        const std::lock_guard lock(mutex_);
        inOrder_.push_back(last_);
        unread_.push_back(last_);
    }

    void makeThreads_() {
        const std::size_t count = limits_.threads > 0 ? limits_.threads : std::thread::hardware_concurrency();
        try {
            while (threads_.size() < std::max<std::size_t>(count, 1))
                threads_.emplace_back([this] {
                    std::unique_lock lock(mutex_);
                    while (!stopped_) {
                        work_(lock);
                        if (!stopped_) changed_.wait(lock);
                    }
                });
        } catch (const std::system_error&) {
            // Fewer do as well.
        }
    }

    /// Reads pieces as long as there are any. The lock is held but while one is being read.
    void work_(std::unique_lock<std::mutex>& lock) {
        while (!unread_.empty() && !stopped_) {
            const std::shared_ptr<Piece> piece = std::move(unread_.front());
            unread_.pop_front();
            lock.unlock();
            try {
                std::istream stream(piece.get());
                piece->finish = read_(stream, piece->linesBefore);
            } catch (...) {
                piece->failure = std::current_exception();
            }
            lock.lock();
            piece->isRead = true;
            changed_.notify_all();
        }
    }

    void finishSome_(std::unique_lock<std::mutex>& lock) {
        while (!inOrder_.empty() && inOrder_.front()->isRead) {
            const std::shared_ptr<Piece> piece = std::move(inOrder_.front());
            inOrder_.pop_front();
            lock.unlock();
            if (piece->failure) std::rethrow_exception(piece->failure);
            if (piece->finish) piece->finish();
            lock.lock();
        }
    }

    const ReadPiece& read_;
    const PieceLimits limits_;
    std::vector<std::thread> threads_;
    /// What is handed over, and the piece that is not whole yet; the caller's alone.
    std::size_t lines_ = 0;
    std::shared_ptr<Piece> last_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Piece>> inOrder_;
    std::deque<std::shared_ptr<Piece>> unread_;
    std::size_t waiting_ = 0;
    bool stopped_ = false;
};

Piece::int_type Piece::underflow() {
    {
        std::unique_lock lock(pieces_->mutex_);
        pieces_->changed_.wait(lock, [this] { return !chunks_.empty() || isWhole_ || pieces_->stopped_; });
        chunk_.clear();
        if (chunks_.empty() || pieces_->stopped_) return traits_type::eof();
        chunk_ = std::move(chunks_.front());
        chunks_.pop_front();
        pieces_->waiting_ -= chunk_.size();
    }
    pieces_->changed_.notify_all();
    setg(chunk_.data(), chunk_.data(), chunk_.data() + chunk_.size());
    return traits_type::to_int_type(*gptr());
}

/// Appends what is read; false at the text's end.
bool readMore(std::istream& text, std::size_t size, std::string& buffer) {
    const std::size_t before = buffer.size();
    buffer.resize(before + size);
    text.read(buffer.data() + before, static_cast<std::streamsize>(size));
    const auto got = static_cast<std::size_t>(text.gcount());
    buffer.resize(before + got);
    return got == size;
}

}  // namespace

std::size_t firstPiece(std::string_view text, std::size_t atLeast) {
    for (std::size_t size = std::max<std::size_t>(atLeast, 1); size < text.size(); size *= 2)
        if (const auto cut = lastCut(text.substr(0, size), false)) return *cut;
    return text.size();
}

void readInPieces(std::istream& text, const ReadPiece& read, const PieceLimits& limits) {
    std::string buffer;
    if (!readMore(text, limits.chunk, buffer)) {
        TextView view(buffer);
        std::istream stream(&view);
        if (const FinishPiece finish = read(stream, 0)) finish();
        return;
    }
    Pieces pieces(read, limits);
    // The buffer begins where a line does, or inside of one that is longer than a chunk.
    bool beginsInLine = false;
    bool isMore = true;
    while (isMore) {
        std::string rest;
        if (const auto cut = lastCut(buffer, beginsInLine)) {
            rest = buffer.substr(*cut);
            buffer.resize(*cut);
            pieces.add(std::move(buffer));
            pieces.cut();
            beginsInLine = false;
        } else if (const std::size_t whole = buffer.rfind('\n') + 1; whole != 0) {
            // The last line may be the "end" whose rest is to come.
            rest = buffer.substr(whole);
            buffer.resize(whole);
            pieces.add(std::move(buffer));
            beginsInLine = false;
        } else {
            pieces.add(std::move(buffer));
            beginsInLine = true;
        }
        buffer = std::move(rest);
        isMore = readMore(text, limits.chunk, buffer);
    }
    pieces.add(std::move(buffer));
    pieces.finish();
}

}  // namespace cli
