#include "menubar/Straying.h"

namespace pelistra::menubar {

bool Straying::putBack(Clock::time_point now) {
    if (now - periodBegin_ >= period) {
        periodBegin_ = now;
        count_ = 0;
    }
    if (count_ >= limit) {
        return false;
    }
    ++count_;
    return true;
}

} // namespace pelistra::menubar
