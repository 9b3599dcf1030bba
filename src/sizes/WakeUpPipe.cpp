#include "sizes/WakeUpPipe.h"

#include <fcntl.h>
#include <unistd.h>

#include "base/Precondition.h"

namespace vantrel::sizes {

WakeUpPipe openWakeUpPipe() {
    int ends[2];
    precondition(::pipe(ends) == 0, "no pipe to be had");
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace vantrel::sizes
