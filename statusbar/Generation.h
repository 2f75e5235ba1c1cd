#pragma once

#include "base/FatalError.h"

#include <cstdint>
#include <limits>

namespace pelistra {

// Counts starts and cancellations, so that a delayed step can tell whether it was overtaken.
class Generation {
public:
    using Number = std::int64_t;

    explicit Generation(Number number = 0) : number_(number) {}

    [[nodiscard]] Number number() const { return number_; }

    // Overtakes every step that remembers an earlier number. Ends the process when the numbers run
    // out: a number that came again would let an old step through.
    void advance() {
        if (number_ == std::numeric_limits<Number>::max()) {
            fatalError("the reveal generation overflowed");
        }
        ++number_;
    }

private:
    Number number_;
};

} // namespace pelistra
