set(tool_explain_sources
  dn_fault.cpp
  faithful_lengths.cpp
  map_lines.cpp
  map_reach.cpp
  name_encoding.cpp
  name_fault.cpp)
