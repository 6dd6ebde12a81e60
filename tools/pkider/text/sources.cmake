set(tool_text_sources
  json.cpp
  terminal_text.cpp)
