// pkider map: the names of OIDs.
#include "tools/pkider/commands/map.h"

namespace tool {

void register_map(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& map = add_command(app, "map", "Shows the names of OIDs, and checks files that add some",
                                "  pkider map list\n"
                                "  pkider map find E\n"
                                "  pkider map check vpnoids.cfg\n");
    map.set_help_all_flag("--help-all", "Print the help of every subcommand and exit");
    map.require_subcommand(1);
    register_map_list(map, chosen);
    register_map_find(map, chosen);
    register_map_check(map, chosen);
}

} // namespace tool
