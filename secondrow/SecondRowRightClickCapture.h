#pragma once

#include "ui/Action.h"
#include "ui/Representable.h"

#include <memory>

namespace pelistra {

// Stands for a SecondRowRightClickView in a view tree; it takes the whole area it is laid over.
class SecondRowRightClickCapture final : public ui::Representable {
public:
    explicit SecondRowRightClickCapture(ui::Action action);

    [[nodiscard]] std::unique_ptr<ui::EventView>
    makeView(const Application& application) const override;

    // Replaces the view's action by this value's, so that a view that is used again always calls
    // the action of the icon that it lies over now.
    void updateView(ui::EventView& view) const override;

private:
    ui::Action action_;
};

} // namespace pelistra
