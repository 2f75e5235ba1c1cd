# The core's views, drawn on Qt Widgets.
target_sources(pelistra_windows PRIVATE
    views/AlertSheet.cpp
    views/ButtonElement.cpp
    views/ContentWidget.cpp
    views/DesktopLook.cpp
    views/Element.cpp
    views/ElementFactory.cpp
    views/Fonts.cpp
    views/GroupElements.cpp
    views/LeafElements.cpp
    views/Look.cpp
    views/Motion.cpp
    views/Outlines.cpp
    views/Proxies.cpp
    views/PublishedLook.cpp
    views/QtMeasures.cpp
    views/RepresentedElement.cpp
    views/Scene.cpp
    views/Scroller.cpp
    views/ScrollElements.cpp
    views/TextElement.cpp
    views/ToggleElement.cpp)
