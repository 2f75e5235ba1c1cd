#include "menubar/Drag.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace pelistra::menubar {

DropPlace nearestPlace(std::span<const int> others, int width, int wantedX, int barWidth,
                       std::optional<Gap> housing) {
    std::vector<int> widths(others.begin(), others.end());
    widths.push_back(width);
    DropPlace best;
    int bestDistance = 0;
    // From the right end leftwards; the dragged item stands at `index` of `widths`.
    for (std::size_t index = others.size();; --index) {
        const int x = layOut(std::span(widths).subspan(index), barWidth, housing).front();
        const int distance = std::abs(x - wantedX);
        if (index == others.size() || distance < bestDistance) {
            best = {.index = index, .x = x};
            bestDistance = distance;
        }
        if (index == 0) {
            return best;
        }
        std::swap(widths[index], widths[index - 1]);
    }
}

int boundedDragX(int wantedX, int width, int barWidth) {
    const int slack = barWidth - width;
    return std::clamp(wantedX, std::min(0, slack), std::max(0, slack));
}

} // namespace pelistra::menubar
