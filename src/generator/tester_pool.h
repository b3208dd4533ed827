#pragma once
// Placements tested on several threads, handed back in the order they were
// handed in. The run keeps producing placements in order and committing
// results in order, so the list is the same as with one thread; only the
// testing, the costly part, runs side by side, each thread with its own
// tester and key finder. The run's own thread tests too while it waits for
// the oldest placement, so n threads keep n cores busy, no more.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "generator/placement_test.h"

namespace velkaro::generator {

class TesterPool {
 public:
  // `helpers` threads besides the run's own.
  TesterPool(const CreateSettings& settings, int helpers);
  ~TesterPool();
  TesterPool(const TesterPool&) = delete;
  TesterPool& operator=(const TesterPool&) = delete;

  // Placements handed in and not yet taken back.
  std::size_t pending() const;
  void add(const Board& board);
  // The oldest placement with its verdict, once it is tested; meanwhile the
  // caller tests placements nobody has taken with `own`.
  Tested takeOldest(PlacementTester& own);
  // The threads finish what they are testing and wait; what they have not
  // begun stays queued for resume().
  void hold();
  void resume();

 private:
  struct Slot {
    Tested tested;
    bool done = false;
  };
  void work(PlacementTester& tester);
  // Tests the first placement nobody has taken; the lock is held on entry
  // and on return, not while testing.
  void testNext(std::unique_lock<std::mutex>& lock, PlacementTester& tester);
  bool untestedWaiting() const { return !held_ && nextToTest_ < oldest_ + slots_.size(); }

  mutable std::mutex mutex_;
  std::condition_variable workReady_;
  std::condition_variable oldestDone_;
  std::condition_variable idle_;
  std::deque<Slot> slots_;
  std::uint64_t oldest_ = 0;      // the number of the placement in slots_.front()
  std::uint64_t nextToTest_ = 0;  // the number of the first placement no thread has taken
  int busy_ = 0;
  bool held_ = false;
  bool closing_ = false;
  std::vector<std::unique_ptr<PlacementTester>> testers_;
  std::vector<std::thread> threads_;
};

}  // namespace velkaro::generator
