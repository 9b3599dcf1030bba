#include "walk/WalkPool.h"

#include <algorithm>
#include <thread>

#include "walk/WalkScheduler.h"

namespace vantrel {

unsigned WalkPool::recommendedThreads() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 8U, 32U);
}

WalkPool::WalkPool(const Clock& clock, const Options& options)
    : makeReader_(options.makeReader),
      known_(options.known),
      scheduler_(std::make_unique<walking::WalkScheduler>(clock, options)) {}

WalkPool::~WalkPool() = default;

void WalkPool::submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer) {
    submit(std::move(root), std::move(stop), std::move(observer), Reach::wholeTree);
}

void WalkPool::submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer,
                      Reach reach) {
    scheduler_->submit({std::move(root), std::move(stop), std::move(observer), reach, known_});
}

bool WalkPool::catchUp(Seconds lent) {
    return scheduler_->catchUp(lent);
}

}  // namespace vantrel
