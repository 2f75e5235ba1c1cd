#pragma once

#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

#include <memory>

namespace pelistra::desktop {

// Fades and scales its content while it comes or goes in an animated change.
class EnteringElement final : public WrapperOf<ui::Entering> {
public:
    using WrapperOf::WrapperOf;

    void paint(QPainter& painter, const PaintState& state) override;
    // It goes, until that change has ended. Its controls go at once.
    void leave(std::shared_ptr<Motion> motion);

protected:
    void changed(const ui::Entering* before, const Surroundings& surroundings) override;

private:
    std::shared_ptr<Motion> motion_;
    bool isLeaving_ = false;
};

} // namespace pelistra::desktop
