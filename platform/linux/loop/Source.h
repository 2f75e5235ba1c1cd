#pragma once

#include <functional>
#include <memory>

#include <glib.h>

namespace pelistra::linux {

struct SourceEnd {
    void operator()(GSource* source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};

// A source of GLib's default main context, which ends with its holder.
using SourcePtr = std::unique_ptr<GSource, SourceEnd>;

// Attaches the source, which becomes the holder's, to the default main context. Other loops that
// run inside its callback serve it too.
[[nodiscard]] SourcePtr attached(GSource* source);

// A source that calls the block whenever the ready time comes that it is given
// (g_source_set_ready_time); none at first. The block may end its own source.
[[nodiscard]] SourcePtr timedSource(std::function<void()> block);

// A source that calls the block whenever there is something to read. The descriptor must outlive
// it.
[[nodiscard]] SourcePtr readableSource(int descriptor, std::function<void()> block);

} // namespace pelistra::linux
