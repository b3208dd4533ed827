#pragma once
// What a solving run has proved about positions it met on the way: here the
// position (men, side to move, castling rights, en passant, plies left) holds
// no solution, or the attacker cannot (or can) force mate. Many lines reach
// the same position by different move orders; the search skips what is
// already proved. Only proved results are kept, and positions are kept whole,
// so two positions never share an entry.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/position.h"

namespace velkaro::solver {

// A position as the table keeps it: which squares hold men, the men in square
// order four bits each, and the rest packed into one word.
struct TableKey {
  std::uint64_t occupied = 0;
  std::uint64_t men[2] = {0, 0};
  std::uint32_t rest = 0;  // side, castling rights, en-passant square, plies left
  bool valid = false;      // a board of more than 32 men is not kept
};

// The key of the position at `ply` with `pliesLeft` plies still to search.
TableKey tableKeyAt(const core::PlyStack& stack, int ply, int pliesLeft);

class ProofTable {
 public:
  // Makes the table at most `megabytes` large (0: no table) and forgets
  // everything in it. Memory is allocated only when the size changes;
  // forgetting is a new generation, not a pass over the table. The table
  // starts small and doubles, within its memory, as it fills, so that a short
  // run touches few pages.
  void reset(int megabytes);
  bool enabled() const { return buckets_ != nullptr; }

  enum class Proof { None, Failure, Success };
  Proof proved(const TableKey& key) const;
  void store(const TableKey& key, Proof proof);

 private:
  struct Entry {
    std::uint64_t occupied;
    std::uint64_t men[2];
    std::uint32_t rest;        // the key's, with kSuccess for a proved success
    std::uint32_t generation;  // 0: never written
  };
  // Two entries share a cache line: the first keeps the entry with more plies
  // left (it saved more work), the second always takes the newest.
  struct alignas(64) Bucket {
    Entry entries[2];
  };
  struct Free {
    void operator()(void* memory) const;
  };

  static constexpr std::uint32_t kSuccess = 1u << 31;

  static std::uint64_t hashOf(std::uint64_t occupied, const std::uint64_t* men, std::uint32_t rest);
  Bucket& bucketOf(const TableKey& key) const;
  bool holds(const Entry& entry, const TableKey& key) const;
  void grow();

  std::unique_ptr<void, Free> memory_;
  Bucket* buckets_ = nullptr;
  std::size_t maxMask_ = 0;   // buckets in the memory, less one
  std::size_t mask_ = 0;      // buckets in use, less one
  std::size_t stores_ = 0;    // entries written since the table last grew
  int megabytes_ = 0;
  std::uint32_t generation_ = 0;
};

}  // namespace velkaro::solver
