#include "platform/posix/UnusedMemory.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace pelistra::posix {

namespace {

// Code that was changed while it was loaded is nowhere else.
bool codeIsChanged(std::span<const ElfW(Phdr)> segments, ElfW(Addr) address) {
    const auto dynamic = std::ranges::find(segments, PT_DYNAMIC, &ElfW(Phdr)::p_type);
    if (dynamic == segments.end()) {
        return false;
    }
    // NOLINTNEXTLINE(*-int-to-ptr): an address is what the loader tells.
    const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(address + dynamic->p_vaddr);
    for (; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_TEXTREL ||
            (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
            return true;
        }
    }
    return false;
}

int giveBackCode(dl_phdr_info* object, std::size_t /*size*/, void* pageSize) {
    const auto page = *static_cast<const std::uintptr_t*>(pageSize);
    const std::span segments(object->dlpi_phdr, object->dlpi_phnum);
    if (codeIsChanged(segments, object->dlpi_addr)) {
        return 0;
    }
    for (const auto& segment : segments) {
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) {
            continue;
        }
        const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
        const std::uintptr_t aligned = begin / page * page;
        // NOLINTNEXTLINE(*-int-to-ptr): an address is what the loader tells.
        ::madvise(reinterpret_cast<void*>(aligned), begin - aligned + segment.p_memsz,
                  MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void giveBackUnusedMemory() {
    ::malloc_trim(0);
    auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    ::dl_iterate_phdr(giveBackCode, &pageSize);
}

} // namespace pelistra::posix
