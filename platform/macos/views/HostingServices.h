#pragma once

namespace pelistra {
class Application;
class Images;
class MainQueue;
} // namespace pelistra

namespace pelistra::appkit {

// What the views of a window need besides their content. All of it outlives the windows.
struct HostingServices {
    Application* application = nullptr;
    MainQueue* mainQueue = nullptr;
    Images* images = nullptr;
};

} // namespace pelistra::appkit
