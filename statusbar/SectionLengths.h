#pragma once

namespace pelistra {

class Screens;

// The divider's two lengths, in points.
struct SectionLengths {
    // Wide enough for the divider's picture (12 points) with a point of air on either side.
    static constexpr double expanded = 14;

    // Twice the width of the widest screen, so that whatever stands left of the divider leaves
    // every screen; between 500 and 10,000. Read afresh from the screens; 3456 without any.
    [[nodiscard]] static double collapsed(const Screens& screens);
};

} // namespace pelistra
