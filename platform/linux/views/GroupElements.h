#pragma once

#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

namespace pelistra::linux {

// Makes an animated change of the updates in which its value differs.
class AnimatedElement final : public ElementOf<ui::Animated> {
public:
    using ElementOf::ElementOf;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    void updateChildren(const ui::Placed& placed, const Surroundings& surroundings) override;

private:
    bool isChange_ = false;
};

// Fades and scales its content while it comes or goes in an animated change.
class EnteringElement final : public ElementOf<ui::Entering> {
public:
    using ElementOf::ElementOf;

    void paint(QPainter& painter, const PaintState& state) override;
    // Its controls go at once.
    [[nodiscard]] bool leave(const std::shared_ptr<Motion>& motion) override;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;

private:
    std::shared_ptr<Motion> motion_;
    bool isLeaving_ = false;
};

} // namespace pelistra::linux
