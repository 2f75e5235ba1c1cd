#include "secondrow/SecondRowRightClickCapture.h"

#include "secondrow/SecondRowRightClickView.h"

#include <utility>

namespace pelistra {

SecondRowRightClickCapture::SecondRowRightClickCapture(ui::Action action)
    : action_(std::move(action)) {}

std::unique_ptr<ui::EventView>
SecondRowRightClickCapture::makeView(const Application& application) const {
    auto view = std::make_unique<SecondRowRightClickView>(application);
    view->action = action_;
    return view;
}

void SecondRowRightClickCapture::updateView(ui::EventView& view) const {
    static_cast<SecondRowRightClickView&>(view).action = action_;
}

} // namespace pelistra
