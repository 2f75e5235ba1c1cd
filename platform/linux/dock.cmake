# The panel, clicks elsewhere, and what is started at login.
pkg_check_modules(XCB_DOCK REQUIRED IMPORTED_TARGET xcb xcb-shape xcb-xinput)

target_sources(pelistra_linux PRIVATE
    AutostartLoginItem.cpp
    MenuBarStarter.cpp
    PanelLook.cpp
    PanelOutline.cpp
    PanelWindow.cpp
    QtPanels.cpp
    XInputGlobalClicks.cpp)
target_link_libraries(pelistra_linux PRIVATE PkgConfig::XCB_DOCK)
