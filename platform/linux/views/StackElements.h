#pragma once

#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

#include <vector>

namespace pelistra::desktop {

// The children of a container, kept from one body to the next as ui::continuedFrom says.
class ChildList {
public:
    // Brings the children to the views: updates those that continue, makes the new ones. A child
    // that goes during an animated change, and says how, stays until the change has ended.
    void update(Scene& scene, Element& owner, const std::vector<ui::View>& views,
                const Surroundings& surroundings);

    [[nodiscard]] const std::vector<ElementPtr>& present() const { return present_; }
    // Draws the leaving ones and the present ones that lie in the dirty area.
    void paint(QPainter& painter, const PaintState& state);
    void forEach(const std::function<void(Element&)>& call) const;

private:
    void keepLeaving(Scene& scene, std::vector<ElementPtr>& before);

    std::vector<ElementPtr> present_;
    // Those that fade out, and the change that they fade in.
    std::vector<ElementPtr> leaving_;
    std::shared_ptr<Motion> leavingMotion_;
};

// A container of children one after the other along an axis. Rigid children are served first, what
// is left is shared among the flexible ones.
template <class Kind, Axis axis>
class StackElement final : public ElementOf<Kind> {
public:
    using ElementOf<Kind>::ElementOf;

    void paint(QPainter& painter, const PaintState& state) override {
        children_.paint(painter, state);
    }
    void forEachChild(const std::function<void(Element&)>& call) override {
        children_.forEach(call);
    }

protected:
    void changed(const Kind* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;

private:
    [[nodiscard]] std::vector<QSizeF> sizes(const Proposal& proposal) const;

    ChildList children_;
};

using HStackElement = StackElement<ui::HStack, Axis::Horizontal>;
using VStackElement = StackElement<ui::VStack, Axis::Vertical>;

class ZStackElement final : public ElementOf<ui::ZStack> {
public:
    using ElementOf::ElementOf;

    void paint(QPainter& painter, const PaintState& state) override {
        children_.paint(painter, state);
    }
    void forEachChild(const std::function<void(Element&)>& call) override {
        children_.forEach(call);
    }

protected:
    void changed(const ui::ZStack* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;

private:
    ChildList children_;
};

} // namespace pelistra::desktop
