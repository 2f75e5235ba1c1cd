#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Proxies.h"
#include "ui/Nodes.h"

#include <QPointer>

namespace pelistra::linux {

class ButtonElement final : public ElementOf<ui::Button> {
public:
    ButtonElement(Scene& scene, Element* parent);
    ButtonElement(const ButtonElement&) = delete;
    ButtonElement& operator=(const ButtonElement&) = delete;
    ~ButtonElement() override;

    void paint(QPainter& painter, const PaintState& state) override;
    [[nodiscard]] QWidget* focusable() const override { return proxy_; }

    [[nodiscard]] bool isDefaultAction() const;
    [[nodiscard]] bool isCancel() const;
    // Calls the action of the newest value. The button may be gone afterwards.
    void press();

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    void updateChildren(const ui::Placed& placed, const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }
    [[nodiscard]] double drawingMargin() const override;

private:
    // What it answers to, and shows hover, press and focus in.
    [[nodiscard]] ui::Outline outline() const;
    [[nodiscard]] QColor labelColor(const Look& look) const;
    void paintField(QPainter& painter, const PaintState& state) const;
    void paintProminent(QPainter& painter, const Look& look) const;
    void paintFocus(QPainter& painter, const Look& look) const;

    bool isFormRow_ = false;
    QPointer<ButtonProxy> proxy_;
};

} // namespace pelistra::linux
