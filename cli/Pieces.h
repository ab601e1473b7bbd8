#pragma once

#include <cstddef>
#include <functional>
#include <istream>
#include <string_view>

namespace cli {

/// What is left to do with a piece once all pieces in front of it are done with. Runs on the caller's thread.
using FinishPiece = std::function<void()>;

/// Reads one piece to its end, on any thread and at the same time as others.
/// \param linesBefore the text's lines in front of the piece
using ReadPiece = std::function<FinishPiece(std::istream& piece, std::size_t linesBefore)>;

struct PieceLimits {
    /// How many pieces are read at a time; 0 for as many as there are cores.
    std::size_t threads = 0;
    /// Bytes taken from the text at once, and so about the size of a piece; blocks are longer or shorter.
    std::size_t chunk = std::size_t(1) << 20U;
    /// About how many bytes may wait to be read: of a text of a few large blocks only these are read at a
    /// time.
    std::size_t waiting = std::size_t(64) << 20U;
};

/// Cuts a ZEL text into pieces that mean the same each by itself, behind lines that are nothing but "end":
/// there a reader is outside of a block, whatever came before. All of the text's bytes are in one of them, in
/// order; the first one has the byte order mark, and no other begins with one. A text that is not longer than
/// a chunk is read where the caller is. Whatever a reader throws is thrown here, in its turn.
void readInPieces(std::istream& text, const ReadPiece& read, const PieceLimits& limits = {});

/// The size of the first of such pieces, which is at least as large as asked for, or else all of the text.
std::size_t firstPiece(std::string_view text, std::size_t atLeast);

}  // namespace cli
