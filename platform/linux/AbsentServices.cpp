#include "platform/linux/AbsentServices.h"

namespace pelistra::linux {

std::unique_ptr<EventSource> AbsentEventPosting::source(EventSourceState /*state*/) {
    return nullptr;
}

std::unique_ptr<MouseEvent> AbsentEventPosting::mouseEvent(EventSource& /*source*/,
                                                           EventType /*type*/, Point /*location*/,
                                                           MouseButton /*button*/) {
    return nullptr;
}

bool AbsentEventPosting::postToPid(ProcessId /*processIdentifier*/, const MouseEvent& /*event*/) {
    return false;
}

} // namespace pelistra::linux
