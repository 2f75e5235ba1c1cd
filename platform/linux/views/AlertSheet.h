#pragma once

#include "platform/linux/views/ViewServices.h"
#include "ui/Nodes.h"

#include <memory>

#include <QPointer>
#include <QWidget>

namespace pelistra::linux {

class ContentWidget;

// An alert over a content: a card in the middle of the dimmed window. Its button takes it down and
// then does what it is there for.
class AlertSheet final : public QWidget {
public:
    AlertSheet(const ui::Alert& alert, const ViewServices& services, QWidget* parent);

    // The occasion that it shows.
    [[nodiscard]] std::uint64_t occasion() const { return alert_.occasion; }
    // Whether the user has not taken it down.
    [[nodiscard]] bool isOpen() const { return isOpen_; }
    void takeDown();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QRect cardArea() const;
    void press();

    ui::Alert alert_;
    ViewServices services_;
    QPointer<ContentWidget> content_;
    QPointer<QWidget> focusedBefore_;
    bool isOpen_ = true;
};

} // namespace pelistra::linux
