#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Proxies.h"
#include "ui/Nodes.h"

#include <QPointer>

namespace pelistra::linux {

// A label and a switch that slides.
class ToggleElement final : public ElementOf<ui::Toggle> {
public:
    using ElementOf::ElementOf;
    ToggleElement(const ToggleElement&) = delete;
    ToggleElement& operator=(const ToggleElement&) = delete;
    ~ToggleElement() override;

    void paint(QPainter& painter, const PaintState& state) override;
    [[nodiscard]] QWidget* focusable() const override { return proxy_; }

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    void updateChildren(const ui::Placed& placed, const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }
    [[nodiscard]] double drawingMargin() const override;

private:
    void makeProxy(QWidget* host);
    // Sends the knob to where the widget's state asks for it.
    void slide();
    void paintSwitch(QPainter& painter, const Look& look) const;

    // Where the switch lies in the frame.
    QRectF track_;
    QPointer<ToggleProxy> proxy_;
    bool shownState_ = false;
    // From where the knob slides, and how; none while it rests.
    std::shared_ptr<Motion> sliding_;
    double slidFrom_ = 0;

    [[nodiscard]] double knobPlace() const;
};

} // namespace pelistra::linux
