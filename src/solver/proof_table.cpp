// The proof table: exact position keys, three-entry buckets, generations
// instead of clearing.

#include "solver/proof_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/movegen.h"

namespace velkaro::solver {

namespace {

// The table starts with this many buckets (64 KB).
constexpr std::size_t kFirstBuckets = 512;

std::uint64_t mix(std::uint64_t value) {
  value ^= value >> 31;
  value *= 0x9e3779b97f4a7c15;
  return value ^ (value >> 29);
}

// Bits 2 to 5 of each square's piece code, sixteen squares to a word. Where
// the processor works on sixteen bytes at once (every x86-64 one) the board
// is packed that way, elsewhere eight squares at a time; there the order of
// the squares in a word follows the machine's byte order, as keys are
// compared only within one run.
void packBoard(const std::int8_t* board, std::uint64_t* squares) {
#if defined(__SSE2__)
  const __m128i lowNibbles = _mm_set1_epi8(0x0f);
  const __m128i lowBytes = _mm_set1_epi16(0x00ff);
  for (int half = 0; half < 2; ++half) {
    __m128i pairs[2];
    for (int part = 0; part < 2; ++part) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(board + 32 * half + 16 * part));
      const __m128i nibbles = _mm_and_si128(_mm_srli_epi16(bytes, 2), lowNibbles);
      // Each 16-bit lane: its first square's nibble low, its second's above.
      pairs[part] = _mm_or_si128(_mm_and_si128(nibbles, lowBytes), _mm_srli_epi16(nibbles, 4));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(squares + 2 * half), _mm_packus_epi16(pairs[0], pairs[1]));
  }
#else
  const auto packedRow = [](const std::int8_t* row) {
    std::uint64_t bytes;
    std::memcpy(&bytes, row, sizeof bytes);
    std::uint64_t nibbles = (bytes >> 2) & 0x0f0f0f0f0f0f0f0f;
    nibbles = (nibbles | (nibbles >> 4)) & 0x00ff00ff00ff00ff;
    nibbles = (nibbles | (nibbles >> 8)) & 0x0000ffff0000ffff;
    return (nibbles | (nibbles >> 16)) & 0x00000000ffffffff;
  };
  for (int pair = 0; pair < 4; ++pair) {
    squares[pair] = packedRow(board + 16 * pair) | (packedRow(board + 16 * pair + 8) << 32);
  }
#endif
}

// A White king and a Black pawn share their four bits; no two other men do.
static_assert(((core::piece::King >> 2) & 15) == ((-core::piece::Pawn >> 2) & 15));

// Every entry of one position, whatever its plies left, lies in one bucket.
std::uint64_t hashOf(const std::uint64_t* squares, std::uint32_t rest) {
  rest &= ~kPliesLeft;
  return mix(squares[0] ^ mix(squares[1] ^ mix(squares[2] ^ mix(squares[3] ^ rest))));
}

// Nearly every lookup lands on a page of its own; with the usual small pages
// the processor spends as long finding the page as reading the entry. Where
// the system offers large pages on request, the table asks for them.
void askForLargePages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + page - 1) & ~(page - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) & ~(page - 1);
  if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
  (void)memory;
  (void)bytes;
#endif
}

}  // namespace

TableKey tableKeyAt(const core::PlyStack& stack, int ply, int pliesLeft) {
  const core::Position& position = stack[ply].position;
  TableKey key;
  packBoard(position.board, key.squares);
  const int enPassant = core::enPassantPawn(stack, ply);
  key.rest = static_cast<std::uint32_t>((stack.sideAt(ply) == core::White ? 0 : 1) |
                                        (position.whiteLongCastle ? 2 : 0) | (position.whiteShortCastle ? 4 : 0) |
                                        (position.blackLongCastle ? 8 : 0) | (position.blackShortCastle ? 16 : 0) |
                                        ((enPassant + 1) << 5) | (pliesLeft << kPliesLeftShift) |
                                        (position.whiteKingSquare << 18) | (position.blackKingSquare << 24));
  key.hash = hashOf(key.squares, key.rest);
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
    askForLargePages(buckets_, count * sizeof(Bucket));
    maxMask_ = count - 1;
    megabytes_ = megabytes;
  }
  if (buckets_ == nullptr) return;
  mask_ = std::min(maxMask_, kFirstBuckets - 1);
  stores_ = 0;
  if (++generation_ == kSuccess) {  // the stamps wrapped: forget by clearing
    std::memset(static_cast<void*>(buckets_), 0, (maxMask_ + 1) * sizeof(Bucket));
    generation_ = 1;
  }
}

ProofTable::Bucket& ProofTable::bucketOf(const TableKey& key) const { return buckets_[key.hash & mask_]; }

// Doubles the buckets in use: each entry of bucket i either stays or moves to
// bucket i + n, by the next bit of its hash, into the same slot of its new
// bucket.
void ProofTable::grow() {
  const std::size_t count = mask_ + 1;
  for (std::size_t index = 0; index < count; ++index) {
    Bucket& bucket = buckets_[index];
    Bucket& partner = buckets_[index + count];
    partner = Bucket{};
    for (Entry& entry : bucket.entries) {
      if (!current(entry) || (hashOf(entry.squares, entry.rest) & count) == 0) continue;
      partner.entries[&entry - bucket.entries] = entry;
      entry.stamp = 0;
    }
  }
  mask_ = 2 * count - 1;
  stores_ = 0;
}

// The entry is of the key's position, for whatever number of plies left.
bool ProofTable::ofPosition(const Entry& entry, const TableKey& key) {
  return (entry.rest & ~kPliesLeft) == (key.rest & ~kPliesLeft) && entry.squares[0] == key.squares[0] &&
         entry.squares[1] == key.squares[1] && entry.squares[2] == key.squares[2] &&
         entry.squares[3] == key.squares[3];
}

// The entry is of the key's position and answers for its plies left: a
// failure proved with at least as many, a success with at most as many.
bool ProofTable::holds(const Entry& entry, const TableKey& key) const {
  if (!current(entry) || !ofPosition(entry, key)) return false;
  const std::uint32_t proved = entry.rest & kPliesLeft;
  const std::uint32_t asked = key.rest & kPliesLeft;
  return (entry.stamp & kSuccess) != 0 ? proved <= asked : proved >= asked;
}

ProofTable::Proof ProofTable::proved(const TableKey& key) const {
  if (buckets_ == nullptr) return Proof::None;
  const Bucket& bucket = bucketOf(key);
  for (const Entry& entry : bucket.entries) {
    if (holds(entry, key)) return (entry.stamp & kSuccess) != 0 ? Proof::Success : Proof::Failure;
  }
  return Proof::None;
}

void ProofTable::store(const TableKey& key, Proof proof) {
  if (buckets_ == nullptr || proof == Proof::None) return;
  Bucket& bucket = bucketOf(key);
  const std::uint32_t stamp = generation_ | (proof == Proof::Success ? kSuccess : 0);
  const std::uint32_t plies = key.rest & kPliesLeft;
  // A proof of the same position that the new one covers (it did not answer
  // the question, or the search would not have run) gives way in its place.
  for (Entry& entry : bucket.entries) {
    if (entry.stamp != stamp || !ofPosition(entry, key)) continue;
    const std::uint32_t had = entry.rest & kPliesLeft;
    if (proof == Proof::Success ? plies <= had : plies >= had) {
      entry.rest = key.rest;
      return;
    }
  }
  // Otherwise the new proof takes an empty place or that of the proof with
  // the fewest plies left (it saved the least work), among equals in turn.
  Entry* victim = nullptr;
  for (int i = 0; i < kEntries; ++i) {
    Entry& entry = bucket.entries[(stores_ + static_cast<std::size_t>(i)) % kEntries];
    if (!current(entry)) {
      victim = &entry;
      break;
    }
    if (victim == nullptr || (entry.rest & kPliesLeft) < (victim->rest & kPliesLeft)) victim = &entry;
  }
  *victim = Entry{{key.squares[0], key.squares[1], key.squares[2], key.squares[3]}, key.rest, stamp};
  if (++stores_ > 2 * mask_ && mask_ < maxMask_) grow();
}

}  // namespace velkaro::solver
