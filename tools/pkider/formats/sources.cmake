set(tool_formats_sources
  blocks.cpp
  der_cursor.cpp
  der_integer.cpp
  der_names.cpp
  der_walker.cpp
  encodings.cpp
  oid_text.cpp
  pem.cpp
  time_text.cpp)
# Of the program and of its crypto object, which is a library of its own.
set(tool_unicode_sources utf16.cpp utf8.cpp)
