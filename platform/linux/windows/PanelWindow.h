#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>
#include <vector>

#include <QColor>
#include <QImage>
#include <QMargins>
#include <QWidget>

namespace pelistra::linux {

// What the desktop is told about a panel: names of properties and states, interned once; and
// whether windows can have a shape.
class PanelAtoms {
public:
    enum Name : std::uint8_t {
        State,
        StateAbove,
        StateSticky,
        StateSkipTaskbar,
        StateSkipPager,
        Desktop,
        FrameExtents,
        CompositorShadow,
        NameCount
    };

    explicit PanelAtoms(const x11::Connection& connection);

    [[nodiscard]] xcb_atom_t operator[](Name name) const { return atoms_[name]; }
    [[nodiscard]] bool hasShapes() const { return hasShapes_; }

private:
    std::array<xcb_atom_t, NameCount> atoms_{};
    bool hasShapes_;
};

// The window of a panel: no window manager places, decorates, stacks or focuses it, so it lies
// above everything on every desktop, with or without one. Its outline is that of what its content
// draws.
//
// With a compositor it has an alpha channel and a shadow of its own, which lets clicks through.
// Without one it is cut along the outline, which is drawn as a hairline.
class PanelWindow final : public QWidget {
public:
    // How the screen is put together while the window lives.
    struct Traits {
        bool isComposited = false;
        bool hasShadow = true;

        bool operator==(const Traits&) const = default;
    };

    PanelWindow(const Traits& traits, const PanelAtoms& atoms);

    [[nodiscard]] const Traits& traits() const { return traits_; }
    // Takes the widget as what it shows; it becomes a child.
    void setContentWidget(QWidget* content);
    // Puts the content at that place, in Qt's coordinates.
    void place(const QRect& contentFrame);
    // Shows it in front of everything, and takes no focus.
    void bringUp();
    // To be called when the content is about to be drawn in other colours.
    void contentLookChanges();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void describeToDesktop();
    void updateOutline();
    void setShape(const std::vector<QRect>& region);

    Traits traits_;
    const PanelAtoms& atoms_;
    // What the shadow takes around the content.
    QMargins margins_;
    // Owned by Qt as a child.
    QWidget* content_ = nullptr;
    QSize outlinedSize_;
    double outlinedRatio_ = 0;
    QImage shadow_;
    QColor hairline_;
};

} // namespace pelistra::linux
