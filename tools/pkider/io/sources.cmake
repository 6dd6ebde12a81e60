set(tool_io_sources
  core_dumps.cpp
  file_input.cpp
  file_output.cpp
  file_view.cpp
  output.cpp
  password.cpp
  progress_note.cpp
  report.cpp
  temporary_file.cpp
  terminal_prompt.cpp)
# Of the program and of its crypto object, which is a library of its own.
set(tool_secret_memory_sources secret_memory.cpp)
