#pragma once

namespace pelistra {
class Application;
class Images;
class MainQueue;
namespace ui {
class Measures;
}
} // namespace pelistra

namespace pelistra::macos {

// What the views of a window need besides their content. All of it outlives the windows.
struct HostingServices {
    Application* application = nullptr;
    MainQueue* mainQueue = nullptr;
    Images* images = nullptr;
    // Measures by something else than AppKit; null: by AppKit.
    const ui::Measures* measures = nullptr;
};

} // namespace pelistra::macos
