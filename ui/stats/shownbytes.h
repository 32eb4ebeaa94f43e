// Reply bytes that are already shown; identical ones are skipped.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Remembers the bytes of one reply.
class ShownReply {
  public:
    // Remembers `bytes` as what is shown. True if they differ from what was shown.
    bool update(std::span<const std::uint8_t> bytes) {
        if (known_ && std::ranges::equal(bytes, bytes_)) return false;
        known_ = true;
        bytes_.assign(bytes.begin(), bytes.end());
        return true;
    }

    void forget() { known_ = false; }

  private:
    std::vector<std::uint8_t> bytes_;
    bool known_ = false;
};

// Remembers the bytes of numbered pieces (rows of a table), all of the same size.
class ShownBytes {
  public:
    // As ShownReply, of a piece.
    bool update(std::size_t piece, std::span<const std::uint8_t> bytes) {
        if (piece >= known_.size()) {
            known_.resize(piece + 1);
            bytes_.resize((piece + 1) * bytes.size());
        }
        const auto place = std::span(bytes_).subspan(piece * bytes.size(), bytes.size());
        if (known_[piece] && std::ranges::equal(bytes, place)) return false;
        known_[piece] = true;
        std::ranges::copy(bytes, place.begin());
        return true;
    }

    // Pieces from `first` on are no longer shown.
    void forget(std::size_t first = 0) {
        if (first < known_.size()) known_.resize(first);
    }

  private:
    std::vector<std::uint8_t> bytes_;
    std::vector<bool> known_;
};
