#include "platform/linux/images/Symbols.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace pelistra::linux {

namespace {

// The stroke of an arrow beside 13-point text, and of a picture with more lines in it.
constexpr double arrowStroke = 1.75;
constexpr double pictureStroke = 1.25;

// Outlines are written as in SVG (M, L, C and Z with absolute coordinates), and with
//   O x y radius                a circle
//   A x y radius start sweep    a part of a circle, angles in degrees counterclockwise from three
//                               o'clock
//   a ...                       the same, with a line to its start
//   R x y width height radius   a rectangle with rounded corners
struct Drawing {
    std::string_view name;
    double width;
    double height;
    double strokeWidth = pictureStroke;
    std::string_view strokes = {};
    std::string_view filled = {};
    std::string_view cut = {};
};

constexpr std::array drawings{
    Drawing{.name = "battery.75percent",
            .width = 22,
            .height = 12,
            .strokes = "R 1 1.4 17.4 9.2 2.8",
            .filled = "R 2.9 3.3 10.2 5.4 1.3 "
                      "M 19.9 4.2 C 20.833 4.6 21.3 5.2 21.3 6 C 21.3 6.8 20.833 7.4 19.9 7.8 Z"},
    // A camera body with its finder bump, and a badge with three dots at the lower corner.
    Drawing{.name = "camera.badge.ellipsis",
            .width = 19,
            .height = 16,
            .strokes = "M 8.4 12.6 L 3 12.6 C 1.8 12.6 1 11.8 1 10.6 L 1 4.9 C 1 3.7 1.8 2.9 3 2.9 "
                       "L 4.6 2.9 L 5.6 1.4 L 10.2 1.4 L 11.2 2.9 L 12.8 2.9 "
                       "C 14 2.9 14.8 3.7 14.8 4.9 L 14.8 6.2 O 7.9 7.5 2.6",
            .filled = "O 14 11.4 4.2 O 12 11.4 0.62 O 14 11.4 0.62 O 16 11.4 0.62"},
    Drawing{.name = "checkmark",
            .width = 14,
            .height = 12,
            .strokeWidth = arrowStroke,
            .strokes = "M 1.5 6.6 L 5.3 10.4 L 12.5 1.6"},
    Drawing{.name = "checkmark.shield.fill",
            .width = 14,
            .height = 16,
            .filled = "M 7 0.8 C 8.6 2.1 10.6 2.9 12.8 3.1 L 12.8 7.6 C 12.8 11.2 10.4 13.8 7 15.2 "
                      "C 3.6 13.8 1.2 11.2 1.2 7.6 L 1.2 3.1 C 3.4 2.9 5.4 2.1 7 0.8 Z",
            .cut = "M 4.3 8 L 6.3 10.1 L 9.8 5.6"},
    // The arms of a chevron meet at a right angle in the narrow direction's middle; the ends keep
    // half a stroke and a little air to the edge.
    Drawing{.name = "chevron.down",
            .width = 13,
            .height = 8,
            .strokeWidth = arrowStroke,
            .strokes = "M 1.5 1.5 L 6.5 6.5 L 11.5 1.5"},
    Drawing{.name = "chevron.right",
            .width = 8,
            .height = 13,
            .strokeWidth = arrowStroke,
            .strokes = "M 1.5 1.5 L 6.5 6.5 L 1.5 11.5"},
    Drawing{.name = "chevron.up",
            .width = 13,
            .height = 8,
            .strokeWidth = arrowStroke,
            .strokes = "M 1.5 6.5 L 6.5 1.5 L 11.5 6.5"},
    Drawing{.name = "circle.grid.2x2",
            .width = 14,
            .height = 14,
            .strokes = "O 3.7 3.7 2.4 O 3.7 10.3 2.4 O 10.3 3.7 2.4 O 10.3 10.3 2.4"},
    Drawing{.name = "clock",
            .width = 15,
            .height = 15,
            .strokes = "O 7.5 7.5 6.5 M 7.5 3.6 L 7.5 7.7 L 10.3 9.3"},
    // A square whose sides run on into a loop at each corner.
    Drawing{.name = "command",
            .width = 14,
            .height = 14,
            .strokeWidth = 1.2,
            .strokes = "M 5 9 L 5 3.05 a 3.05 3.05 1.95 0 270 a 10.95 3.05 1.95 270 270 "
                       "a 10.95 10.95 1.95 180 270 a 3.05 10.95 1.95 90 270 Z"},
    Drawing{.name = "keyboard",
            .width = 20,
            .height = 14,
            .strokes = "R 1 1.4 18 11.2 2.4",
            .filled = "R 3.6 3.8 1.6 1.6 0.5 R 6.4 3.8 1.6 1.6 0.5 R 9.2 3.8 1.6 1.6 0.5 "
                      "R 12 3.8 1.6 1.6 0.5 R 14.8 3.8 1.6 1.6 0.5 "
                      "R 3.6 6.4 1.6 1.6 0.5 R 6.4 6.4 1.6 1.6 0.5 R 9.2 6.4 1.6 1.6 0.5 "
                      "R 12 6.4 1.6 1.6 0.5 R 14.8 6.4 1.6 1.6 0.5 R 6.2 9.2 7.6 1.4 0.5"},
    Drawing{.name = "play.circle",
            .width = 15,
            .height = 15,
            .strokes = "O 7.5 7.5 6.5",
            .filled = "M 6.1 4.9 L 10.5 7.5 L 6.1 10.1 Z"},
    // Three slide controls one under the other.
    Drawing{.name = "slider.horizontal.3",
            .width = 17,
            .height = 14,
            .strokes = "M 1 2.2 L 9.65 2.2 O 11.2 2.2 1.55 M 12.75 2.2 L 16 2.2 "
                       "M 1 7 L 3.65 7 O 5.2 7 1.55 M 6.75 7 L 16 7 "
                       "M 1 11.8 L 7.85 11.8 O 9.4 11.8 1.55 M 10.95 11.8 L 16 11.8"},
    Drawing{.name = "speaker.wave.2",
            .width = 17,
            .height = 14,
            .strokes = "M 1 5 L 3.4 5 L 7.2 1.9 L 7.2 12.1 L 3.4 9 L 1 9 Z "
                       "A 7.4 7 3.6 -42 84 A 7.4 7 6.8 -42 84",
            .filled = "M 1 5 L 3.4 5 L 7.2 1.9 L 7.2 12.1 L 3.4 9 L 1 9 Z"},
    Drawing{.name = "wifi",
            .width = 18,
            .height = 14,
            .strokeWidth = 1.5,
            .strokes = "A 9 11.6 3.6 46 88 A 9 11.6 6.9 46 88 A 9 11.6 10.2 46 88",
            .filled = "O 9 11.6 1.3"},
};

constexpr double cutWidth = 1.5;

class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] Outline outline() {
        skipSpaces();
        while (!rest_.empty()) {
            const char command = rest_.front();
            rest_.remove_prefix(1);
            add(command);
            skipSpaces();
        }
        return std::move(outline_);
    }

private:
    void add(char command) {
        switch (command) {
        case 'M':
            outline_.emplace_back(MoveTo{.x = number(), .y = number()});
            break;
        case 'L':
            outline_.emplace_back(LineTo{.x = number(), .y = number()});
            break;
        case 'C':
            outline_.emplace_back(CurveTo{.x1 = number(),
                                          .y1 = number(),
                                          .x2 = number(),
                                          .y2 = number(),
                                          .x = number(),
                                          .y = number()});
            break;
        case 'O':
        case 'A':
        case 'a':
            addArcs(command);
            break;
        case 'R':
            addRoundedRect();
            break;
        default:
            outline_.emplace_back(ClosePath{});
            break;
        }
    }

    void addArcs(char command) {
        constexpr double whole = 360;
        const double x = number();
        const double y = number();
        const double radius = number();
        const double start = command == 'O' ? 0 : number();
        const double sweep = command == 'O' ? whole : number();
        addArc(x, y, radius, start, sweep, command == 'a');
        if (command == 'O') {
            outline_.emplace_back(ClosePath{});
        }
    }

    // One curve for every quarter of a circle, or less.
    void addArc(double x, double y, double radius, double start, double sweep, bool continues) {
        constexpr double quarter = 90;
        constexpr double radiansOfDegree = M_PI / 180;
        const int parts = static_cast<int>(std::ceil(sweep / quarter));
        const double step = sweep / parts * radiansOfDegree;
        const double reach = 4.0 / 3 * std::tan(step / 4) * radius;
        double angle = start * radiansOfDegree;
        const double beginX = x + radius * std::cos(angle);
        const double beginY = y - radius * std::sin(angle);
        if (continues) {
            outline_.emplace_back(LineTo{.x = beginX, .y = beginY});
        } else {
            outline_.emplace_back(MoveTo{.x = beginX, .y = beginY});
        }
        for (int part = 0; part < parts; ++part) {
            const double end = angle + step;
            const double endX = x + radius * std::cos(end);
            const double endY = y - radius * std::sin(end);
            outline_.emplace_back(
                CurveTo{.x1 = x + radius * std::cos(angle) - reach * std::sin(angle),
                        .y1 = y - radius * std::sin(angle) - reach * std::cos(angle),
                        .x2 = endX + reach * std::sin(end),
                        .y2 = endY + reach * std::cos(end),
                        .x = endX,
                        .y = endY});
            angle = end;
        }
    }

    void addRoundedRect() {
        constexpr double quarter = 90;
        const double x = number();
        const double y = number();
        const double right = x + number();
        const double bottom = y + number();
        const double radius = number();
        addArc(right - radius, y + radius, radius, 0, quarter, false);
        addArc(x + radius, y + radius, radius, quarter, quarter, true);
        addArc(x + radius, bottom - radius, radius, 2 * quarter, quarter, true);
        addArc(right - radius, bottom - radius, radius, 3 * quarter, quarter, true);
        outline_.emplace_back(ClosePath{});
    }

    void skipSpaces() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    [[nodiscard]] double number() {
        skipSpaces();
        double value = 0;
        const char* const begin = rest_.data();
        const auto read = std::from_chars(begin, begin + rest_.size(), value);
        rest_.remove_prefix(static_cast<std::size_t>(read.ptr - begin));
        return value;
    }

    std::string_view rest_;
    Outline outline_;
};

} // namespace

std::optional<Symbol> symbolNamed(std::string_view name) {
    const auto* const found = std::ranges::find(drawings, name, &Drawing::name);
    if (found == drawings.end()) {
        return std::nullopt;
    }
    return Symbol{.width = found->width,
                  .height = found->height,
                  .strokes = Reader(found->strokes).outline(),
                  .strokeWidth = found->strokeWidth,
                  .filled = Reader(found->filled).outline(),
                  .cut = Reader(found->cut).outline(),
                  .cutWidth = cutWidth};
}

} // namespace pelistra::linux
