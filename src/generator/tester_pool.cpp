// The threads of a tester pool: each takes the oldest placement nobody has
// taken yet, tests it without the lock, and files the verdict in its slot.
// The run's thread does the same while the oldest is still being tested.

#include "generator/tester_pool.h"

namespace velkaro::generator {

TesterPool::TesterPool(const CreateSettings& settings, int helpers) {
  for (int index = 0; index < helpers; ++index) testers_.push_back(std::make_unique<PlacementTester>(settings));
  for (auto& tester : testers_) threads_.emplace_back([this, &tester] { work(*tester); });
}

TesterPool::~TesterPool() {
  {
    std::lock_guard lock(mutex_);
    closing_ = true;
  }
  workReady_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

std::size_t TesterPool::pending() const {
  std::lock_guard lock(mutex_);
  return slots_.size();
}

void TesterPool::add(const Board& board) {
  {
    std::lock_guard lock(mutex_);
    slots_.push_back({{board, {}}, false});
  }
  workReady_.notify_one();
}

Tested TesterPool::takeOldest(PlacementTester& own) {
  std::unique_lock lock(mutex_);
  while (!slots_.front().done) {
    if (untestedWaiting()) {
      testNext(lock, own);
    } else {
      oldestDone_.wait(lock);
    }
  }
  Tested tested = slots_.front().tested;
  slots_.pop_front();
  ++oldest_;
  return tested;
}

void TesterPool::hold() {
  std::unique_lock lock(mutex_);
  held_ = true;
  idle_.wait(lock, [this] { return busy_ == 0; });
}

void TesterPool::resume() {
  {
    std::lock_guard lock(mutex_);
    held_ = false;
  }
  workReady_.notify_all();
}

void TesterPool::work(PlacementTester& tester) {
  std::unique_lock lock(mutex_);
  for (;;) {
    workReady_.wait(lock, [this] { return closing_ || untestedWaiting(); });
    if (closing_) return;
    testNext(lock, tester);
  }
}

void TesterPool::testNext(std::unique_lock<std::mutex>& lock, PlacementTester& tester) {
  const std::uint64_t number = nextToTest_++;
  const Board board = slots_[static_cast<std::size_t>(number - oldest_)].tested.board;
  ++busy_;
  lock.unlock();
  const Verdict verdict = tester.test(board);
  lock.lock();
  --busy_;
  // The slot is still there: only tested slots are taken back.
  Slot& slot = slots_[static_cast<std::size_t>(number - oldest_)];
  slot.tested.verdict = verdict;
  slot.done = true;
  if (number == oldest_) oldestDone_.notify_one();
  if (busy_ == 0 && held_) idle_.notify_all();
}

}  // namespace velkaro::generator
