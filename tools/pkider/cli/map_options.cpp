#include "tools/pkider/cli/map_options.h"

#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/io/file_input.h"

#include <CLI/CLI.hpp>

namespace tool {
namespace {

constexpr const char* config_file_name = "vpnoids.cfg";

std::string with_separator(std::string dir) {
    if (!dir.empty() && dir.back() != '/') dir += '/';
    return dir;
}

// The library reads the file silently; a file that cannot be read is reported before.
oid_map_handle_t default_file_map(const std::string& dir) {
    static_cast<void>(read_file(config_file_path(dir)));
    set_oid_default_file_dir(with_separator(dir).c_str());
    return OID_MAP_HANDLE_DEFAULT_FILE;
}

} // namespace

void add_map_options(CLI::App& command, map_options_t& options) {
    CLI::Option_group& group = *command.add_option_group("Names of OIDs", "the built-in table without these");
    group.add_option("--map", options.map_file, "Take the names of this file alone")
        ->check(not_empty())
        ->type_name("FILE");
    group.add_option("--config-dir", options.config_dir, "Add the names of vpnoids.cfg in this directory")
        ->check(not_empty())
        ->type_name("DIR");
    group.add_flag("--no-map", options.none, "No names: attribute types are dotted text");
    group.require_option(0, 1);
}

std::string config_file_path(const std::string& dir) {
    return with_separator(dir) + config_file_name;
}

map_in_force_t::map_in_force_t(const map_options_t& options) : m_map(OID_MAP_HANDLE_DEFAULT) {
    if (options.none) {
        m_map = {};
    } else if (!options.map_file.empty()) {
        const secret_t file = read_file(options.map_file);
        m_map = oid_map_parse(file.text().data(), file.size());
        m_owned = true;
    } else if (!options.config_dir.empty()) {
        m_map = default_file_map(options.config_dir);
    }
}

map_in_force_t::~map_in_force_t() {
    if (m_owned) oid_map_release(m_map);
}

} // namespace tool
