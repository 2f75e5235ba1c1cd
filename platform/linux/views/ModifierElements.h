#pragma once

#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

namespace pelistra::desktop {

class PaddingElement final : public WrapperOf<ui::Padding> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::Padding* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;
};

class FrameElement final : public WrapperOf<ui::Frame> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::Frame* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;
};

// Two views one over the other; the second takes the size of the content.
template <class Kind>
class LayeredElement : public WrapperOf<Kind> {
public:
    using WrapperOf<Kind>::WrapperOf;

    void forEachChild(const std::function<void(Element&)>& call) override {
        call(this->content());
        call(*layer_);
    }

protected:
    void updateLayer(const ui::View& view, const Surroundings& surroundings) {
        Surroundings inside = surroundings;
        inside.isFormRow = false;
        this->updateChild(layer_, view, inside);
    }
    void arrange() override;
    [[nodiscard]] Element& layer() const { return *layer_; }

private:
    ElementPtr layer_;
};

class BackgroundElement final : public LayeredElement<ui::Background> {
public:
    using LayeredElement::LayeredElement;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::Background* before, const Surroundings& surroundings) override;
};

class OverlayElement final : public LayeredElement<ui::Overlay> {
public:
    using LayeredElement::LayeredElement;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::Overlay* before, const Surroundings& surroundings) override;
};

class ClipElement final : public WrapperOf<ui::Clip> {
public:
    using WrapperOf::WrapperOf;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::Clip* before, const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }
};

// A button reads the shape from the value of its label.
class ContentShapeElement final : public WrapperOf<ui::ContentShape> {
public:
    using WrapperOf::WrapperOf;
};

class HelpElement final : public WrapperOf<ui::Help> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::Help* before, const Surroundings& surroundings) override;
};

class AccessibilityLabelElement final : public WrapperOf<ui::AccessibilityLabel> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::AccessibilityLabel* before, const Surroundings& surroundings) override;
};

class IdentifiedElement final : public WrapperOf<ui::Identified> {
public:
    using WrapperOf::WrapperOf;
};

// Makes an animated change of the updates in which its value differs.
class AnimatedElement final : public WrapperOf<ui::Animated> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::Animated* before, const Surroundings& surroundings) override;
    void arrange() override;

private:
    // The change whose new places have not been given yet.
    std::shared_ptr<Motion> pending_;
};

class WithAlertElement final : public WrapperOf<ui::WithAlert> {
public:
    using WrapperOf::WrapperOf;

protected:
    void changed(const ui::WithAlert* before, const Surroundings& surroundings) override;
};

} // namespace pelistra::desktop
