#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Proxies.h"
#include "ui/Nodes.h"

#include <QPointer>

namespace pelistra::desktop {

class ButtonElement final : public ElementOf<ui::Button> {
public:
    ButtonElement(Scene& scene, Element* parent);
    ButtonElement(const ButtonElement&) = delete;
    ButtonElement& operator=(const ButtonElement&) = delete;
    ~ButtonElement() override;

    void paint(QPainter& painter, const PaintState& state) override;
    void forEachChild(const std::function<void(Element&)>& call) override { call(*label_); }
    [[nodiscard]] QWidget* focusable() const override { return proxy_; }

    [[nodiscard]] bool isDefaultAction() const;
    [[nodiscard]] bool isCancel() const;
    // Calls the action of the newest value. The button may be gone afterwards.
    void press();

protected:
    void changed(const ui::Button* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;
    [[nodiscard]] bool draws() const override { return true; }
    [[nodiscard]] double drawingMargin() const override;

private:
    [[nodiscard]] ui::Edges insets() const;
    // What it answers to, and shows hover, press and focus in.
    [[nodiscard]] ui::Outline outline() const;
    [[nodiscard]] QColor labelColor(const Look& look) const;
    void paintField(QPainter& painter, const PaintState& state) const;
    void paintProminent(QPainter& painter, const Look& look) const;
    void paintFocus(QPainter& painter, const Look& look) const;

    bool isFormRow_ = false;
    ElementPtr label_;
    QPointer<ButtonProxy> proxy_;
};

} // namespace pelistra::desktop
