// The proof table: exact position keys, two-entry buckets, generations
// instead of clearing.

#include "solver/proof_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>

#include "core/movegen.h"

namespace velkaro::solver {

namespace {

// Each man as four bits, 1 to 12; 0 is never used, so a man is never taken
// for the end of the list.
constexpr std::array<std::uint8_t, 256> kManCodes = [] {
  std::array<std::uint8_t, 256> codes{};
  int next = 1;
  for (int code : {core::piece::King, core::piece::Queen, core::piece::Rook, core::piece::Bishop,
                   core::piece::Knight, core::piece::Pawn}) {
    codes[static_cast<std::uint8_t>(code)] = static_cast<std::uint8_t>(next++);
    codes[static_cast<std::uint8_t>(-code)] = static_cast<std::uint8_t>(next++);
  }
  return codes;
}();
static_assert(kManCodes[static_cast<std::uint8_t>(-core::piece::Pawn)] == 12 && kManCodes[0] == 0);

// One bit per occupied square, eight squares at a time.
std::uint64_t occupiedSquares(const std::int8_t* board) {
  std::uint64_t occupied = 0;
  for (int row = 0; row < 8; ++row) {
    std::uint64_t bytes;
    std::memcpy(&bytes, board + 8 * row, sizeof bytes);
    if constexpr (std::endian::native == std::endian::big) bytes = __builtin_bswap64(bytes);
    constexpr std::uint64_t kLow = 0x7f7f7f7f7f7f7f7f;
    const std::uint64_t nonZero = (((bytes & kLow) + kLow) | bytes) & ~kLow;
    occupied |= (((nonZero >> 7) * 0x0102040810204080) >> 56) << (8 * row);
  }
  return occupied;
}

// The table starts with this many buckets (256 KB).
constexpr std::size_t kFirstBuckets = 4096;

std::uint64_t mix(std::uint64_t value) {
  value ^= value >> 31;
  value *= 0x9e3779b97f4a7c15;
  return value ^ (value >> 29);
}

}  // namespace

TableKey tableKeyAt(const core::PlyStack& stack, int ply, int pliesLeft) {
  const core::Position& position = stack[ply].position;
  TableKey key;
  key.occupied = occupiedSquares(position.board);
  int shift = 0;
  for (std::uint64_t squares = key.occupied; squares != 0; squares &= squares - 1, shift += 4) {
    if (shift == 128) return key;  // more than 32 men
    const std::uint64_t man = kManCodes[static_cast<std::uint8_t>(position.board[std::countr_zero(squares)])];
    key.men[shift >> 6] |= man << (shift & 63);
  }
  const int enPassant = core::enPassantPawn(stack, ply);
  key.rest = static_cast<std::uint32_t>((stack.sideAt(ply) == core::White ? 0 : 1) |
                                        (position.whiteLongCastle ? 2 : 0) | (position.whiteShortCastle ? 4 : 0) |
                                        (position.blackLongCastle ? 8 : 0) | (position.blackShortCastle ? 16 : 0) |
                                        ((enPassant + 1) << 5) | (pliesLeft << 12));
  key.valid = true;
  return key;
}

void ProofTable::Free::operator()(void* memory) const { std::free(memory); }

void ProofTable::reset(int megabytes) {
  if (megabytes != megabytes_) {
    memory_.reset();
    buckets_ = nullptr;
    megabytes_ = 0;
    generation_ = 0;
    if (megabytes <= 0) return;
    // A power of two of buckets, as many as fit.
    const std::size_t bytes = static_cast<std::size_t>(megabytes) << 20;
    const std::size_t count = std::bit_floor(bytes / sizeof(Bucket));
    // calloc hands out large blocks as untouched zero pages; the table costs
    // memory only where it is written.
    memory_.reset(std::calloc(count * sizeof(Bucket) + alignof(Bucket), 1));
    if (!memory_) return;
    void* aligned = memory_.get();
    std::size_t space = count * sizeof(Bucket) + alignof(Bucket);
    buckets_ = static_cast<Bucket*>(std::align(alignof(Bucket), count * sizeof(Bucket), aligned, space));
    maxMask_ = count - 1;
    megabytes_ = megabytes;
  }
  if (buckets_ == nullptr) return;
  mask_ = std::min(maxMask_, kFirstBuckets - 1);
  stores_ = 0;
  if (++generation_ == 0) {  // the stamps wrapped: forget by clearing
    std::memset(static_cast<void*>(buckets_), 0, (maxMask_ + 1) * sizeof(Bucket));
    generation_ = 1;
  }
}

std::uint64_t ProofTable::hashOf(std::uint64_t occupied, const std::uint64_t* men, std::uint32_t rest) {
  return mix(occupied ^ mix(men[0] ^ mix(men[1] ^ (static_cast<std::uint64_t>(rest) << 20))));
}

ProofTable::Bucket& ProofTable::bucketOf(const TableKey& key) const {
  return buckets_[hashOf(key.occupied, key.men, key.rest) & mask_];
}

// Doubles the buckets in use: each entry of bucket i either stays or moves to
// bucket i + n, by the next bit of its hash; the two entries of a bucket
// always fit into the two of its new partner.
void ProofTable::grow() {
  const std::size_t count = mask_ + 1;
  for (std::size_t index = 0; index < count; ++index) {
    Bucket& bucket = buckets_[index];
    Bucket& partner = buckets_[index + count];
    partner = Bucket{};
    for (int slot = 0; slot < 2; ++slot) {
      Entry& entry = bucket.entries[slot];
      if (entry.generation != generation_ || (hashOf(entry.occupied, entry.men, entry.rest) & count) == 0) continue;
      partner.entries[slot] = entry;
      entry.generation = 0;
    }
  }
  mask_ = 2 * count - 1;
  stores_ = 0;
}

bool ProofTable::holds(const Entry& entry, const TableKey& key) const {
  return entry.generation == generation_ && entry.occupied == key.occupied && entry.men[0] == key.men[0] &&
         entry.men[1] == key.men[1] && (entry.rest & ~kSuccess) == key.rest;
}

ProofTable::Proof ProofTable::proved(const TableKey& key) const {
  if (buckets_ == nullptr || !key.valid) return Proof::None;
  const Bucket& bucket = bucketOf(key);
  for (const Entry& entry : bucket.entries) {
    if (holds(entry, key)) return (entry.rest & kSuccess) != 0 ? Proof::Success : Proof::Failure;
  }
  return Proof::None;
}

void ProofTable::store(const TableKey& key, Proof proof) {
  if (buckets_ == nullptr || !key.valid || proof == Proof::None) return;
  Bucket& bucket = bucketOf(key);
  Entry& deep = bucket.entries[0];
  const auto pliesLeft = [](std::uint32_t rest) { return (rest >> 12) & 0xff; };
  const bool replaceDeep = deep.generation != generation_ || pliesLeft(deep.rest) <= pliesLeft(key.rest);
  Entry& slot = replaceDeep ? deep : bucket.entries[1];
  const std::uint32_t rest = key.rest | (proof == Proof::Success ? kSuccess : 0);
  slot = Entry{key.occupied, {key.men[0], key.men[1]}, rest, generation_};
  if (++stores_ > mask_ && mask_ < maxMask_) grow();
}

}  // namespace velkaro::solver
