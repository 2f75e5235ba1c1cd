#include "benchmarks/ScreenWatch.h"

#include <algorithm>

#include <poll.h>
#include <xcb/damage.h>

namespace pelistra::testing {

namespace {

bool overlap(const WindowFrame& area, const xcb_rectangle_t& drawn) {
    return drawn.x < area.right() && drawn.x + drawn.width > area.x &&
           drawn.y < area.y + area.height && drawn.y + drawn.height > area.y;
}

} // namespace

ScreenWatch::ScreenWatch(const std::string& display) : x_(display) {
    const auto* extension = xcb_get_extension_data(x_.get(), &xcb_damage_id);
    require(extension != nullptr && extension->present != 0, "the X server has no DAMAGE");
    firstEvent_ = extension->first_event;
    // The version has to be asked for before anything else.
    xcb_discard_reply(x_.get(), xcb_damage_query_version(x_.get(), XCB_DAMAGE_MAJOR_VERSION,
                                                         XCB_DAMAGE_MINOR_VERSION)
                                    .sequence);
    xcb_damage_create(x_.get(), x_.connection().newId(), x_.root(),
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    x_.sync();
}

void ScreenWatch::forget() {
    x_.sync();
    static_cast<void>(drain({}));
}

bool ScreenWatch::drain(const WindowFrame& area) {
    bool touched = false;
    while (const auto event = x_.connection().pollEvent()) {
        constexpr int withoutSentFlag = 0x7f;
        if ((event->response_type & withoutSentFlag) == firstEvent_ + XCB_DAMAGE_NOTIFY) {
            // How XCB hands out events
            const auto* damage = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
            touched = touched || overlap(area, damage->area);
        }
    }
    return touched;
}

void ScreenWatch::waitForEvent(std::chrono::milliseconds bound) {
    pollfd descriptor{.fd = x_.connection().fileDescriptor(), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, static_cast<int>(std::max<std::int64_t>(bound.count(), 0)));
}

bool ScreenWatch::looksLike(const WindowFrame& area, const Picture& wanted) {
    constexpr double share = 0.005;
    const double pixels = static_cast<double>(wanted.width()) * wanted.height();
    return static_cast<double>(x_.capture(area).differingPixels(wanted)) <= pixels * share;
}

std::optional<Clock::time_point> ScreenWatch::whenLikeThis(const WindowFrame& area,
                                                           const Picture& wanted,
                                                           std::chrono::milliseconds bound) {
    const auto end = Clock::now() + bound;
    while (Clock::now() < end) {
        if (drain(area)) {
            const auto drawn = Clock::now();
            if (looksLike(area, wanted)) {
                return drawn;
            }
            // Taking the picture may have read further events already.
            continue;
        }
        waitForEvent(std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()));
    }
    return std::nullopt;
}

std::optional<Clock::time_point> ScreenWatch::whenFinal(const WindowFrame& area,
                                                        std::chrono::milliseconds calm,
                                                        std::chrono::milliseconds bound) {
    struct Seen {
        Clock::time_point when;
        Picture picture;
    };
    std::vector<Seen> seen;
    const auto end = Clock::now() + bound;
    while (Clock::now() < end) {
        if (drain(area)) {
            const auto drawn = Clock::now();
            seen.push_back({.when = drawn, .picture = x_.capture(area)});
        } else if (!seen.empty() && Clock::now() - seen.back().when > calm) {
            const auto first = std::ranges::find_if(
                seen, [&](const Seen& moment) { return looksLike(area, moment.picture); });
            return first == seen.end() ? std::nullopt : std::optional(first->when);
        } else {
            waitForEvent(calm);
        }
    }
    return std::nullopt;
}

std::size_t ScreenWatch::framesWithin(const WindowFrame& area, std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds pause{3};
    const auto end = Clock::now() + time;
    std::size_t frames = 0;
    Clock::time_point last;
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        if (drain(area)) {
            frames += now - last > pause ? 1 : 0;
            last = now;
        }
        waitForEvent(std::chrono::duration_cast<std::chrono::milliseconds>(end - now));
    }
    return frames;
}

} // namespace pelistra::testing
