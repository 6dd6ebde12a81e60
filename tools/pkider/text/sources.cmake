set(tool_text_sources
  character_width.cpp
  json.cpp
  terminal_text.cpp)
