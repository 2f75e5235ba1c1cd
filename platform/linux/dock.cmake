# Clicks elsewhere, and what is started at login.
pkg_check_modules(XCB_DOCK REQUIRED IMPORTED_TARGET xcb xcb-xinput)

target_sources(pelistra_linux PRIVATE
    AutostartLoginItem.cpp
    MenuBarStarter.cpp
    XInputGlobalClicks.cpp)
target_link_libraries(pelistra_linux PRIVATE PkgConfig::XCB_DOCK)
