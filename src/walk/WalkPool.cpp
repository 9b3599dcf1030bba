#include "walk/WalkPool.h"

#include <sys/resource.h>

#include <algorithm>
#include <thread>

#include "walk/LinuxDirectoryReader.h"
#include "walk/PosixDirectoryReader.h"
#include "walk/WalkScheduler.h"

namespace vantrel {

unsigned WalkPool::recommendedThreads() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 8U, 32U);
}

int WalkPool::recommendedDescriptorBudget() {
    constexpr rlim_t most = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 256;
    return static_cast<int>(std::min(limit.rlim_cur / 2, most));
}

std::unique_ptr<walking::DirectoryReader> WalkPool::nativeReader() {
#ifdef __linux__
    return std::make_unique<walking::LinuxDirectoryReader>();
#else
    return portableReader();
#endif
}

std::unique_ptr<walking::DirectoryReader> WalkPool::portableReader() {
    return std::make_unique<walking::PosixDirectoryReader>();
}

WalkPool::WalkPool(const Clock& clock) : WalkPool(clock, Options()) {}

WalkPool::WalkPool(const Clock& clock, const Options& options)
    : scheduler_(std::make_unique<walking::WalkScheduler>(clock, options)) {}

WalkPool::~WalkPool() = default;

void WalkPool::submit(std::string root, std::shared_ptr<const CancellationFlag> cancellation,
                      std::unique_ptr<WalkObserver> observer) {
    submit(std::move(root), std::move(cancellation), std::move(observer), Reach::wholeTree);
}

void WalkPool::submit(std::string root, std::shared_ptr<const CancellationFlag> cancellation,
                      std::unique_ptr<WalkObserver> observer, Reach reach) {
    scheduler_->submit({std::move(root), std::move(cancellation), std::move(observer), reach});
}

bool WalkPool::catchUp(Seconds lent) {
    return scheduler_->catchUp(lent);
}

}  // namespace vantrel
