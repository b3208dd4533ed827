#pragma once
// The squares of a board's men as one bit each, found from the board's bytes.

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/position.h"

namespace velkaro::core {

// One bit per square holding a man of `Side` (of either side for 0): a byte
// is White's when it is positive, Black's when its sign bit is set. The move
// iterators and the flight counts ask for these all the time, so where the
// processor compares sixteen bytes at once (every x86-64 one) it does;
// elsewhere eight squares at a time.
template <int Side>
inline std::uint64_t menOf(const std::int8_t* board) {
#if defined(__SSE2__)
  std::uint64_t men = 0;
  const __m128i zero = _mm_setzero_si128();
  for (int part = 0; part < 4; ++part) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(board + 16 * part));
    unsigned bits;
    if constexpr (Side == White) {
      bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(bytes, zero)));
    } else if constexpr (Side == Black) {
      bits = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    } else {
      bits = ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero))) & 0xffffu;
    }
    men |= static_cast<std::uint64_t>(bits) << (16 * part);
  }
  return men;
#else
  constexpr std::uint64_t kSignBits = 0x8080808080808080;
  std::uint64_t men = 0;
  for (int row = 0; row < 8; ++row) {
    std::uint64_t bytes;
    std::memcpy(&bytes, board + 8 * row, sizeof bytes);
    if constexpr (std::endian::native == std::endian::big) bytes = __builtin_bswap64(bytes);
    const std::uint64_t occupied = (((bytes & ~kSignBits) + ~kSignBits) | bytes) & kSignBits;
    const std::uint64_t own = Side == White ? occupied & ~bytes : Side == Black ? bytes & kSignBits : occupied;
    men |= (((own >> 7) * 0x0102040810204080) >> 56) << (8 * row);
  }
  return men;
#endif
}

// The squares men stand on.
inline std::uint64_t occupiedOf(const std::int8_t* board) { return menOf<0>(board); }

}  // namespace velkaro::core
