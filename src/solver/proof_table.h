#pragma once
// What a solving run has proved about positions it met on the way: here the
// position (men, side to move, castling rights, en passant) holds no solution
// within so many plies, or the attacker cannot (or can) force mate within
// them. Many lines reach the same position by different move orders; the
// search skips what is already proved. Only proved results are kept, and
// positions are kept whole, so two positions never share an entry.
//
// A mate on the way counts in every search, so a proof carries over to other
// numbers of plies: what fails within n plies fails within fewer, and what
// succeeds within n succeeds within more. A position met again with the same
// side to move but a different number of plies left (kings stepping there and
// back) is answered by an entry made for the other number.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/position.h"

namespace velkaro::solver {

// A position as the table keeps it: four bits a square, and the rest packed
// into one word. Bits 2 to 5 of the piece codes tell every man apart but a
// White king from a Black pawn, and the king squares in the rest settle that.
struct TableKey {
  std::uint64_t squares[4] = {0, 0, 0, 0};
  std::uint32_t rest = 0;  // side, castling rights, en-passant square, plies left, king squares
  std::uint64_t hash = 0;  // picks the bucket; the same for every number of plies left
};

// Where the plies left stand in TableKey::rest.
constexpr int kPliesLeftShift = 12;
constexpr std::uint32_t kPliesLeft = 63u << kPliesLeftShift;

// The key of the position at `ply` with `pliesLeft` plies still to search.
TableKey tableKeyAt(const core::PlyStack& stack, int ply, int pliesLeft);

class ProofTable {
 public:
  // Makes the table at most `megabytes` large (0: no table) and forgets
  // everything in it. Memory is allocated only when the size changes;
  // forgetting is a new generation, not a pass over the table. The table
  // starts small and doubles, within its memory, once it holds two entries a
  // bucket on average, so that a short run touches few pages (the system
  // clears each page the table first writes).
  void reset(int megabytes);
  bool enabled() const { return buckets_ != nullptr; }

  enum class Proof { None, Failure, Success };
  Proof proved(const TableKey& key) const;
  // Starts fetching the memory `proved` and `store` will read for `key`.
  void prefetch(const TableKey& key) const {
    if (buckets_ != nullptr) __builtin_prefetch(&bucketOf(key));
  }
  void store(const TableKey& key, Proof proof);

 private:
  struct Entry {
    std::uint64_t squares[4];
    std::uint32_t rest;
    std::uint32_t stamp;  // the generation, with kSuccess for a proved success; 0: never written
  };
  // Three entries share two cache lines. A new proof always comes in; when
  // the bucket is full it displaces the proof with the fewest plies left (it
  // saved the least work), or a weaker proof of its own position.
  struct alignas(128) Bucket {
    Entry entries[3];
  };
  static constexpr int kEntries = 3;
  struct Free {
    void operator()(void* memory) const;
  };

  static constexpr std::uint32_t kSuccess = 1u << 31;

  Bucket& bucketOf(const TableKey& key) const;
  static bool ofPosition(const Entry& entry, const TableKey& key);
  bool holds(const Entry& entry, const TableKey& key) const;
  bool current(const Entry& entry) const { return (entry.stamp & ~kSuccess) == generation_; }
  void grow();

  std::unique_ptr<void, Free> memory_;
  Bucket* buckets_ = nullptr;
  std::size_t maxMask_ = 0;   // buckets in the memory, less one
  std::size_t mask_ = 0;      // buckets in use, less one
  std::size_t stores_ = 0;    // entries written since the table last grew
  int megabytes_ = 0;
  std::uint32_t generation_ = 0;  // below kSuccess
};

}  // namespace velkaro::solver
