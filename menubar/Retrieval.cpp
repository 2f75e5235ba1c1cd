#include "menubar/Retrieval.h"

namespace pelistra::menubar {

bool Retrieval::fetch(Clock::time_point now) {
    if (isExhausted() || now - firstDocked_ > period) {
        return false;
    }
    ++count_;
    return true;
}

} // namespace pelistra::menubar
