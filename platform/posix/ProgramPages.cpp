#include "platform/posix/ProgramPages.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace pelistra::posix {

namespace {

using Segment = ElfW(Phdr);

bool isWritable(const Segment& segment) {
    return (segment.p_flags & PF_W) != 0;
}

// Whether the loader has changed code of this object, which its file does not know.
bool hasRelocatedCode(const dl_phdr_info& object, std::span<const Segment> segments) {
    const auto dynamic = std::ranges::find(segments, std::uint32_t{PT_DYNAMIC}, &Segment::p_type);
    if (dynamic == segments.end()) {
        return true;
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): where the loader says that it is
    const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(object.dlpi_addr + dynamic->p_vaddr);
    for (; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_TEXTREL ||
            (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
            return true;
        }
    }
    return false;
}

// Whole pages only: those at the edges may be shared with a writable segment.
void release(const dl_phdr_info& object, const Segment& segment) {
    const auto page = static_cast<ElfW(Addr)>(::sysconf(_SC_PAGESIZE));
    const ElfW(Addr) start = object.dlpi_addr + segment.p_vaddr;
    const ElfW(Addr) begin = (start + page - 1) / page * page;
    const ElfW(Addr) end = (start + segment.p_filesz) / page * page;
    if (begin < end) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): where the loader says that it is
        ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    }
}

int releaseObject(dl_phdr_info* object, std::size_t /*size*/, void* /*data*/) {
    const std::span segments(object->dlpi_phdr, object->dlpi_phnum);
    if (!hasRelocatedCode(*object, segments)) {
        for (const Segment& segment : segments) {
            if (segment.p_type == PT_LOAD && !isWritable(segment)) {
                release(*object, segment);
            }
        }
    }
    return 0;
}

} // namespace

void releaseProgramPages() {
    ::dl_iterate_phdr(releaseObject, nullptr);
}

} // namespace pelistra::posix
