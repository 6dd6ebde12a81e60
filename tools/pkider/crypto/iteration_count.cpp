#include "tools/pkider/crypto/iteration_count.h"

namespace tool {

bool is_storable_count(uint32_t count) {
    if (count == 0) return false;
    for (; count != 0; count >>= 8) {
        if ((count & 0xFF) == 0) return false;
    }
    return true;
}

storable_neighbours_t storable_neighbours(uint32_t count) {
    storable_neighbours_t near; // at most 65,793 steps away, from 01 00 xx xx
    for (uint32_t below = count; below > 1 && !near.below;) {
        if (is_storable_count(--below)) near.below = below;
    }
    for (uint32_t above = count; above < UINT32_MAX && !near.above;) {
        if (is_storable_count(++above)) near.above = above;
    }
    return near;
}

} // namespace tool
