#include "menubar/Layout.h"

#include <cstddef>

namespace pelistra::menubar {

namespace {

bool overlaps(int begin, int end, const Gap& gap) {
    return begin < gap.end && end > gap.begin;
}

} // namespace

std::vector<int> layOut(std::span<const int> widths, int barWidth, std::optional<Gap> housing) {
    std::vector<int> positions(widths.size());
    int edge = barWidth;
    for (std::size_t i = widths.size(); i-- > 0;) {
        const int width = widths[i];
        if (housing && overlaps(edge - width, edge, *housing)) {
            edge = housing->begin;
        }
        if (edge > 0 && edge < width && width <= barWidth) {
            edge = 0;
        }
        edge -= width;
        positions[i] = edge;
    }
    return positions;
}

} // namespace pelistra::menubar
