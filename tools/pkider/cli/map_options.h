// The names of OIDs: the map with which a command prints and reads names.
//
// Without an option it is the built-in table; --config-dir DIR adds the entries of DIR/vpnoids.cfg, --map
// FILE takes the entries of FILE alone, --no-map none at all (attribute types are dotted text).
#pragma once

#include <pkider/oid.h>

#include <string>

namespace CLI {
class App;
}

namespace tool {

struct map_options_t {
    std::string map_file;
    std::string config_dir;
    bool none = false;
};

/// Adds `--map`, `--config-dir` and `--no-map`, of which at most one may be given.
void add_map_options(CLI::App& command, map_options_t& options);

/// The file that --config-dir names: a missing separator is added.
std::string config_file_path(const std::string& dir);

/// The map that the options ask for, for as long as this lives. Throws file_trouble_t when its file cannot be read.
class map_in_force_t {
  public:
    explicit map_in_force_t(const map_options_t& options);
    ~map_in_force_t();
    map_in_force_t(const map_in_force_t&) = delete;
    map_in_force_t& operator=(const map_in_force_t&) = delete;

    oid_map_handle_t handle() const { return m_map; }

  private:
    oid_map_handle_t m_map;
    bool m_owned = false;
};

} // namespace tool
