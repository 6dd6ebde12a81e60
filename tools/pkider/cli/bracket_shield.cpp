#include "tools/pkider/cli/bracket_shield.h"

namespace tool {
namespace {

constexpr char mark = '\x1F'; // after the closing bracket, which then is not the last character

std::string take_mark_off(std::string& value) {
    if (value.starts_with('[') && value.ends_with(mark)) value.pop_back();
    return {}; // no objection
}

} // namespace

void shield_brackets(std::vector<std::string>& arguments) {
    for (std::string& argument : arguments) {
        if (argument.starts_with('[')) argument += mark;
    }
}

void unshield_brackets(CLI::App& app) {
    for (CLI::Option* const option : app.get_options()) option->transform(CLI::Validator(take_mark_off, ""));
    for (CLI::App* const subcommand : app.get_subcommands({})) unshield_brackets(*subcommand);
}

std::string unshielded(std::string words) {
    std::erase(words, mark);
    return words;
}

} // namespace tool
