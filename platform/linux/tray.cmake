# What the front end knows of the tray and of the programs behind its icons.
pkg_check_modules(XCB_TRAY REQUIRED IMPORTED_TARGET xcb xcb-res xcb-randr xcb-composite xcb-sync xcb-xinput xcb-xtest)

target_sources(pelistra_linux PRIVATE
    ClickDelivery.cpp
    DesktopEntries.cpp
    DesktopEntry.cpp
    KeyFile.cpp
    ListItems.cpp
    ListItemsText.cpp
    PointerDevice.cpp
    ServerClock.cpp
    TrayLook.cpp
    TrayLookText.cpp
    X11EventPosting.cpp
    X11RunningApplications.cpp
    X11RunningApplicationsLauncher.cpp
    X11RunningApplicationsProcess.cpp
    X11RunningApplicationsWindows.cpp
    X11ScreenCapture.cpp
    X11WindowList.cpp
    XcbWindowServer.cpp)
target_link_libraries(pelistra_linux PRIVATE PkgConfig::XCB_TRAY)
