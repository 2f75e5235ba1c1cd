#include "platform/linux/windows/QtPanels.h"

#include "platform/linux/windows/QtGeometry.h"

#include <cmath>
#include <string_view>
#include <utility>

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>

namespace pelistra::linux {

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The panel may be let go of while its window handles the click that led to it.
struct LaterDeleter {
    void operator()(PanelWindow* window) const {
        window->hide();
        window->deleteLater();
    }
};

} // namespace

class QtPanel final : public Panel {
public:
    QtPanel(QtPanels& panels, const PanelConfiguration& configuration)
        : panels_(panels), size_(configuration.contentSize), title_(textOf(configuration.title)),
          label_(textOf(configuration.accessibilityLabel)), hasShadow_(configuration.hasShadow),
          lookChanges_(panels.services_.look.observe([this](const Look& /*look*/) {
              if (window_ != nullptr) {
                  window_->contentLookChanges();
              }
          })),
          compositorChanges_(panels.compositor_.observe([this] {
              if (isVisible()) {
                  orderFrontRegardless();
              }
          })) {}

    void setContent(std::shared_ptr<ui::Content> content) override {
        const bool wasVisible = isVisible();
        window_.reset();
        content_ = std::move(content);
        if (wasVisible) {
            orderFrontRegardless();
        }
    }

    void setContentSize(Size size) override { size_ = size; }
    void setFrameOrigin(ScreenPoint origin) override {
        origin_ = origin;
        if (isVisible()) {
            place();
        }
    }

    void orderFrontRegardless() override {
        prepareWindow();
        place();
        window_->bringUp();
    }
    void orderOut() override {
        if (window_ != nullptr) {
            window_->hide();
        }
    }
    [[nodiscard]] bool isVisible() const override {
        return window_ != nullptr && window_->isVisible();
    }

private:
    // A window cannot gain or lose its alpha channel, so it is made anew when a compositor has come
    // or gone.
    void prepareWindow() {
        const PanelWindow::Traits traits{.isComposited = panels_.compositor_.isComposited(),
                                         .hasShadow = hasShadow_};
        if (window_ == nullptr || window_->traits() != traits) {
            window_.reset(new PanelWindow(traits, panels_.atoms_)); // NOLINT(*-owning-memory)
            if (content_ != nullptr) {
                auto widget = panels_.services_.contentWidget(content_, traits.isComposited);
                window_->setContentWidget(widget.release());
            }
        }
        window_->setWindowTitle(title_);
        window_->setAccessibleName(label_);
    }

    void place() {
        const RootRect frame =
            panels_.services_.coordinates().toPixels(ScreenRect{.origin = origin_, .size = size_});
        const QScreen* const screen =
            qtScreenAt(frame.x + frame.width / 2, frame.y + frame.height / 2);
        if (screen != nullptr) {
            window_->place({toQt(frame.x, frame.y, *screen),
                            QSize(static_cast<int>(std::lround(size_.width)),
                                  static_cast<int>(std::lround(size_.height)))});
        }
    }

    QtPanels& panels_;
    Size size_;
    ScreenPoint origin_;
    QString title_;
    QString label_;
    bool hasShadow_;
    std::shared_ptr<ui::Content> content_;
    std::unique_ptr<PanelWindow, LaterDeleter> window_;
    SubscriptionPtr lookChanges_;
    SubscriptionPtr compositorChanges_;
};

QtPanels::QtPanels(PanelServices services)
    : services_(std::move(services)), atoms_(services_.connection),
      compositor_(services_.connection, services_.observeEvents) {}

// Windows of panels that have gone after the event loop ended.
QtPanels::~QtPanels() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::unique_ptr<Panel> QtPanels::panel(const PanelConfiguration& configuration) {
    return std::make_unique<QtPanel>(*this, configuration);
}

} // namespace pelistra::linux
