// Handles of OID maps on both sides of the border: the same address, another type.
#pragma once

#include <pkider/c/pkider.h>
#include <pkider/oid.h>

namespace pkider::c {

inline oid_map_handle_t handle_of(const pkider_oid_map_t* map) {
    return {reinterpret_cast<const oid_map_t*>(map)};
}

inline const pkider_oid_map_t* map_of(oid_map_handle_t handle) {
    return reinterpret_cast<const pkider_oid_map_t*>(handle.map);
}

} // namespace pkider::c
