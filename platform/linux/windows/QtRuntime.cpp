#include "platform/linux/windows/QtRuntime.h"

#include "platform/x11/Connection.h"

#include <cstdlib>

#include <QAccessible>
#include <QEvent>
#include <QPluginLoader>

namespace pelistra::linux {

namespace {

// What is to be deleted later goes before the loop sleeps: Qt itself waits for the end of a loop of
// its own, and there is none.
SourcePtr deferredDeletion() {
    static GSourceFuncs functions{
        .prepare = [](GSource* /*source*/, gint* /*timeout*/) -> gboolean {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return FALSE;
        },
        .check = nullptr,
        .dispatch = nullptr,
        .finalize = nullptr,
        .closure_callback = nullptr,
        .closure_marshal = nullptr};
    return attached(g_source_new(&functions, sizeof(GSource)));
}

} // namespace

// No other thread reads the environment.
QtEnvironment::QtEnvironment(double scaleBeyondResources) {
    constexpr auto factor = "QT_SCALE_FACTOR";
    if (scaleBeyondResources != 1 && std::getenv(factor) == nullptr) {
        factor_.emplace(factor, std::to_string(scaleBeyondResources));
    }
}

std::string QtRuntime::obstacle() {
    x11::Connection::Failure failure;
    if (x11::Connection::open({}, failure) == nullptr) {
        return failure.message;
    }
    QString reason;
    for (const QString& folder : QCoreApplication::libraryPaths()) {
        QPluginLoader plugin(folder + QStringLiteral("/platforms/libqxcb.so"));
        if (plugin.load()) {
            return {};
        }
        reason = plugin.errorString();
    }
    return reason.isEmpty() ? "Qt has no plugins" : reason.toStdString();
}

QtRuntime::QtRuntime(double scaleBeyondResources)
    : environment_(std::in_place, scaleBeyondResources), application_(count_, arguments_.data()),
      deferredDeletion_(deferredDeletion()) {
    environment_.reset();
    QApplication::setQuitOnLastWindowClosed(false);
    // Also the class of its windows, by which a desktop finds their desktop entry.
    QApplication::setApplicationName("Pelistra");
    QApplication::setApplicationVersion(PELISTRA_VERSION);
    QApplication::setDesktopFileName("pelistra");
    // QApplication::exec() would do so.
    QAccessible::setRootObject(&application_);
}

} // namespace pelistra::linux
