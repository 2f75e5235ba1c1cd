#include "tests/desktop/harness/SharedMemory.h"

#include <sys/shm.h>

namespace pelistra::testing {

void removeSharedMemoryOf(pid_t maker) {
    shmid_ds segment{};
    shm_info all{};
    // The call's own way.
    const int last = shmctl(0, SHM_INFO, reinterpret_cast<shmid_ds*>(&all));
    for (int index = 0; index <= last; ++index) {
        const int id = shmctl(index, SHM_STAT, &segment);
        if (id >= 0 && segment.shm_cpid == maker && segment.shm_nattch == 0) {
            shmctl(id, IPC_RMID, nullptr);
        }
    }
}

} // namespace pelistra::testing
