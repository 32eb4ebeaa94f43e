// What is shown, as it came from the driver: what comes so again need not be made into texts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Pieces of equal size, from 0.
class Standing {
  public:
    // Whether the piece is shown already; it is from now on.
    bool shows(std::size_t piece, std::span<const std::uint8_t> bytes) {
        if (piece >= known_.size()) {
            known_.resize(piece + 1);
            bytes_.resize((piece + 1) * bytes.size());
        }
        const auto place = std::span(bytes_).subspan(piece * bytes.size(), bytes.size());
        if (known_[piece] && std::equal(bytes.begin(), bytes.end(), place.begin())) return true;
        known_[piece] = true;
        std::copy(bytes.begin(), bytes.end(), place.begin());
        return false;
    }

    // Those from `pieces` on are not shown any more.
    void forget(std::size_t pieces = 0) {
        if (pieces < known_.size()) known_.resize(pieces);
    }

  private:
    std::vector<std::uint8_t> bytes_;
    std::vector<bool> known_;
};
