# Commands on private keys and PKCS#12 files, and what they stand on.
target_sources(tools_tests PRIVATE
  file_output_test.cpp
  freed_memory.cpp
  key_commands_test.cpp
  p12_commands_test.cpp
  p12_outline_test.cpp
  password_test.cpp
  secrets_left_test.cpp)
target_compile_definitions(tools_tests PRIVATE PKIDER_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures")
