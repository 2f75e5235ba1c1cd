#include "platform/linux/loop/Source.h"

#include <utility>

#include <glib-unix.h>

namespace pelistra::linux {

namespace {

using Block = std::function<void()>;

// The callback of a source, which GLib keeps alive while it runs.
gboolean run(gpointer block) {
    (*static_cast<Block*>(block))();
    return G_SOURCE_CONTINUE;
}

gboolean runForDescriptor(int /*descriptor*/, GIOCondition /*condition*/, gpointer block) {
    return run(block);
}

void end(gpointer block) {
    const std::unique_ptr<Block> owned(static_cast<Block*>(block));
}

gboolean dispatch(GSource* /*source*/, GSourceFunc callback, gpointer data) {
    return callback(data);
}

SourcePtr withBlock(GSource* source, GSourceFunc callback, Block block) {
    auto owned = std::make_unique<Block>(std::move(block));
    g_source_set_callback(source, callback, owned.release(), end);
    return attached(source);
}

} // namespace

SourcePtr attached(GSource* source) {
    g_source_set_can_recurse(source, TRUE);
    g_source_attach(source, nullptr);
    return SourcePtr(source);
}

SourcePtr timedSource(Block block) {
    static GSourceFuncs functions{.prepare = nullptr,
                                  .check = nullptr,
                                  .dispatch = dispatch,
                                  .finalize = nullptr,
                                  .closure_callback = nullptr,
                                  .closure_marshal = nullptr};
    return withBlock(g_source_new(&functions, sizeof(GSource)), run, std::move(block));
}

SourcePtr readableSource(int descriptor, Block block) {
    return withBlock(g_unix_fd_source_new(descriptor, G_IO_IN), G_SOURCE_FUNC(runForDescriptor),
                     std::move(block));
}

} // namespace pelistra::linux
