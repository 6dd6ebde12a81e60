// Options of the commands that write keys and certificates, and the writing itself.
#pragma once

#include "tools/pkider/formats/block.h"
#include "tools/pkider/io/file_output.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

enum class written_form_t { pem, der };

struct file_options_t {
    std::string path; ///< Empty: standard output.
    bool force = false;
    written_form_t form = written_form_t::pem;
    bool reveal = false; ///< A private key may go to standard output.
};

/// Of the commands that turn one file into another.
struct conversion_options_t {
    std::string file;
    input_form_t form = input_form_t::guess;
    file_options_t output;
};

/// Adds the options of what is written: `-o`, `--force`, `--form`.
void add_file_options(CLI::App& command, file_options_t& options);
void add_reveal_option(CLI::App& command, file_options_t& options);

/// Adds `FILE`, `--in` and the options of what is written.
void add_conversion_options(CLI::App& command, conversion_options_t& options, const std::string& file);

/// One thing to write: the label of its PEM form, and its DER.
struct written_block_t {
    const char* label;
    std::string_view der;
};

/// Whether one of these may not be seen by others; an encrypted key counts too.
bool is_secret(const written_block_t& block);

/// Before any work: refuses a private key for standard output that nobody asked to reveal, and a file that may not be
/// replaced.
void check_destination(const file_options_t& options, bool has_plain_key);

/// Writes the blocks as PEM, or the only one as DER, to the file (read back and compared) or to standard output.
/// `look` is given each DER as it was read back, in order, and throws when it is not the expected one.
void write_blocks(const file_options_t& options, std::span<const written_block_t> blocks,
                  const std::function<void(std::string_view der)>& look = {});

} // namespace tool
