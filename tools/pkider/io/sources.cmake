# Files of one system are in a folder of its own: each header here has them once, in posix/ and in windows/.
set(tool_system posix)
if(WIN32)
  set(tool_system windows)
endif()

set(tool_io_sources
  file_input.cpp
  file_output.cpp
  file_view.cpp
  output.cpp
  password.cpp
  progress_note.cpp
  report.cpp
  ${tool_system}/core_dumps.cpp
  ${tool_system}/descriptor.cpp
  ${tool_system}/environment.cpp
  ${tool_system}/file_mapping.cpp
  ${tool_system}/path_kind.cpp
  ${tool_system}/streams.cpp
  ${tool_system}/temporary_file.cpp
  ${tool_system}/terminal_prompt.cpp)
if(WIN32)
  list(APPEND tool_io_sources windows/access_list.cpp windows/errors.cpp windows/paths.cpp windows/utf16.cpp)
else()
  list(APPEND tool_io_sources posix/private_folder.cpp)
endif()
# Of the program and of its crypto object, which is a library of its own.
set(tool_secret_memory_sources secret_memory.cpp ${tool_system}/locked_memory.cpp)
