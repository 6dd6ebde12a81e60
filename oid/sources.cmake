set(oid_sources codec.cpp default_maps.cpp map.cpp map_entries.cpp map_index.cpp map_memory.cpp map_text.cpp)
