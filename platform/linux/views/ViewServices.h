#pragma once

#include "base/Published.h"
#include "platform/Application.h"
#include "platform/MainQueue.h"
#include "platform/linux/views/Look.h"
#include "ui/Measures.h"

#include <functional>

namespace pelistra::linux {

// What the rendering of a content needs from the rest of the front end; all of it outlives every
// widget that it is handed to.
struct ViewServices {
    MainQueue& mainQueue;
    // The application that views of the core's own making ask for the event being handled.
    const Application& application;
    // Runs the block with that event as the application's current one.
    std::function<void(const Event& event, const std::function<void()>& block)> handleEvent;
    Published<Look>& look;
    // Measures by something else than the look; null: by the look.
    const ui::Measures* measures = nullptr;
};

} // namespace pelistra::linux
