# Commands on private keys and PKCS#12 files, and what they stand on: passwords, files that are written whole.
target_sources(pkider_tool_support PRIVATE
  encrypted_key.cpp
  file_options.cpp
  file_output.cpp
  key_block.cpp
  key_decrypt.cpp
  key_encrypt.cpp
  key_show_private.cpp
  key_wrap.cpp
  p12_command.cpp
  p12_create_command.cpp
  p12_extract_command.cpp
  p12_item.cpp
  p12_list_command.cpp
  p12_outline.cpp
  p12_reading.cpp
  p12_verify_command.cpp
  password.cpp
  pbe_algorithm.cpp
  pbe_setup.cpp
  private_key.cpp
  progress_note.cpp
  terminal_prompt.cpp)
